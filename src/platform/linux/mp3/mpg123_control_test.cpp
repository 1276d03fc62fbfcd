// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mpg123_control.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"
#include "support/fake_notices.h"
#include "support/fake_sound.h"
#include "support/held_calls.h"
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
using test::HeldCalls;

class Mpg123ControlTest : public testing::Test {
  protected:
    Mpg123ControlTest() { writeFile(source, ordinary()); }
    ~Mpg123ControlTest() override {
        control.Stop().passOver();
        other.Stop().passOver();
        EXPECT_TRUE(saves->awaitNone(30s));
    }
    void finish() {
        EXPECT_TRUE(fakes::eventually([&] { return !control.Busy(); }));
    }
    void decode() {
        EXPECT_TRUE(control.setSourceFile(source).ok());
        EXPECT_TRUE(control.DecodeToWav(target).ok());
    }
    std::optional<FileIdentity> written() const { return FileIdentity::of(target); }
    /// Advances the card until `tape` contains `frames` frames; silent frames count, too.
    void playOn(const fakes::MemorySink& tape, std::size_t frames) {
        EXPECT_TRUE(fakes::eventually([&] {
            now += 10ms;
            card.advance(now);
            return tape.size() >= frames;
        }));
    }

    fakes::TempFolder folder;
    test::FakeNotices notices;
    const std::shared_ptr<sound::PendingSaves> saves = std::make_shared<sound::PendingSaves>();
    const fs::path source = folder / "in.mp3";
    const fs::path target = folder / "out.wav";
    SoundCard card;
    SoundCard::Time now{};
    Mpg123Control control{card, [this] { return now; }, fixture::asItIs, notices, saves, {2, 16}};
    Mpg123Control other{card, [this] { return now; }, fixture::asItIs, notices, saves, {2, 16}};
};

TEST_F(Mpg123ControlTest, IsIdleUntilDecodingIsRequested) {
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
        [&](const std::string& path) { return path == "c:\\in.mp3" ? source : target; }, notices,
        saves, {2, 16});
    EXPECT_TRUE(mapped.setSourceFile("c:\\in.mp3").ok());
    EXPECT_TRUE(mapped.DecodeToWav("c:\\out.wav").ok());
    EXPECT_TRUE(fakes::eventually([&] { return !mapped.Busy(); }));
    EXPECT_TRUE(fs::exists(target));
}

TEST_F(Mpg123ControlTest, PositionNeverDecreasesAndStaysWithinAConstantLength) {
    writeFile(source, encoded(44100, 2, "-b 320"));
    decode();
    std::int32_t last = 0;
    do {
        EXPECT_EQ(control.Length(), Progress::length);
        const std::int32_t position = control.Position();
        EXPECT_GE(position, last);
        EXPECT_LE(position, control.Length());
        last = position;
    } while (control.Busy());
    EXPECT_EQ(control.Position(), control.Length());
    EXPECT_GE(control.Position(), last);
}

TEST_F(Mpg123ControlTest, DecodesOnceIfTheSameFilesAreRequestedAgainDuringAndAfterTheDecoding) {
    {
        // An fsync that is held keeps the first decoding busy after its last sample.
        HeldCalls disk({SYS_fsync});
        ASSERT_TRUE(disk.run([&] { decode(); }));
        ASSERT_TRUE(disk.waitForCall());
        const std::int32_t position = control.Position();
        EXPECT_GT(position, 0);
        EXPECT_TRUE(disk.run([&] { decode(); }));
        EXPECT_EQ(control.Position(), position) << "the decoding must not begin again";
        EXPECT_TRUE(control.Busy());
    }
    finish();
    const auto before = written();
    ASSERT_TRUE(before);
    decode();
    // DecodeToWav itself waits for the check whether the files have changed. finish() waits only if
    // that check takes longer than checkTimeout (mpg123_control.cpp).
    finish();
    EXPECT_EQ(written(), before);
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
}

TEST_F(Mpg123ControlTest, DecodesAgainIfTheWavWasRemovedOrTheMp3WasChanged) {
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

TEST_F(Mpg123ControlTest, DecodesAgainAfterAStopAndAfterAFailure) {
    decode();
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_FALSE(control.Busy());
    decode();
    finish();
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
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

TEST_F(Mpg123ControlTest, ADecodingToASecondTargetStopsTheFirstDecodingAndIsComplete) {
    const fs::path second = folder / "second.wav";
    writeFile(source, encoded(44100, 2, "-b 320"));
    decode();
    EXPECT_TRUE(control.DecodeToWav(second).ok());
    finish();
    EXPECT_TRUE(saves->awaitNone(30s));
    const fixture::Samples whole = fixture::readWav(second).samples;
    EXPECT_EQ(whole.size(), 4U * 44100 * 2);
    if (written()) { // the stopped decoding saves the part that it has decoded
        const fixture::Samples part = fixture::readWav(target).samples;
        ASSERT_LE(part.size(), whole.size());
        EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin()));
    }
}

TEST_F(Mpg123ControlTest, SettingAnotherSourceFileDoesNotStopTheDecoding) {
    decode();
    EXPECT_TRUE(control.setSourceFile(folder / "none.mp3").ok());
    finish();
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
}

TEST_F(Mpg123ControlTest, PlayAndDecodeToWavFailWithoutASourceFile) {
    EXPECT_FALSE(control.DecodeToWav(target).ok());
    EXPECT_FALSE(control.Play().ok());
}

TEST_F(Mpg123ControlTest, PlaysOnTheWaveLineUntilItIsStopped) {
    const auto tape = std::make_shared<fakes::MemorySink>();
    card.setRecordingSource(sound::RecordingSource::waveOut);
    EXPECT_TRUE(control.setSourceFile(source).ok());
    EXPECT_TRUE(control.Play().ok());
    card.startRecording(tape, now);
    // The player would deliver silence if its file was not ready within Mp3PlayerSource::patience.
    // Therefore the clock advances slowly until the first frames arrive.
    EXPECT_TRUE(fakes::eventually([&] {
        now += tape->size() > 0 ? 10'000us : 50us;
        card.advance(now);
        return tape->size() >= 22050;
    }));
    EXPECT_TRUE(control.Stop().ok());
    card.stopRecording(now);
    EXPECT_FALSE(card.active());
    const fixture::Samples samples = fixture::sequentially(ordinary()).samples;
    const auto frames = tape->frames();
    for (std::size_t i = 0; i < 22050; ++i) {
        ASSERT_EQ(frames[i], (sound::StereoFrame{samples[2 * i], samples[2 * i + 1]}))
            << "frame " << i;
    }
    EXPECT_FALSE(control.Busy());
}

TEST_F(Mpg123ControlTest, ReportsNothingAboutFilesThatCannotBePlayed) {
    writeFile(folder / "junk", fixture::junk(5000));
    for (const fs::path& path : {folder / "none.mp3", folder.path(), folder / "junk"}) {
        EXPECT_TRUE(control.setSourceFile(path).ok());
        EXPECT_TRUE(control.Play().ok());
        EXPECT_TRUE(card.active());
        EXPECT_TRUE(fakes::eventually([&] { // the card releases a source that has ended
            card.advance(now += 1ms);
            return !card.active();
        }));
        EXPECT_TRUE(control.Stop().ok());
    }
    EXPECT_THAT(notices.texts(), testing::IsEmpty());
}

TEST_F(Mpg123ControlTest, PlayAndStopCanBeRepeated) {
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_TRUE(control.setSourceFile(source).ok());
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(control.Play().ok());
        EXPECT_TRUE(control.Play().ok());
        EXPECT_TRUE(card.active());
        EXPECT_TRUE(control.Stop().ok());
        EXPECT_TRUE(control.Stop().ok());
        EXPECT_FALSE(card.active());
    }
}

TEST_F(Mpg123ControlTest, StopDoesNotDetachAnotherSourceFromTheWaveLine) {
    EXPECT_TRUE(control.setSourceFile(source).ok());
    EXPECT_TRUE(control.Play().ok());
    card.attach(Line::waveOut, std::make_shared<fakes::PatternSource>(), now);
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_TRUE(card.active());
    card.detach(Line::waveOut);
}

// --- several controls on one card --------------------------------------------------------------

TEST_F(Mpg123ControlTest, TheWaveLineBelongsToTheControlThatPlayedLast) {
    EXPECT_TRUE(control.setSourceFile(source).ok());
    EXPECT_TRUE(other.setSourceFile(source).ok());
    EXPECT_TRUE(control.Play().ok());
    EXPECT_TRUE(other.Play().ok());
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_TRUE(card.active()) << "Stop of the first control must not stop the other control";
    EXPECT_TRUE(control.Play().ok());
    EXPECT_TRUE(other.Stop().ok());
    EXPECT_TRUE(card.active()) << "Stop of the other control must not stop the first control";
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_FALSE(card.active());
}

TEST_F(Mpg123ControlTest, DestroyingAControlDoesNotStopThePlayingOfAnother) {
    auto third = std::make_unique<Mpg123Control>(
        card, [this] { return now; }, fixture::asItIs, notices, saves, Division{2, 16});
    EXPECT_TRUE(third->setSourceFile(source).ok());
    EXPECT_TRUE(other.setSourceFile(source).ok());
    EXPECT_TRUE(third->Play().ok());
    EXPECT_TRUE(other.Play().ok());
    third.reset();
    EXPECT_TRUE(card.active());
    EXPECT_TRUE(other.Stop().ok());
    EXPECT_FALSE(card.active());
}

TEST_F(Mpg123ControlTest, OneControlDecodesWhileAnotherPlays) {
    const auto tape = std::make_shared<fakes::MemorySink>();
    card.setRecordingSource(sound::RecordingSource::waveOut);
    EXPECT_TRUE(other.setSourceFile(source).ok());
    EXPECT_TRUE(other.Play().ok());
    card.startRecording(tape, now);
    decode();
    playOn(*tape, 10'000);
    finish();
    EXPECT_TRUE(control.Stop().ok()); // a window does this when it is unloaded
    const std::size_t before = tape->size();
    playOn(*tape, before + 10'000);
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
    EXPECT_FALSE(other.Busy());
    EXPECT_EQ(other.Position(), 0);
    const auto frames = tape->frames();
    EXPECT_FALSE(std::all_of(frames.end() - 5000, frames.end(),
                             [](const auto& frame) { return frame == sound::StereoFrame{}; }));
    EXPECT_TRUE(other.Stop().ok());
    card.stopRecording(now);
}

TEST_F(Mpg123ControlTest, TwoControlsCompleteTheirDecodingsToTheSameTarget) {
    writeFile(folder / "short.mp3", encoded(22050, 1, "-b 32"));
    decode();
    EXPECT_TRUE(other.setSourceFile(folder / "short.mp3").ok());
    EXPECT_TRUE(other.DecodeToWav(target).ok());
    EXPECT_TRUE(other.Busy());
    EXPECT_TRUE(fakes::eventually([&] { return !control.Busy() && !other.Busy(); }));
    EXPECT_EQ(control.lastResult().outcome, DecodeOutcome::completed);
    EXPECT_EQ(other.lastResult().outcome, DecodeOutcome::completed);
    const PcmFormat format = fixture::readWav(target).format;
    EXPECT_TRUE(format == control.lastResult().format || format == other.lastResult().format);
}

// --- notices -----------------------------------------------------------------------------------

TEST_F(Mpg123ControlTest, ReportsARepeatedFailureAgainOnlyAfterAStop) {
    EXPECT_TRUE(control.setSourceFile(folder / "none.mp3").ok());
    EXPECT_TRUE(control.DecodeToWav(target).ok());
    finish();
    EXPECT_TRUE(control.DecodeToWav(target).ok()); // the logic starts the decoding again
    finish();
    const std::string text = "none.mp3 cannot be read (No such file or directory)";
    EXPECT_THAT(notices.texts(), testing::ElementsAre(text));
    EXPECT_TRUE(control.Stop().ok());
    EXPECT_TRUE(control.DecodeToWav(target).ok()); // the user starts the decoding again
    finish();
    EXPECT_THAT(notices.texts(), testing::ElementsAre(text, text));
}

TEST_F(Mpg123ControlTest, ReportsFramesThatACompletedDecodingOmitted) {
    writeFile(source, ordinary());
    decode();
    finish();
    EXPECT_THAT(notices.texts(), testing::IsEmpty());
    using fixture::operator+;
    writeFile(source, ordinary() + fixture::layer2(3));
    decode();
    finish();
    EXPECT_THAT(notices.texts(),
                testing::ElementsAre("in.mp3: 3 frames of another format were omitted"));
}

TEST_F(Mpg123ControlTest, ANoticeContainsTheFileNameFromThePathOfTheLogic) {
    writeFile(source, fixture::junk(5000));
    Mpg123Control mapped(
        card, [] { return 0ns; },
        [&](const std::string& path) { return path == "c:\\music\\Song.mp3" ? source : target; },
        notices, saves, {2, 16});
    EXPECT_TRUE(mapped.setSourceFile("c:\\music\\Song.mp3").ok());
    EXPECT_TRUE(mapped.DecodeToWav("c:\\music\\Song.wav").ok());
    EXPECT_TRUE(fakes::eventually([&] { return !mapped.Busy(); }));
    EXPECT_THAT(notices.texts(), testing::ElementsAre("Song.mp3: nothing to decode was found"));
}

TEST_F(Mpg123ControlTest, SurvivesStartsAndStopsInAnyOrder) {
    writeFile(source, encoded(44100, 2, "-b 320"));
    std::mt19937 random(5);
    EXPECT_TRUE(control.setSourceFile(source).ok());
    for (int round = 0; round < 100; ++round) {
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
    EXPECT_TRUE(saves->awaitNone(30s));
    for (const char* name : {"0", "1"}) {
        if (fs::exists(folder / name)) {
            EXPECT_EQ(fixture::readWav(folder / name).format, (PcmFormat{44100, 2}));
        }
    }
    EXPECT_THAT(notices.texts(), testing::IsEmpty());
}

} // namespace
} // namespace sonarith::mp3
