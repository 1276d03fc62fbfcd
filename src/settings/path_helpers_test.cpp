// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/path_helpers.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(FileBaseName, RemovesFolderAndExtension) {
    EXPECT_EQ(FileBaseName("c:\\music\\track1.wav").value(), "track1");
    EXPECT_EQ(FileBaseName("track1.wav").value(), "track1");
}

TEST(FileBaseName, RemovesTheLastFourCharactersWhateverTheyAre) {
    EXPECT_EQ(FileBaseName("c:\\music\\name.mpeg").value(), "name.");
    EXPECT_EQ(FileBaseName("c:\\music\\readme").value(), "re");
    EXPECT_EQ(FileBaseName("c:\\música\\日本語の歌").value(), "日");
    EXPECT_EQ(FileBaseName(".wav").value(), "");
}

TEST(FileBaseName, UsesTheWholePathIfNothingFollowsTheLastBackslash) {
    EXPECT_EQ(FileBaseName("c:\\music\\").value(), "c:\\mu");
}

TEST(FileBaseName, FailsOnANameOfFewerThanFourCharacters) {
    for (const char* path : {"", "abc", "c:\\music\\abc", "äöü"}) {
        const auto base = FileBaseName(path);
        ASSERT_FALSE(base.ok()) << path;
        EXPECT_EQ(base.error().number, ErrorNumber::invalidProcedureCall) << path;
    }
}

TEST(SplitPath, ReturnsTheNameAndStoresTheFolderWithItsBackslash) {
    ProcessState process;
    EXPECT_EQ(SplitPath("c:\\music\\track1.wav", process), "track1.wav");
    EXPECT_EQ(process.SplitDir, "c:\\music\\");
}

TEST(SplitPath, ReturnsAPathWithoutABackslashAndStoresAnEmptyFolder) {
    ProcessState process;
    process.SplitDir = "from before";
    EXPECT_EQ(SplitPath("track1.wav", process), "track1.wav");
    EXPECT_EQ(process.SplitDir, "");
}

TEST(SplitPath, TreatsAPathWithATrailingBackslashAsAName) {
    ProcessState process;
    EXPECT_EQ(SplitPath("c:\\music\\", process), "c:\\music\\");
    EXPECT_EQ(process.SplitDir, "");
}

TEST(SplitPath, AcceptsAnEmptyPathAndAReferenceToSplitDir) {
    ProcessState process;
    EXPECT_EQ(SplitPath("", process), "");
    process.SplitDir = "c:\\a\\b";
    EXPECT_EQ(SplitPath(process.SplitDir, process), "b");
    EXPECT_EQ(process.SplitDir, "c:\\a\\");
}

} // namespace
} // namespace sonarith
