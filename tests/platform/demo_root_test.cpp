#include "platform/demo_root.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <map>

#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

namespace fs = std::filesystem;

class DemoRoot : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = temp_.path();
    // A stand-in for the stand-in: lays out the version file and counts its runs.
    tool_ = dir_ / "fake-log";
    std::ofstream(tool_)
        << "#!/bin/sh\n"
           "echo run >> \"" +
               (dir_ / "runs").string() +
               "\"\n"
               "[ \"$1\" = make-system ] || exit 64\n"
               "mkdir -p \"$2/System/Library/CoreServices\" &&\n"
               "echo plist > \"$2/System/Library/CoreServices/SystemVersion.plist\"\n";
    ::chmod(tool_.c_str(), 0755);
    vars_ = {{"XDG_DATA_HOME", (dir_ / "data").string()}, {"KAVOR_LOG_TOOL", tool_.string()}};
  }

  EnvLookup env() const {
    return [vars = vars_](std::string_view name) -> std::optional<std::string> {
      const auto it = vars.find(std::string(name));
      if (it == vars.end()) return std::nullopt;
      return it->second;
    };
  }
  size_t runs() const {
    std::ifstream in(dir_ / "runs");
    size_t n = 0;
    for (std::string line; std::getline(in, line);)
      ++n;
    return n;
  }

  testing_support::TempFolder temp_;
  fs::path dir_;
  fs::path tool_;
  std::map<std::string, std::string> vars_;
};

TEST_F(DemoRoot, MadeOnceOnFirstUseUnlessARootIsNamed) {
  vars_["KAVOR_SYSTEM_ROOT"] = (dir_ / "elsewhere").string();
  ASSERT_TRUE(ensureDemoRoot(env(), "/nowhere/kavor-cli").ok());
  EXPECT_EQ(runs(), 0u);
  EXPECT_FALSE(fs::exists(dir_ / "elsewhere"));

  vars_.erase("KAVOR_SYSTEM_ROOT");
  ASSERT_TRUE(ensureDemoRoot(env(), "/nowhere/kavor-cli").ok());
  EXPECT_TRUE(fs::exists(dir_ / "data/Kavor/system-root/System/Library/CoreServices/"
                                "SystemVersion.plist"));
  ASSERT_TRUE(ensureDemoRoot(env(), "/nowhere/kavor-cli").ok());
  EXPECT_EQ(runs(), 1u);
}

TEST_F(DemoRoot, ToolFoundBesideTheProgramOrMissing) {
  vars_.erase("KAVOR_LOG_TOOL");
  fs::create_directories(dir_ / "build/cli");
  fs::create_directories(dir_ / "build/tools");
  EXPECT_FALSE(standInLogTool(env(), dir_ / "build/cli/kavor-cli").has_value());
  const auto failed = ensureDemoRoot(env(), dir_ / "build/cli/kavor-cli");
  ASSERT_FALSE(failed.ok());
  EXPECT_NE(failed.error().message().find("kavor-log"), std::string::npos);
  fs::copy_file(tool_, dir_ / "build/tools/kavor-log");
  EXPECT_EQ(standInLogTool(env(), dir_ / "build/cli/kavor-cli"), dir_ / "build/tools/kavor-log");
  EXPECT_TRUE(ensureDemoRoot(env(), dir_ / "build/cli/kavor-cli").ok());
  EXPECT_EQ(runs(), 1u);
}

}  // namespace
}  // namespace kavor
