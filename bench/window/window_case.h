#pragma once
// The window case, in a fresh process: one main window of the application, offscreen, over the
// system at root, with the entry limit off. Get Log of each period in turn (minutes before the
// base date), each timed from the press until the view has painted the result; then, once the
// chart data is ready, the resident memory. It says, for fetch i:
//   fetch<i>.entries, fetch<i>.lines, fetch<i>.seconds, fetch<i>.resident, fetch<i>.peak
// and what the floors need to style the same way: "arg" (the tool's arguments of the first
// fetch, one per line), "style", "show" (the three View switches as 0 or 1) and "os".

#include <filesystem>
#include <span>

namespace kavor::bench {

// The base date of every fetch: 2026-11-20 10:00:00 UTC.
inline constexpr double kWindowBaseDate = 816861600.0;

int runWindowCase(int argc, char** argv, const std::filesystem::path& root,
                  std::span<const int> minutes);

}  // namespace kavor::bench
