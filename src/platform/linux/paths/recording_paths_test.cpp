// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/recording_paths.h"

#include <gmock/gmock.h>

#include "platform/linux/paths/hanging_fixture.h"

namespace sonarith {
namespace {

class RecordingPathsTest : public testing::Test, protected test::HangingWorld {
  protected:
    RecordingPathsTest() { mounts->write("d/My Music/Old.wav"); }

    const std::string folder = d + "/My Music/";
    RecordingPaths recordings{files};
};

TEST_F(RecordingPathsTest, PathsSpellExistingFoldersAndFilesAsOnTheDisk) {
    EXPECT_EQ(recordings.beginIn("d:\\my music"), d + "/My Music");
    EXPECT_EQ(recordings.saveAs("d:\\my music\\old.wav"), folder + "Old.wav");
    EXPECT_EQ(recordings.saveAs("d:\\my music\\1234-1.wav"), folder + "1234-1.wav");
}

TEST_F(RecordingPathsTest, ASaveOnAHangingDiskUsesTheFolderInWhichTheRecordingBegan) {
    ASSERT_EQ(recordings.beginIn("d:\\my music"), d + "/My Music");
    mounts->hang(d);
    EXPECT_EQ(recordings.saveAs("d:\\my music\\1234-1.wav"), folder + "1234-1.wav");
    // Each further call returns at once and blocks no further thread.
    const int hanging = mounts->blocked();
    EXPECT_EQ(recordings.saveAs("D:\\My Music\\1234-2.wav"), folder + "1234-2.wav");
    EXPECT_EQ(mounts->blocked(), hanging);
}

TEST_F(RecordingPathsTest, ASaveOnAHangingDiskHasNoPathIfTheRecordingBeganInAnotherFolder) {
    ASSERT_EQ(recordings.beginIn("e:\\"), e);
    mounts->hang(d);
    EXPECT_EQ(recordings.saveAs("d:\\my music\\1234-1.wav"), "");
    EXPECT_EQ(recordings.saveAs("e:\\1234-1.wav"), e + "/1234-1.wav");
}

TEST_F(RecordingPathsTest, AFolderThatHangsWhenARecordingBeginsIsNotUsedForASave) {
    ASSERT_EQ(recordings.beginIn("d:\\my music"), d + "/My Music");
    mounts->write("e/music/old.wav");
    mounts->hang(e);
    EXPECT_EQ(recordings.beginIn("e:\\music"), "");
    EXPECT_EQ(recordings.saveAs("e:\\music\\1234-1.wav"), "");
    EXPECT_EQ(recordings.saveAs("d:\\my music\\1234-1.wav"), folder + "1234-1.wav");
}

TEST_F(RecordingPathsTest, AHangingDiskDoesNotChangeHowSpecialCharactersAreConverted) {
    ASSERT_EQ(recordings.beginIn("d:\\my music\\"), d + "/My Music");
    const std::string shown = "d:\\my music\\what\u0294.wav"; // U+0294 replaces "?"
    EXPECT_EQ(recordings.saveAs(shown), folder + "what?.wav");
    mounts->hang(d);
    EXPECT_EQ(recordings.saveAs(shown), folder + "what?.wav");
}

} // namespace
} // namespace sonarith
