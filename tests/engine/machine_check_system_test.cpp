#include "engine/shell/machine_check_system.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "engine/shell/check_texts.h"
#include "engine/shell/clock_settings.h"
#include "engine/shell/startup_checks.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::TempFolder;
using testing_support::writeFile;

TEST(MachineCheckSystem, ReadsTheLogStoreAndToolUnderTheRoot) {
  const TempFolder root;
  writeFile(root / "var/db/diagnostics/Persist/0.tracev3", "x");
  writeFile(root / "usr/bin/log", "#!/bin/sh\nprintf '%s|' \"$@\"\nexit 4\n");
  std::filesystem::permissions(root / "usr/bin/log", std::filesystem::perms::owner_all);
  const FixedClock clock(1000.0);
  MachineCheckSystem system(SystemPaths(root.path()), clock);

  EXPECT_TRUE(system.isFolder(kPersistPath));
  EXPECT_FALSE(system.isFolder(kTimesyncPath));
  ASSERT_TRUE(system.listFolderNames(kPersistPath).ok());
  EXPECT_EQ(*system.listFolderNames(kPersistPath), std::vector<std::string>{"0.tracev3"});
  const auto ran = system.runLogTool(kLogShowJsonLastArgs);
  ASSERT_TRUE(ran.ok()) << ran.error().message();
  EXPECT_EQ(ran->status, 4);
  EXPECT_EQ(ran->output, "show|--style|json|--last|2|");
  // Formatters are given en_US_POSIX, whose clock has 24 hours.
  EXPECT_EQ(system.formattedClockSample(), kClockSampleText);
}

TEST(MachineCheckSystem, RootIsAnAdministrator) {
  const FixedClock clock(0);
  MachineCheckSystem system(SystemPaths("/"), clock);
  const auto groups = system.administratorGroups();
#ifdef __APPLE__
  EXPECT_EQ(groups, std::vector<std::string>{"80"});
#else
  // Root's only group is written last, with the tool's line break.
  EXPECT_NE(std::find(groups.begin(), groups.end(), "0\n"), groups.end());
  if (::geteuid() == 0) {
    EXPECT_TRUE(checkAdminUser(system));
  }
#endif
}

#ifndef __APPLE__
TEST(ClockSettings, OpensTheDesktopsDateAndTimeSettingsWhereKnown) {
  const TempFolder folder;
  const auto said = folder / "said";
  ASSERT_EQ(::mkfifo(said.c_str(), 0600), 0);
  writeFile(folder / "bin/gnome-control-center",
            "#!/bin/sh\necho \"$@\" > '" + said.string() + "'\n");
  std::filesystem::permissions(folder / "bin/gnome-control-center",
                               std::filesystem::perms::owner_all);
  const std::string path = (folder / "bin").string();
  EXPECT_TRUE(openClockSettings([&](std::string_view name) -> std::optional<std::string> {
    if (name == "PATH") return path;
    return std::nullopt;
  }));
  EXPECT_EQ(testing_support::readFile(said), "datetime\n");
  EXPECT_FALSE(openClockSettings([](std::string_view) { return std::optional<std::string>(""); }));
}
#endif

}  // namespace
}  // namespace kavor
