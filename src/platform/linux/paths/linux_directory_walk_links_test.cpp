// SPDX-License-Identifier: GPL-3.0-or-later
// Tests of walks through folders that contain links. linux_directory_walk_test.cpp instantiates the
// suite.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/linux/paths/linux_directory_walk_fixture.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using test::LinuxDirectoryWalkTest;
using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;

TEST_P(LinuxDirectoryWalkTest, ALinkToAFolderElsewhereIsFollowed) {
    fs::create_directories(folder_ / "elsewhere/sub");
    std::ofstream(folder_ / "elsewhere/sub/a.wav") << "x";
    link((folder_ / "elsewhere").string(), "Link");
    EXPECT_THAT(filesBelow("d:"), ElementsAre("d:\\link\\sub\\a.wav"));
}

TEST_P(LinuxDirectoryWalkTest, OnlyOneOfTwoLinksToTheSameFolderIsFollowed) {
    fs::create_directories(folder_ / "elsewhere");
    std::ofstream(folder_ / "elsewhere/a.wav") << "x";
    link((folder_ / "elsewhere").string(), "one");
    link((folder_ / "elsewhere").string(), "two");
    EXPECT_THAT(filesBelow("d:"), SizeIs(1));
}

TEST_P(LinuxDirectoryWalkTest, AWalkThroughALoopOfLinksEndsAndFindsEachFileOnce) {
    write("a.wav");
    write("x/b.wav");
    write("y/c.wav");
    link(".", "self");
    link("..", "x/up");
    link("../y", "x/across");
    link("../x", "y/across");
    link(disk_, "y/whole");
    const auto files = filesBelow("d:");
    EXPECT_THAT(files, SizeIs(3));
    for (const char* name : {"a.wav", "b.wav", "c.wav"}) {
        EXPECT_THAT(files, Contains(testing::EndsWith(name)));
    }
}

TEST_P(LinuxDirectoryWalkTest,
       AWalkThroughFoldersThatLinkToEachOtherVisitsEachFolderAndLinkAtMostOnce) {
    constexpr int count = 20;
    for (int i = 0; i < count; ++i) {
        write(std::to_string(i) + "/a.wav");
        for (int k = 0; k < count; ++k) {
            link("../" + std::to_string(k), std::to_string(i) + "/to" + std::to_string(k));
        }
    }
    EXPECT_THAT(filesBelow("d:"), SizeIs(count));
    EXPECT_LE(foldersVisited_, 1 + count + count * count);
}

} // namespace
} // namespace sonarith
