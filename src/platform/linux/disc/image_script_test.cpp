// SPDX-License-Identifier: GPL-3.0-or-later
// Creates disc images with tools/make_disc_image.py in each layout that the script supports, and
// tests that every frame read from them is the expected one.
#include <gmock/gmock.h>

#include "platform/linux/disc/image_drive.h"
#include "platform/linux/disc/image_script_fixture.h"

namespace sonarith::disc {
namespace {

using ::testing::IsEmpty;

class ImageScript : public ::testing::TestWithParam<const char*> {
  protected:
    std::filesystem::path make(const std::string& options) {
        return makeImage(folder_, GetParam(), options);
    }
    ImageFolder folder_;
};

TEST_P(ImageScript, CreatesARampWithoutGapsThroughAllTracksAndPauses) {
    ImageDrive drive(make("--tracks 3 --sectors 200 --pause 20 --signal ramp"));
    const Loaded loaded = drive.load();
    ASSERT_NE(loaded.disc, nullptr) << loaded.problem.text;
    EXPECT_THAT(loaded.disc->remark(), IsEmpty());
    ASSERT_EQ(loaded.disc->table().tracks.size(), 3U);
    EXPECT_EQ(loaded.disc->table().start(2), 220);
    EXPECT_EQ(loaded.disc->table().start(3), 440);
    expectFrames(wholeLine(*loaded.disc, 25), rampSectors(0, 640));
}

TEST_P(ImageScript, CreatesAnEnhancedDiscWithADataTrack) {
    ImageDrive drive(make("--tracks 1 --sectors 20 --data 30 --signal ramp"));
    const Loaded loaded = drive.load();
    ASSERT_NE(loaded.disc, nullptr) << loaded.problem.text;
    EXPECT_THAT(loaded.disc->remark(), IsEmpty());
    ASSERT_EQ(loaded.disc->table().tracks.size(), 2U);
    EXPECT_EQ(loaded.disc->table().tracks[1].kind, TrackKind::data);
    EXPECT_EQ(loaded.disc->table().tracks[1].sectors, 30);
    expectFrames(wholeLine(*loaded.disc), joined({rampSectors(0, 20), silentSectors(30)}));
}

INSTANTIATE_TEST_SUITE_P(Layouts, ImageScript, ::testing::ValuesIn(imageLayouts), layoutName);

} // namespace
} // namespace sonarith::disc
