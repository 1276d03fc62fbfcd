// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mpg123_control.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"
#include "support/fake_sound.h"
#include "support/waiting.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using fixture::Data;
using fixture::encoded;
using fixture::ordinary;
using fixture::writeFile;
using sound::Line;
using sound::SoundCard;

class Mpg123ControlTest : public testing::Test {
  protected:
    Mpg123ControlTest() { writeFile(source, ordinary()); }
    void finish() {
        EXPECT_TRUE(fakes::eventually([&] { return !control.Busy(); }));
    }
    void decode() {
        EXPECT_TRUE(control.setSourceFile(source).ok());
        EXPECT_TRUE(control.DecodeToWav(target).ok());
    }
    std::optional<FileIdentity> written() const { return FileIdentity::of(target); }

    fakes::TempFolder folder;
    const fs::path source = folder / "in.mp3";
    const fs::path target = folder / "out.wav";
    SoundCard card;
    SoundCard::Time now{};
    Mpg123Control control{card, [this] { return now; }, fixture::asItIs, {2, 16}};
};

TEST_F(Mpg123ControlTest, RestsUntilItIsToldToDecode) {
    EXPECT_FALSE(control.Busy());
    EXPECT_EQ(control.Position(), 0);
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::none);
}

TEST_F(Mpg123ControlTest, DecodesInTheBackground) {
    decode();
    EXPECT_GT(control.Length(), 0);
    finish();
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
    EXPECT_EQ(control.Position(), control.Length());
    EXPECT_EQ(fixture::readWav(target).samples.size(), 4U * 44100 * 2);
}

TEST_F(Mpg123ControlTest, MapsThePathsOfTheLogic) {
    Mpg123Control mapped(
        card, [] { return 0ns; },
        [&](const std::string& path) { return path == "c:\\in.mp3" ? source : target; }, {2, 16});
    EXPECT_TRUE(mapped.setSourceFile("c:\\in.mp3").ok());
    EXPECT_TRUE(mapped.DecodeToWav("c:\\out.wav").ok());
    EXPECT_TRUE(fakes::eventually([&] { return !mapped.Busy(); }));
    EXPECT_TRUE(fs::exists(target));
}

TEST_F(Mpg123ControlTest, PositionGoesForwardWithinLengthWhichIsAboveZeroAndStays) {
    writeFile(source, encoded(44100, 2, "-b 320", 8));
    decode();
    std::int32_t last = 0;
    while (control.Busy()) {
        EXPECT_EQ(control.Length(), Progress::length);
        const std::int32_t position = control.Position();
        EXPECT_GE(position, last);
        EXPECT_LE(position, control.Length());
        last = position;
    }
}

TEST_F(Mpg123ControlTest, DoesNothingForTheSameJobThatRunsOrWasJustCompleted) {
    decode();
    decode();
    finish();
    const auto before = written();
    ASSERT_TRUE(before);
    decode();
    EXPECT_FALSE(control.Busy());
    EXPECT_EQ(written(), before);
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
}

TEST_F(Mpg123ControlTest, DecodesAgainIfTheWavOrItsSourceWasChanged) {
    decode();
    finish();
    fs::remove(target);
    decode();
    finish();
    EXPECT_TRUE(written());
    writeFile(source, encoded(22050, 1, "-b 32"));
    decode();
    finish();
    EXPECT_EQ(fixture::readWav(target).format, (PcmFormat{22050, 1}));
}

TEST_F(Mpg123ControlTest, DecodesAgainWhatWasStoppedAndWhatFailed) {
    decode();
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_FALSE(control.Busy());
    decode();
    finish();
    EXPECT_EQ(fixture::readWav(target).samples.size(), 4U * 44100 * 2);
    fs::remove(source);
    fs::remove(target);
    decode();
    finish();
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::failed);
    writeFile(source, ordinary());
    decode();
    finish();
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
}

TEST_F(Mpg123ControlTest, StopsTheRunningJobForAnotherTarget) {
    const fs::path other = folder / "other.wav";
    writeFile(source, encoded(44100, 2, "-b 320", 8));
    decode();
    EXPECT_TRUE(control.DecodeToWav(other).ok());
    finish();
    const fixture::Samples whole = fixture::readWav(other).samples;
    EXPECT_EQ(whole.size(), 8U * 44100 * 2);
    if (written()) {
        const fixture::Samples part = fixture::readWav(target).samples;
        ASSERT_LE(part.size(), whole.size());
        EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin()));
    }
}

TEST_F(Mpg123ControlTest, AJobGoesOnWhenOnlyTheSourceFileIsSet) {
    decode();
    EXPECT_TRUE(control.setSourceFile(folder / "none.mp3").ok());
    finish();
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
}

TEST_F(Mpg123ControlTest, FailsWithoutASource) {
    EXPECT_FALSE(control.DecodeToWav(target).ok());
    EXPECT_FALSE(control.Play().ok());
    EXPECT_TRUE(control.setSourceFile(folder / "none.mp3").ok());
    EXPECT_FALSE(control.Play().ok());
}

TEST_F(Mpg123ControlTest, PlaysOnTheWaveLineUntilItIsStopped) {
    const auto tape = std::make_shared<fakes::MemorySink>();
    card.setRecordingSource(sound::RecordingSource::waveOut);
    EXPECT_TRUE(control.setSourceFile(source).ok());
    EXPECT_TRUE(control.Play().ok());
    card.startRecording(tape, now);
    EXPECT_TRUE(fakes::eventually([&] {
        now += 10ms;
        card.advance(now);
        return tape->size() >= 44100;
    }));
    EXPECT_TRUE(control.Stop().ok());
    card.stopRecording(now);
    EXPECT_FALSE(card.active());
    const fixture::Samples samples = fixture::sequentially(ordinary()).samples;
    const auto frames = tape->frames();
    for (std::size_t i = 0; i < 44100; ++i) {
        ASSERT_EQ(frames[i], (sound::StereoFrame{samples[2 * i], samples[2 * i + 1]})) << i;
    }
    EXPECT_FALSE(control.Busy());
}

TEST_F(Mpg123ControlTest, LeavesTheLineToWhoeverTookItOver) {
    EXPECT_TRUE(control.setSourceFile(source).ok());
    EXPECT_TRUE(control.Play().ok());
    card.attach(Line::waveOut, std::make_shared<fakes::PatternSource>(), now);
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_TRUE(card.active());
}

TEST_F(Mpg123ControlTest, SurvivesStartsAndStopsInAnyOrder) {
    writeFile(source, encoded(44100, 2, "-b 320", 8));
    std::mt19937 random(5);
    EXPECT_TRUE(control.setSourceFile(source).ok());
    for (int round = 0; round < 150; ++round) {
        switch (random() % 6) {
        case 0:
            control.Stop().passOver();
            EXPECT_FALSE(control.Busy());
            break;
        case 1:
            control.Play().passOver();
            break;
        case 2:
            now += 20ms;
            card.advance(now);
            break;
        case 3:
            EXPECT_LE(control.Position(), Progress::length);
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 5000));
            break;
        default:
            EXPECT_TRUE(control.DecodeToWav(folder / std::to_string(random() % 2)).ok());
        }
    }
    EXPECT_TRUE(control.Stop().ok());
    for (const char* name : {"0", "1"}) {
        if (fs::exists(folder / name)) {
            EXPECT_EQ(fixture::readWav(folder / name).format, (PcmFormat{44100, 2}));
        }
    }
}

} // namespace
} // namespace sonarith::mp3
