// SPDX-License-Identifier: GPL-3.0-or-later
// Plays what tools/make_disc_image.py makes, in each of its layouts, sample by sample.
#include <gmock/gmock.h>

#include <cstdlib>

#include "platform/linux/disc/image_drive.h"
#include "platform/linux/disc/image_fixture.h"

namespace sonarith::disc {
namespace {

using ::testing::IsEmpty;

const std::filesystem::path script = std::filesystem::path(__FILE__)
                                         .parent_path() // of disc, linux, platform, src
                                         .parent_path()
                                         .parent_path()
                                         .parent_path()
                                         .parent_path() /
                                     "tools" / "make_disc_image.py";

class ImageScript : public ::testing::TestWithParam<const char*> {
  protected:
    std::string make(const std::string& options) {
        const std::string layout = GetParam();
        const std::string command = "python3 '" + script.string() + "' '" +
                                    folder_.path("").string() + "' --name a --layout " + layout +
                                    " " + options + " >/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return folder_.path(layout == "toc" ? "a.toc" : "a.cue");
    }
    ImageFolder folder_;
};

TEST_P(ImageScript, MakesARampThatPlaysAsOneRun) {
    ImageDrive drive(make("--tracks 3 --sectors 200 --pause 20 --signal ramp"));
    const Loaded loaded = drive.load();
    ASSERT_NE(loaded.disc, nullptr) << loaded.problem;
    EXPECT_THAT(loaded.disc->remark(), IsEmpty());
    ASSERT_EQ(loaded.disc->table().tracks.size(), 3U);
    EXPECT_EQ(loaded.disc->table().start(2), 220);
    EXPECT_EQ(loaded.disc->table().start(3), 440);
    expectFrames(wholeLine(*loaded.disc, 25), rampSectors(0, 640));
}

TEST_P(ImageScript, AddsADataTrackToAnEnhancedDisc) {
    ImageDrive drive(make("--tracks 1 --sectors 20 --data 30 --signal ramp"));
    const Loaded loaded = drive.load();
    ASSERT_NE(loaded.disc, nullptr) << loaded.problem;
    EXPECT_THAT(loaded.disc->remark(), IsEmpty());
    ASSERT_EQ(loaded.disc->table().tracks.size(), 2U);
    EXPECT_EQ(loaded.disc->table().tracks[1].kind, TrackKind::data);
    EXPECT_EQ(loaded.disc->table().tracks[1].sectors, 30);
    expectFrames(wholeLine(*loaded.disc), joined({rampSectors(0, 20), silentSectors(30)}));
}

INSTANTIATE_TEST_SUITE_P(Layouts, ImageScript,
                         ::testing::Values("cue", "cue-multi", "motorola", "wave", "toc"),
                         [](const auto& instance) {
                             std::string name = instance.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace sonarith::disc
