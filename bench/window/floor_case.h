#pragma once
// The floors of the window case, in a fresh process, on the same bytes: the log tool run with
// the window's arguments and its output read into memory, the same bytes read again from a
// file, then the engine's decode of them and its styling of every entry as the window styles
// them. It says:
//   read.seconds, read.file.seconds, json.bytes, decode.seconds, style.seconds, entries, lines,
//   entries.bytes (what the decoded list holds), resident, peak

#include <filesystem>
#include <string>
#include <vector>

namespace kavor::bench {

struct FloorChoices {
  std::filesystem::path tool;
  std::vector<std::string> args;
  std::string style;
  std::string show;  // as the window case says it
  int osVersion = 11;
};

int runFloorCase(const FloorChoices& choices);

}  // namespace kavor::bench
