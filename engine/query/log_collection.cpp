#include "engine/query/log_collection.h"

#include <charconv>

namespace kavor {

namespace {

constexpr std::string_view kOsascript = "/usr/bin/osascript";
constexpr std::string_view kPkexec = "/usr/bin/pkexec";
constexpr std::string_view kShell = "/bin/sh";
// The tool as the AppleScript names it: the system's own, found on the administrator's path.
constexpr std::string_view kSystemTool = "log";

// The bytes of the first UTF-8 character, so that a unit title in any script gives a whole one.
size_t firstCharacterLength(std::string_view text) {
  size_t length = 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xc0) == 0x80)
    ++length;
  return length;
}

}  // namespace

std::string collectionSpan(int64_t theTimePeriod, std::string_view theTimeSelStr) {
  // The magnitude in unsigned arithmetic: the most negative value has no positive counterpart.
  uint64_t magnitude = theTimePeriod < 0 ? 0 - static_cast<uint64_t>(theTimePeriod)
                                         : static_cast<uint64_t>(theTimePeriod);
  if (magnitude == 0) magnitude = 1;
  char digits[24];
  std::string span(digits, std::to_chars(digits, digits + sizeof digits, magnitude).ptr);
  if (theTimeSelStr.empty()) {
    span += 's';
  } else {
    span += theTimeSelStr.substr(0, firstCharacterLength(theTimeSelStr));
  }
  return span;
}

std::string shellQuoted(std::string_view word) {
  std::string quoted = "'";
  for (char c : word) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  quoted += '\'';
  return quoted;
}

std::string collectShellCommand(std::string_view toolWord, std::string_view path,
                                std::string_view span) {
  std::string command(toolWord);
  command += " collect --output ";
  command += shellQuoted(path);
  command += " --last ";
  command += span;
  return command;
}

std::string collectAppleScript(std::string_view path, std::string_view span) {
  std::string script = "do shell script \"";
  for (char c : collectShellCommand(kSystemTool, path, span)) {
    if (c == '\\' || c == '"') script += '\\';
    script += c;
  }
  script += "\" with administrator privileges";
  return script;
}

CollectLaunch collectLaunch(PrivilegeMeans means, const std::filesystem::path& tool,
                            std::string_view path, std::string_view span) {
  switch (means) {
    case PrivilegeMeans::appleScript:
      return {std::filesystem::path(kOsascript), {"-e", collectAppleScript(path, span)}};
    case PrivilegeMeans::pkexec:
      return {
          std::filesystem::path(kPkexec),
          {std::string(kShell), "-c", collectShellCommand(shellQuoted(tool.string()), path, span)}};
    case PrivilegeMeans::direct:
      break;
  }
  return {tool, {"collect", "--output", std::string(path), "--last", std::string(span)}};
}

}  // namespace kavor
