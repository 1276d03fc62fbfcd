// SPDX-License-Identifier: GPL-3.0-or-later
// Tests what is heard when the user plays files in any order. mpg123_control_test.cpp and
// hanging_disk_test.cpp contain the other tests of Mpg123Control.
#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"
#include "platform/linux/mp3/mpg123_control.h"
#include "support/fake_notices.h"
#include "support/fake_sound.h"
#include "support/waiting.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using fixture::encoded;
using fixture::writeFile;

class Mpg123PlayingTest : public testing::Test {
  protected:
    using Frames = std::vector<sound::StereoFrame>;

    Mpg123PlayingTest() {
        writeFile(one, encoded(44100, 2, "-b 128"));
        writeFile(two, encoded(44100, 2, "-b 192"));
        card.setRecordingSource(sound::RecordingSource::waveOut);
    }
    ~Mpg123PlayingTest() override {
        control.Stop().passOver();
        EXPECT_THAT(notices.texts(), testing::IsEmpty());
    }
    void play(const fs::path& file) {
        EXPECT_TRUE(control.setSourceFile(file).ok());
        EXPECT_TRUE(control.Play().ok());
    }
    /// The first `compared` frames that are played from now on.
    Frames heard() {
        const auto tape = std::make_shared<fakes::MemorySink>();
        card.startRecording(tape, now);
        // If no sound is ready, the source waits for Mp3PlayerSource::patience on this clock, and
        // then delivers silence. So the clock advances in small steps until the first frame
        // arrives.
        EXPECT_TRUE(fakes::eventually([&] {
            now += tape->size() > 0 ? 10'000us : 50us;
            card.advance(now);
            return tape->size() >= compared;
        }));
        card.stopRecording(now);
        Frames frames = tape->frames();
        frames.resize(compared);
        return frames;
    }
    static Frames beginningOf(const fixture::Data& file) {
        const fixture::Samples samples = fixture::sequentially(file).samples;
        Frames frames;
        for (std::size_t i = 0; i < compared; ++i) {
            frames.push_back({samples[2 * i], samples[2 * i + 1]});
        }
        return frames;
    }
    void awaitSilence() {
        EXPECT_TRUE(fakes::eventually([&] {
            card.advance(now += 10ms);
            return !card.active();
        }));
    }

    static constexpr std::size_t compared = 11025;
    fakes::TempFolder folder;
    const fs::path one = folder / "one.mp3";
    const fs::path two = folder / "two.mp3";
    test::FakeNotices notices;
    sound::SoundCard card;
    sound::SoundCard::Time now{};
    Mpg123Control control{card,
                          [this] { return now; },
                          fixture::asItIs,
                          notices,
                          std::make_shared<sound::PendingSaves>(),
                          {2, 16}};
};

TEST_F(Mpg123PlayingTest, PlayDuringPlayingStartsTheSourceFileAtItsBeginning) {
    const Frames first = beginningOf(encoded(44100, 2, "-b 128"));
    const Frames second = beginningOf(encoded(44100, 2, "-b 192"));
    ASSERT_NE(first, second);
    play(one);
    EXPECT_EQ(heard(), first);
    play(two);
    EXPECT_EQ(heard(), second);
    play(two);
    EXPECT_EQ(heard(), second);
}

TEST_F(Mpg123PlayingTest, PlayAfterStopStartsTheFileAtItsBeginning) {
    const Frames beginning = beginningOf(encoded(44100, 2, "-b 128"));
    for (int round = 0; round < 2; ++round) {
        play(one);
        EXPECT_EQ(heard(), beginning) << "round " << round;
        EXPECT_TRUE(control.Stop().ok());
        EXPECT_FALSE(card.active());
    }
}

TEST_F(Mpg123PlayingTest, AFileThatHasEndedIsQuietAndCanBePlayedAgain) {
    const Frames beginning = beginningOf(encoded(44100, 2, "-b 128"));
    play(one);
    awaitSilence();
    EXPECT_TRUE(control.Play().ok());
    EXPECT_EQ(heard(), beginning);
    awaitSilence();
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_FALSE(card.active());
}

TEST_F(Mpg123PlayingTest, ATruncatedFilePlaysToItsEnd) {
    const fixture::Data& whole = encoded(44100, 2, "-b 128");
    writeFile(one, fixture::part(whole, 0, whole.size() / 2 + 100));
    play(one);
    EXPECT_EQ(heard(), beginningOf(whole));
    awaitSilence();
}

TEST_F(Mpg123PlayingTest, AFileThatIsDeletedOrTruncatedDuringPlayingEndsWithoutANotice) {
    for (const bool truncated : {false, true}) {
        writeFile(one, encoded(44100, 2, "-b 128"));
        play(one);
        EXPECT_EQ(heard(), beginningOf(encoded(44100, 2, "-b 128")));
        if (truncated) {
            fs::resize_file(one, 0);
        } else {
            fs::remove(one);
        }
        awaitSilence();
        EXPECT_TRUE(control.Play().ok());
        awaitSilence();
    }
}

} // namespace
} // namespace sonarith::mp3
