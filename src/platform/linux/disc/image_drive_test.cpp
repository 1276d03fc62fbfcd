// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_drive.h"

#include <functional>

#include <gmock/gmock.h>

#include "platform/linux/disc/image_fixture.h"
#include "support/unprivileged.h"

namespace sonarith::disc {
namespace {

using ::testing::IsEmpty;
using ::testing::StartsWith;

class ImageDriveTest : public ::testing::Test {
  protected:
    ImageDriveTest() {
        folder_.writeFrames("a.bin", rampSectors(0, 30));
        writeTracks(1);
    }
    void writeTracks(int count) {
        std::string text = "FILE a.bin BINARY\n";
        for (int i = 1; i <= count; ++i) {
            text += "TRACK 0" + std::to_string(i) + " AUDIO\nINDEX 01 00:00:0" +
                    std::to_string(i - 1) + "\n";
        }
        folder_.write("a.cue", text);
    }

    ImageFolder folder_;
    ImageDrive drive_{folder_.path("a.cue")};
};

TEST_F(ImageDriveTest, ReadsTheImageAgainOnEachLoad) {
    EXPECT_EQ(drive_.load().disc->table().tracks.size(), 1U);
    writeTracks(3);
    EXPECT_EQ(drive_.load().disc->table().tracks.size(), 3U);
}

TEST_F(ImageDriveTest, ADiscIsPresentWhileTheImageExists) {
    EXPECT_TRUE(drive_.mediaPresent());
    EXPECT_NE(drive_.load().disc, nullptr);
    EXPECT_TRUE(drive_.mediaPresent());
    std::filesystem::remove(folder_.path("a.cue"));
    EXPECT_FALSE(drive_.mediaPresent());
}

TEST_F(ImageDriveTest, AnUnreadableImageYieldsNoDiscAndAnErrorMessage) {
    std::filesystem::remove(folder_.path("a.bin"));
    const Loaded loaded = drive_.load();
    EXPECT_EQ(loaded.disc, nullptr);
    EXPECT_THAT(loaded.problem.text, StartsWith("a.cue, line 1: \"a.bin\" cannot be read"));
    EXPECT_FALSE(drive_.mediaPresent());
}

TEST_F(ImageDriveTest, ReportsTheKindOfEachProblem) {
    EXPECT_EQ(drive_.load().problem.kind, DeviceProblem::none);
    drive_.openTray();
    EXPECT_EQ(drive_.load().problem.kind, DeviceProblem::trayOpen);
    drive_.closeTray();
    folder_.write("a.cue", "FILE a.bin BINARY\nTRACK 01 NOISE\n");
    EXPECT_EQ(drive_.load().problem.kind, DeviceProblem::unreadable);
    writeTracks(1);
    std::filesystem::permissions(folder_.path("a.bin"), std::filesystem::perms::none);
    EXPECT_EQ(
        test::runUnprivileged([this] { return static_cast<int>(drive_.load().problem.kind); }),
        static_cast<int>(DeviceProblem::noPermission));
    std::filesystem::remove(folder_.path("a.bin"));
    EXPECT_EQ(drive_.load().problem.kind, DeviceProblem::missing);
    std::filesystem::remove(folder_.path("a.cue"));
    EXPECT_EQ(drive_.load().problem.kind, DeviceProblem::missing);
}

TEST_F(ImageDriveTest, ARepairedImageIsPresentAtOnce) {
    std::filesystem::remove(folder_.path("a.bin"));
    EXPECT_EQ(drive_.load().disc, nullptr);
    EXPECT_FALSE(drive_.mediaPresent());
    folder_.writeFrames("a.bin", rampSectors(0, 30));
    EXPECT_TRUE(drive_.mediaPresent());
    const Loaded loaded = drive_.load();
    EXPECT_NE(loaded.disc, nullptr);
    EXPECT_THAT(loaded.problem.text, IsEmpty());
    EXPECT_TRUE(drive_.mediaPresent());
}

TEST_F(ImageDriveTest, AFileThatChangesWhileInUseCountsAsAChangeOfDiscs) {
    const auto bin = folder_.path("a.bin");
    const struct {
        const char* what;
        std::function<void()> change;
    } rows[] = {
        {"the sheet is overwritten",
         [&] {
             writeTracks(2);
         }},
        {"the sound file is overwritten",
         [&] {
             folder_.writeFrames("a.bin", rampSectors(5, 31));
         }},
        {"another file is renamed to the name of the sound file",
         [&] {
             folder_.writeFrames("new", rampSectors(9, 31));
             std::filesystem::rename(folder_.path("new"), bin);
         }},
    };
    std::vector<sound::StereoFrame> block(588);
    for (const auto& row : rows) {
        const auto played = drive_.load().disc;
        ASSERT_NE(played, nullptr) << row.what;
        EXPECT_TRUE(drive_.mediaPresent()) << row.what;
        row.change();
        EXPECT_FALSE(drive_.mediaPresent()) << row.what;
        EXPECT_EQ(played->read(0, block), ReadOutcome::gone) << row.what;
        EXPECT_TRUE(drive_.mediaPresent()) << row.what;
    }
    const auto played = drive_.load().disc;
    std::filesystem::remove(bin);
    EXPECT_FALSE(drive_.mediaPresent());
    EXPECT_FALSE(drive_.mediaPresent()) << "no disc may be present while the sound file is missing";
}

TEST_F(ImageDriveTest, AFileThatChangesWhileUnusedIsNoChangeOfDiscs) {
    EXPECT_NE(drive_.load().disc, nullptr);
    writeTracks(2);
    EXPECT_TRUE(drive_.mediaPresent());
}

TEST_F(ImageDriveTest, ADriveWithAnOpenTrayHasNoDiscAndNoErrorMessage) {
    const auto played = drive_.load().disc;
    drive_.openTray();
    EXPECT_FALSE(drive_.mediaPresent());
    EXPECT_EQ(drive_.load().disc, nullptr);
    EXPECT_THAT(drive_.load().problem.text, IsEmpty());
    std::vector<sound::StereoFrame> block(588);
    EXPECT_EQ(played->read(0, block), ReadOutcome::gone);
    drive_.closeTray();
    EXPECT_TRUE(drive_.mediaPresent());
    EXPECT_NE(drive_.load().disc, nullptr);
}

} // namespace
} // namespace sonarith::disc
