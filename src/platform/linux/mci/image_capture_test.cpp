// SPDX-License-Identifier: GPL-3.0-or-later
// Tests captures (recordings of a played track) of disc images, from the image's files to the saved
// WAV file, in each layout of tools/make_disc_image.py: every sample of the test signal (a ramp)
// must be at its position in the WAV file.
#include <algorithm>

#include <gmock/gmock.h>

#include "platform/linux/disc/image_drive.h"
#include "platform/linux/disc/image_script_fixture.h"
#include "platform/linux/mci/machine_fixture.h"
#include "support/wav_samples.h"

namespace sonarith::mci {
namespace {

using fakes::said;
using sound::StereoFrame;

// The tracks last 2.4 s, 2.4 s and 2.1333 s: each track except the last includes the pause before
// the next track.
constexpr const char* scriptOptions = "--tracks 3 --sectors 160 --pause 20 --signal ramp";
constexpr std::int64_t discSectors = 520;

class AnImage : public testing::TestWithParam<const char*>, protected MachineSession {
  protected:
    AnImage() : MachineSession([this] { return drive_; }) {}

    disc::ImageFolder images_;
    std::shared_ptr<disc::Drive> drive_ =
        std::make_shared<disc::ImageDrive>(disc::makeImage(images_, GetParam(), scriptOptions));
};

/// Expects that the file begins with at most 3 ms of silence: 2 ms pass between the commands
/// "record" and "play". Then the file must contain the disc from `firstSector` to at least
/// `endSector`. It must end at most 104 ms after `endSector`: a capture queries the position every
/// 103 ms. After the end of the disc, the file must contain silence.
void expectCapture(const std::filesystem::path& path, std::int64_t firstSector,
                   std::int64_t endSector) {
    const auto wav = fakes::readWav(path);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->channels, 2);
    EXPECT_EQ(wav->rate, 44100);
    std::vector<StereoFrame> saved;
    for (std::size_t i = 0; i + 1 < wav->samples.size(); i += 2) {
        saved.push_back({wav->samples[i], wav->samples[i + 1]});
    }
    const auto sound = std::find_if(saved.begin(), saved.end(), [](const StereoFrame& frame) {
        return frame != StereoFrame{};
    });
    const auto lead = sound - saved.begin();
    EXPECT_LE(lead, 44100 * 3 / 1000);
    const auto length = std::ssize(saved) - lead;
    const std::int64_t asked = (endSector - firstSector) * disc::framesPerSector;
    EXPECT_GE(length, asked);
    EXPECT_LE(length, asked + 44100 * 104 / 1000);

    auto expected = disc::ramp(firstSector * disc::framesPerSector, length);
    const std::int64_t left = (discSectors - firstSector) * disc::framesPerSector;
    if (length > left) {
        std::fill(expected.begin() + left, expected.end(), StereoFrame{});
    }
    disc::expectFrames({sound, saved.end()}, expected);
}

TEST_P(AnImage, IsSavedWithEverySample) {
    capture("", 2400, "1.wav");
    capture(" from 2400", 4800, "2.wav");
    capture(" from 4800", 6933, "3.wav");
    expectCapture(folder / "1.wav", 0, 180);
    expectCapture(folder / "2.wav", 180, 360);
    expectCapture(folder / "3.wav", 360, discSectors);
    EXPECT_FALSE(card.active());
}

TEST_P(AnImage, ReportsItsTracks) {
    EXPECT_EQ(send("open cdaudio alias cd"), fakes::fine());
    EXPECT_EQ(send("set cd time format milliseconds"), fakes::fine());
    EXPECT_EQ(send("status cd number of tracks"), said("3"));
    EXPECT_EQ(send("status cd position track 2"), said("2400"));
    EXPECT_EQ(send("status cd position track 3"), said("4800"));
    EXPECT_EQ(send("status cd length"), said("6933"));
}

class AnImageWithATruncatedSheet : public testing::Test, protected MachineSession {
  protected:
    AnImageWithATruncatedSheet() : MachineSession([this] { return drive_; }) {}

    disc::ImageFolder images_;
    std::shared_ptr<disc::Drive> drive_ = std::make_shared<disc::ImageDrive>(images_.path("a.cue"));
};

TEST_F(AnImageWithATruncatedSheet, IsFoundByAnOpenDeviceAfterTheSheetIsRepaired) {
    images_.write("a.cue", "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:0");
    images_.writeFrames("a.bin", disc::rampSectors(0, 75));
    EXPECT_EQ(send("open cdaudio alias cd"), fakes::fine());
    for (int query = 0; query < 10; ++query) {
        EXPECT_EQ(send("status cd media present"), said("false"));
    }
    images_.write("a.cue", "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
    EXPECT_EQ(send("status cd media present"), said("true"));
    EXPECT_EQ(send("status cd length"), said("00:01:00"));
}

INSTANTIATE_TEST_SUITE_P(Layouts, AnImage, testing::ValuesIn(disc::imageLayouts), disc::layoutName);

} // namespace
} // namespace sonarith::mci
