// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/program_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;

TEST(ExecutableFolder, ContainsTheRunningProgram) {
    EXPECT_TRUE(fs::exists(executableFolder() + "/paths_test"));
}

TEST(ProgramFolder, IsTheExecutablesFolderIfTheExecutablesFolderIsWritable) {
    const fakes::TempFolder folder;
    const auto never = [] {
        ADD_FAILURE() << "the music folder was requested although it is not needed";
        return std::string();
    };
    EXPECT_EQ(programFolder(folder.path().string(), never), folder.path().string());
}

TEST(ProgramFolder, IsInTheUsersMusicFolderIfTheExecutablesFolderIsNotWritable) {
    const fakes::TempFolder folder;
    fs::create_directory(folder / "bin");
    fs::create_directory(folder / "music");
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(folder / "music", fs::perms::all);
    fs::permissions(folder / "bin", fs::perms::owner_read | fs::perms::owner_exec |
                                        fs::perms::others_read | fs::perms::others_exec);
    const std::string music = (folder / "music").string();
    EXPECT_EQ(test::runUnprivileged([&] {
                  return programFolder((folder / "bin").string(), [&] { return music; }) ==
                                 music + "/Sonarith"
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_TRUE(fs::is_directory(music + "/Sonarith"));
}

TEST(ProgramFolder, IsInTheUsersMusicFolderForAnInstalledProgram) {
    const fakes::TempFolder folder;
    fs::create_directories(folder / "share/sonarith");
    fs::create_directory(folder / "bin"); // the user who runs the test can write to it
    const std::string music = (folder / "music").string();
    EXPECT_EQ(programFolder((folder / "bin").string(), [&] { return music; }), music + "/Sonarith");
}

TEST(ProgramFolder, IsTheExecutablesFolderIfTheMusicSubfolderCannotBeCreated) {
    EXPECT_EQ(programFolder("/proc", [] { return "/proc/no"; }), "/proc");
}

TEST(ProgramFolder, IsTheUncreatableMusicSubfolderIfTheExecutablesFolderIsUnknown) {
    EXPECT_EQ(programFolder("", [] { return "/proc/no"; }), "/proc/no/Sonarith");
}

} // namespace
} // namespace sonarith
