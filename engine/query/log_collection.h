#pragma once
// The command that has the system collect a log archive of the last few minutes, hours or days.
// Collecting needs administrator rights: on macOS an AppleScript asks for them, on Linux pkexec
// does, and the stand-in tool needs none. The path the user chose travels inside a shell command
// in the first two, so it is quoted there to reach the tool whole, whatever it holds.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kavor {

// "20m": |theTimePeriod|, at least 1, in decimal, then the first character of the unit title
// ("sec" gives "s", "min" "m", "hour" "h", "day" "d"), or "s" when the title is empty.
std::string collectionSpan(int64_t theTimePeriod, std::string_view theTimeSelStr);

// One word for a POSIX shell: between single quotes, each ' written as '\''.
std::string shellQuoted(std::string_view word);

// toolWord + " collect --output " + shellQuoted(path) + " --last " + span. toolWord is put in as
// it is: the caller quotes it when it needs quoting.
std::string collectShellCommand(std::string_view toolWord, std::string_view path,
                                std::string_view span);

// do shell script "<the command with "log" as the tool, as an AppleScript string>" with
// administrator privileges
std::string collectAppleScript(std::string_view path, std::string_view span);

enum class PrivilegeMeans { appleScript, pkexec, direct };

struct CollectLaunch {
  std::filesystem::path program;
  std::vector<std::string> arguments;
};

// appleScript: osascript runs collectAppleScript; pkexec: pkexec runs the shell command with the
// tool's path quoted; direct: the tool itself with the arguments as a list.
CollectLaunch collectLaunch(PrivilegeMeans means, const std::filesystem::path& tool,
                            std::string_view path, std::string_view span);

}  // namespace kavor
