#include "platform/system_paths.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/plist_value.h"
#include "platform/system_version.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

namespace fs = std::filesystem;
using testing_support::TempFolder;
using testing_support::writeFile;

EnvLookup envOf(std::map<std::string, std::string, std::less<>> vars) {
  return [vars = std::move(vars)](std::string_view name) -> std::optional<std::string> {
    const auto it = vars.find(name);
    if (it == vars.end()) return std::nullopt;
    return it->second;
  };
}

TEST(SystemPaths, FixedPathsResolveUnderTheRootAndNeverOutsideIt) {
  const SystemPaths mac("/");
  EXPECT_EQ(mac.resolve("/usr/bin/log"), fs::path("/usr/bin/log"));
  EXPECT_EQ(mac.resolve("/../etc/passwd"), fs::path("/etc/passwd"));

  const SystemPaths standIn("/data/root");
  EXPECT_EQ(standIn.resolve("/usr/bin/log"), fs::path("/data/root/usr/bin/log"));
  EXPECT_EQ(standIn.resolve("var/db//diagnostics/./Persist/"),
            fs::path("/data/root/var/db/diagnostics/Persist"));
  EXPECT_EQ(standIn.resolve("/var/db/../../../../etc/passwd"), fs::path("/data/root/etc/passwd"));
  EXPECT_EQ(standIn.resolve("/a/b/../c"), fs::path("/data/root/a/c"));
  EXPECT_EQ(standIn.resolve(""), fs::path("/data/root"));
  EXPECT_EQ(standIn.resolve(".."), fs::path("/data/root"));
}

TEST(SystemPaths, RootAndSettingsFileFollowTheEnvironment) {
  EXPECT_EQ(systemRootFrom(envOf({{"KAVOR_SYSTEM_ROOT", "/opt/root"}, {"HOME", "/h"}})),
            fs::path("/opt/root"));
  EXPECT_EQ(settingsFilePathFrom(envOf({{"HOME", "/h"}})),
            fs::path("/h/.config/Kavor/Kavor.plist"));
  EXPECT_EQ(settingsFilePathFrom(envOf({{"HOME", "/h"}, {"XDG_CONFIG_HOME", "/cfg"}})),
            fs::path("/cfg/Kavor/Kavor.plist"));
  EXPECT_EQ(settingsFilePathFrom(envOf({{"HOME", "/h"}, {"XDG_CONFIG_HOME", "relative/cfg"}})),
            fs::path("/h/.config/Kavor/Kavor.plist"));
#ifdef __APPLE__
  EXPECT_EQ(systemRootFrom(envOf({{"HOME", "/h"}})), fs::path("/"));
#else
  EXPECT_EQ(systemRootFrom(envOf({{"HOME", "/h"}, {"KAVOR_SYSTEM_ROOT", ""}})),
            fs::path("/h/.local/share/Kavor/system-root"));
  EXPECT_EQ(systemRootFrom(envOf({{"HOME", "/h"}, {"XDG_DATA_HOME", "/data"}})),
            fs::path("/data/Kavor/system-root"));
  EXPECT_EQ(systemRootFrom(envOf({{"HOME", "/h"}, {"XDG_DATA_HOME", "data"}})),
            fs::path("/h/.local/share/Kavor/system-root"));
#endif
}

TEST(SystemVersion, ProductVersionTextParses) {
  EXPECT_EQ(parseProductVersion("14.5").value(), (SystemVersion{14, 5, 0}));
  EXPECT_EQ(parseProductVersion("10.13.6").value(), (SystemVersion{10, 13, 6}));
  EXPECT_EQ(parseProductVersion("15").value(), (SystemVersion{15, 0, 0}));
  EXPECT_EQ(parseProductVersion(" 11.2.3\n").value(), (SystemVersion{11, 2, 3}));
  EXPECT_EQ(parseProductVersion("14.5 beta").value(), (SystemVersion{14, 5, 0}));
  for (const char* bad : {"", "abc", ".5", "-1", "v14", "99999999999.1", "14.-2"}) {
    auto parsed = parseProductVersion(bad);
    ASSERT_FALSE(parsed) << bad;
    EXPECT_EQ(parsed.error().kind, ErrorKind::parse);
  }
}

constexpr const char* kFixedPath = "/System/Library/CoreServices/SystemVersion.plist";

PlistValue versionFile(std::string version) {
  PlistValue file{PlistDict{}};
  file.set("ProductName", "macOS");
  file.set("ProductVersion", std::move(version));
  return file;
}

TEST(SystemVersion, OsVersionComesFromTheRootsSystemVersionFile) {
  const std::pair<const char*, int> cases[] = {{"10.12.6", 12}, {"10.13", 13}, {"10.14.6", 14},
                                               {"11.7.10", 16}, {"14.5", 17},  {"15.0", 17}};
  for (const auto& [version, expected] : cases) {
    TempFolder root;
    writeFile(SystemPaths(root.path()).resolve(kFixedPath), writeXmlPlist(versionFile(version)));
    auto read = readSystemVersion(SystemPaths(root.path()));
    ASSERT_TRUE(read) << version << ": " << read.error().message();
    EXPECT_EQ(osVersionFrom(*read), expected) << version;
  }
}

TEST(SystemVersion, FaultsNameTheFixedPath) {
  TempFolder missing;
  auto read = readSystemVersion(SystemPaths(missing.path()));
  ASSERT_FALSE(read);
  EXPECT_EQ(read.error().kind, ErrorKind::notFound);
  EXPECT_NE(read.error().context.find(kFixedPath), std::string::npos);

  PlistValue noKey{PlistDict{}};
  noKey.set("ProductName", "macOS");
  PlistValue notText{PlistDict{}};
  notText.set("ProductVersion", 14);
  const std::pair<std::string, ErrorKind> cases[] = {
      {writeXmlPlist(noKey), ErrorKind::notFound},
      {writeXmlPlist(notText), ErrorKind::parse},
      {writeXmlPlist(versionFile("fourteen")), ErrorKind::parse},
      {"<plist><dict>", ErrorKind::parse}};
  for (const auto& [bytes, kind] : cases) {
    TempFolder root;
    writeFile(SystemPaths(root.path()).resolve(kFixedPath), bytes);
    read = readSystemVersion(SystemPaths(root.path()));
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().kind, kind);
    EXPECT_NE(read.error().context.find(kFixedPath), std::string::npos) << read.error().context;
  }
}

}  // namespace
}  // namespace kavor
