#include "engine/query/log_collection.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/child_process.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

TEST(LogCollectionTest, SpanTakesTheUnitsFirstCharacter) {
  EXPECT_EQ(collectionSpan(-20, "min"), "20m");
  EXPECT_EQ(collectionSpan(0, "hour"), "1h");
  EXPECT_EQ(collectionSpan(3, "day"), "3d");
  EXPECT_EQ(collectionSpan(7, ""), "7s");
  EXPECT_EQ(collectionSpan(std::numeric_limits<int64_t>::min(), "sec"), "9223372036854775808s");
  // A title in another script gives its whole first character, never part of one.
  EXPECT_EQ(collectionSpan(2, "\xc3\xa9t\xc3\xa9"), "2\xc3\xa9");
}

const std::vector<std::string> kHostilePaths = {
    "/tmp/it's here",
    "/tmp/\"quoted\" dir/a",
    "C:\\back\\slash\\",
    "two\nlines\r\n",
    "$(echo no) `echo no` ${HOME}",
    "; echo no; '",
    "a'\\''b''",
    "\\\"'\\'",
    "*",
    "~/a  b\t",
    "",
};

// Runs the program and returns the arguments it printed, one per NUL-ended field.
std::vector<std::string> printedArguments(const std::filesystem::path& program,
                                          std::span<const std::string> args) {
  StringSink sink;
  const Expected<ChildExit> ran = runChildProcess(program, args, sink);
  EXPECT_TRUE(ran && ran->status == 0) << program;
  const std::string out = sink.take();
  std::vector<std::string> fields;
  for (size_t start = 0, end; (end = out.find('\0', start)) != std::string::npos; start = end + 1)
    fields.push_back(out.substr(start, end - start));
  return fields;
}

std::vector<std::string> expectedArguments(const std::string& path, const std::string& span) {
  return {"collect", "--output", path, "--last", span};
}

// The AppleScript string literal between prefix and suffix with its escapes read; none when the
// literal ends early or an escape is left open.
std::optional<std::string> appleScriptLiteral(std::string_view script, std::string_view prefix,
                                              std::string_view suffix) {
  if (!script.starts_with(prefix) || !script.ends_with(suffix)) return std::nullopt;
  const std::string_view literal =
      script.substr(prefix.size(), script.size() - prefix.size() - suffix.size());
  std::string text;
  for (size_t i = 0; i < literal.size(); ++i) {
    if (literal[i] == '"' || (literal[i] == '\\' && ++i == literal.size())) return std::nullopt;
    text += literal[i];
  }
  return text;
}

TEST(LogCollectionTest, EveryLaunchGivesTheToolThePathWhole) {
  testing_support::TempFolder folder;
  // A tool whose own path needs quoting as much as the archive's does.
  const std::filesystem::path tool = folder / "tool 'a' \"b\" $(c);`d`\\";
  testing_support::writeFile(tool, "#!/bin/sh\nprintf '%s\\0' \"$@\"\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);

  for (const std::string& path : kHostilePaths) {
    const std::vector<std::string> shell = {"-c",
                                            collectShellCommand("printf '%s\\0'", path, "1s")};
    EXPECT_EQ(printedArguments("/bin/sh", shell), expectedArguments(path, "1s")) << path;

    const CollectLaunch direct = collectLaunch(PrivilegeMeans::direct, tool, path, "3h");
    EXPECT_EQ(direct.program, tool);
    EXPECT_EQ(printedArguments(direct.program, direct.arguments), expectedArguments(path, "3h"));

    // pkexec itself would ask for a password: run what it would run.
    const CollectLaunch elevated = collectLaunch(PrivilegeMeans::pkexec, tool, path, "3h");
    EXPECT_EQ(elevated.program, "/usr/bin/pkexec");
    ASSERT_EQ(elevated.arguments.size(), 3u);
    EXPECT_EQ(printedArguments(elevated.arguments[0], std::span(elevated.arguments).subspan(1)),
              expectedArguments(path, "3h"))
        << path;

    // The AppleScript string must read back as exactly the checked shell command.
    const CollectLaunch script = collectLaunch(PrivilegeMeans::appleScript, tool, path, "2d");
    EXPECT_EQ(script.program, "/usr/bin/osascript");
    ASSERT_EQ(script.arguments.size(), 2u);
    EXPECT_EQ(script.arguments[0], "-e");
    EXPECT_EQ(appleScriptLiteral(script.arguments[1], "do shell script \"",
                                 "\" with administrator privileges"),
              collectShellCommand("log", path, "2d"));
  }
}

}  // namespace
}  // namespace kavor
