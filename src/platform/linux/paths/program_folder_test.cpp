// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/program_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;

TEST(ExecutableFolder, HoldsTheRunningProgram) {
    EXPECT_TRUE(fs::exists(executableFolder() + "/paths_test"));
}

TEST(UserDataFolder, FollowsTheDesktopsConvention) {
    ::setenv("XDG_DATA_HOME", "/data/of/me", 1);
    EXPECT_EQ(userDataFolder(), "/data/of/me");
    ::setenv("XDG_DATA_HOME", "relative", 1);
    ::setenv("HOME", "/home/me", 1);
    EXPECT_EQ(userDataFolder(), "/home/me/.local/share");
    ::unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(userDataFolder(), "/home/me/.local/share");
}

TEST(ProgramFolder, IsThatOfTheExecutableIfItMayBeWritten) {
    const fakes::TempFolder folder;
    EXPECT_EQ(programFolder(folder.path().string(), (folder / "data").string()),
              folder.path().string());
    EXPECT_FALSE(fs::exists(folder / "data"));
}

TEST(ProgramFolder, IsBelowTheUsersDataForAnInstalledProgram) {
    const fakes::TempFolder folder;
    fs::create_directory(folder / "bin");
    fs::create_directory(folder / "data");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "data", fs::perms::all);
    fs::permissions(folder / "bin", fs::perms::owner_read | fs::perms::owner_exec |
                                        fs::perms::others_read | fs::perms::others_exec);
    const std::string data = (folder / "data").string();
    EXPECT_EQ(test::runUnprivileged([&] {
                  return programFolder((folder / "bin").string(), data) == data + "/sonarith" ? 0
                                                                                              : 1;
              }),
              0);
    EXPECT_TRUE(fs::is_directory(data + "/sonarith"));
}

TEST(ProgramFolder, IsTheExecutablesIfNoOtherCanBeMade) {
    EXPECT_EQ(programFolder("/proc", "/proc/no"), "/proc");
}

TEST(ProgramFolder, IsNamedEvenIfItCannotBeMade) {
    EXPECT_EQ(programFolder("", "/proc/no"), "/proc/no/sonarith");
}

} // namespace
} // namespace sonarith
