// SPDX-License-Identifier: GPL-3.0-or-later
// Compares the level meter with the samples of a disc image. Drive, command interpreter, sound
// card, mixer and wave input are the program's own, and the clock is simulated.
#include <cstdint>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "platform/linux/disc/image_drive.h"
#include "platform/linux/disc/image_script_fixture.h"
#include "player/meter_scale.h"
#include "support/player_on_card.h"
#include "support/waiting.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using sound::StereoFrame;

/// Stores the frames that the card sends to a recorder. The meter measures the same frames.
class KeptSound : public sound::RecordingSink {
  public:
    void record(std::span<const StereoFrame> block) override {
        frames.insert(frames.end(), block.begin(), block.end());
    }
    std::vector<StereoFrame> frames;
};

std::vector<StereoFrame> samplesOf(const std::filesystem::path& binary) {
    std::ifstream file(binary, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const auto sampleAt = [&](std::size_t at) {
        const auto low = static_cast<std::uint8_t>(bytes[at]);
        const auto high = static_cast<std::uint8_t>(bytes[at + 1]);
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(low | high << 8U));
    };
    std::vector<StereoFrame> frames;
    for (std::size_t at = 0; at + 3 < bytes.size(); at += 4) {
        frames.push_back({sampleAt(at), sampleAt(at + 2)});
    }
    return frames;
}

class TheMeterOnTheSoftwareCard : public testing::TestWithParam<const char*> {
  protected:
    TheMeterOnTheSoftwareCard() {
        world_.card.startRecording(kept_, time_);
        world_.switchOn();
    }
    ~TheMeterOnTheSoftwareCard() override { world_.form.Command6.click(); }

    /// Plays this number of blocks of the disc.
    void pass(std::size_t blocks) {
        for (std::size_t i = 0; i < blocks; ++i) {
            const std::size_t before = kept_->frames.size();
            // Another thread reads the disc. While it has not read enough, the card waits, and does
            // not make up for that time later.
            ASSERT_TRUE(fakes::eventually([&] {
                if (kept_->frames.size() == before) {
                    time_ += 10ms;
                    world_.card.advance(time_);
                }
                return kept_->frames.size() > before;
            }));
        }
    }
    /// Runs one tick of the meter, which must then show exactly this level.
    void expectReading(int level) {
        world_.form.Timer3.fire();
        EXPECT_EQ(world_.player.mixerState.Volume, -level);
        EXPECT_EQ(world_.form.Label4.top(), barTop(world_.form.Picture8.height(), level));
    }

    disc::ImageFolder folder_;
    std::filesystem::path sheet_ = disc::makeImage(
        folder_, "cue", std::string("--tracks 2 --sectors 225 --signal ") + GetParam());
    std::vector<StereoFrame> samples_ = samplesOf(folder_.path("a.bin"));
    std::shared_ptr<KeptSound> kept_ = std::make_shared<KeptSound>();
    sound::SoundCard::Time time_ = 7s;
    test::PlayerOnCard world_{std::make_shared<disc::ImageDrive>(sheet_), [this] {
                                  return time_;
                              }};
};

TEST_P(TheMeterOnTheSoftwareCard, ShowsAtEachTickTheLargestSampleSinceThePreviousTick) {
    ASSERT_EQ(samples_.size(), 450U * disc::framesPerSector);
    ASSERT_EQ(world_.form.CD.text(), "Cd Ready");
    world_.form.play.click();
    std::size_t from = 0;
    std::vector<int> levels;
    for (int tick = 0; tick < 150; ++tick) {
        SCOPED_TRACE("tick " + std::to_string(tick));
        // Usually one block is played before a tick. Before every seventh tick, four blocks are
        // played, as if the window had been busy.
        ASSERT_NO_FATAL_FAILURE(pass(tick % 7 == 6 ? 4 : 1));
        const std::size_t end = kept_->frames.size();
        ASSERT_LE(end, samples_.size());
        const int level = sound::peakOf(std::span(samples_).subspan(from, end - from));
        expectReading(level);
        if (levels.empty() || level != levels.back()) {
            levels.push_back(level);
        }
        // A further tick at once: without a new block, the meter shows the same level again (see
        // PeakMeter::read()).
        expectReading(level);
        from = end;
    }
    EXPECT_GT(levels.size(), 20U)
        << "there must be enough different levels to detect a wrong block";
    // The card has played the disc from its first sample on, and nothing else.
    disc::expectFrames(kept_->frames,
                       {samples_.begin(), samples_.begin() + std::ssize(kept_->frames)});
}

TEST_P(TheMeterOnTheSoftwareCard, IsIndependentOfVolumeAndMuteAndFallsToZeroInSilence) {
    world_.form.play.click();
    world_.form.Option13.click();                 // mutes the disc's line
    world_.form.sliderMasterVolume.moveTo(65535); // lowest volume; position 0 is the highest
    ASSERT_NO_FATAL_FAILURE(pass(20));
    const int level = sound::peakOf(std::span(samples_).first(kept_->frames.size()));
    EXPECT_GT(level, 1000);
    expectReading(level);
    world_.form.pause.click();
    time_ += sound::PeakMeter::holdTime;
    world_.card.advance(time_);
    expectReading(0);
    EXPECT_GE(world_.form.Label4.top(), world_.form.Picture8.height());
}

INSTANTIATE_TEST_SUITE_P(WithADisc, TheMeterOnTheSoftwareCard, testing::Values("music", "ramp"));

} // namespace
} // namespace sonarith
