// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/card_recorder.h"

#include <gmock/gmock.h>

#include "platform/linux/sound/recording_fixture.h"
#include "support/fake_notices.h"
#include "support/temp_folder.h"
#include "support/wav_samples.h"

namespace sonarith::mci {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using testing::Each;
using testing::SizeIs;

/// A source that never ends; each left sample is 6, each right sample 10.
class Tone : public sound::SampleSource {
  public:
    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override {
        std::fill(block.begin(), block.end(), sound::StereoFrame{6, 10});
        return {block.size(), sound::Supply::flowing};
    }
};

class ARecorder : public testing::Test {
  protected:
    std::unique_ptr<CardRecorder> make() {
        return std::make_unique<CardRecorder>(
            card, [this] { return time; }, [this] { return folders; }, input);
    }

    fakes::TempFolder folder;
    std::vector<fs::path> folders = {folder.path()};
    test::FakeNotices notices;
    std::shared_ptr<sound::PendingSaves> saves = std::make_shared<sound::PendingSaves>();
    std::shared_ptr<RecordingInput> input =
        std::make_shared<RecordingInput>(notices, saves, sound::patientTiming);
    sound::SoundCard card;
    sound::SoundCard::Time time = 3s;
};

TEST_F(ARecorder, CountsTheBytesUpToThePresentMoment) {
    const auto recorder = make();
    EXPECT_EQ(recorder->bytes(), 0);
    ASSERT_TRUE(recorder->start(2).ok());
    EXPECT_TRUE(recorder->recording());
    time += 1s;
    EXPECT_EQ(recorder->bytes(), 176400);
    time += 500ms;
    recorder->stop();
    time += 1h;
    EXPECT_EQ(recorder->bytes(), 264600);
    EXPECT_FALSE(recorder->recording());
    EXPECT_FALSE(card.active());
}

TEST_F(ARecorder, RecordsOnlySoundThatIsDueAfterItsStart) {
    card.attach(sound::Line::compactDisc, std::make_shared<Tone>(), time);
    time += 10s; // the card is not advanced during this time
    const auto recorder = make();
    ASSERT_TRUE(recorder->start(2).ok());
    EXPECT_EQ(recorder->bytes(), 0);
}

TEST_F(ARecorder, SavesMonoAsTheMeanOfBothChannels) {
    card.attach(sound::Line::compactDisc, std::make_shared<Tone>(), time);
    const auto recorder = make();
    ASSERT_TRUE(recorder->start(1).ok());
    time += 100ms;
    EXPECT_EQ(recorder->bytes(), 8820);
    ASSERT_TRUE(recorder->save(folder / "mono.wav").ok());
    const auto wav = fakes::readWav(folder / "mono.wav");
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->channels, 1);
    EXPECT_EQ(wav->rate, 44100);
    EXPECT_THAT(wav->samples, SizeIs(4410));
    EXPECT_THAT(wav->samples, Each(8));
}

TEST_F(ARecorder, AppendsAtANewStartAndCannotStartAfterASave) {
    const auto recorder = make();
    ASSERT_TRUE(recorder->start(2).ok());
    time += 10ms;
    recorder->stop();
    time += 5s;
    ASSERT_TRUE(recorder->start(2).ok());
    time += 10ms;
    EXPECT_EQ(recorder->bytes(), 2 * 441 * 4);
    ASSERT_TRUE(recorder->save(folder / "a.wav").ok());
    EXPECT_FALSE(recorder->recording());
    const Status again = recorder->start(2);
    ASSERT_FALSE(again.ok());
    EXPECT_EQ(again.error().number, ErrorNumber::invalidProcedureCall);
    EXPECT_TRUE(recorder->save(folder / "b.wav").ok());
    EXPECT_EQ(fs::file_size(folder / "a.wav"), fs::file_size(folder / "b.wav"));
}

TEST_F(ARecorder, CannotStartWhileAnotherRecorderRecords) {
    auto first = make();
    const auto second = make();
    ASSERT_TRUE(first->start(2).ok());
    ASSERT_TRUE(first->start(2).ok());
    const Status busy = second->start(2);
    ASSERT_FALSE(busy.ok());
    EXPECT_EQ(busy.error().number, ErrorNumber::deviceUnavailable);
    second->stop(); // must not stop the recording of `first`
    EXPECT_TRUE(first->recording());
    first.reset();
    EXPECT_FALSE(card.active());
    EXPECT_TRUE(second->start(2).ok());
}

TEST_F(ARecorder, NeedsAnExistingFolderToStartAndARecordingToSave) {
    const auto recorder = make();
    EXPECT_FALSE(recorder->save(folder / "a.wav").ok());
    folders = {folder / "missing"};
    EXPECT_FALSE(recorder->start(2).ok());
    EXPECT_FALSE(recorder->recording());
    folders = {folder / "missing", folder.path()};
    EXPECT_TRUE(recorder->start(2).ok());
}

TEST_F(ARecorder, ReplacesNoFolderAndCanSaveElsewhereAfterAFailedSave) {
    const auto recorder = make();
    ASSERT_TRUE(recorder->start(2).ok());
    fs::create_directory(folder / "taken.wav");
    EXPECT_FALSE(recorder->save(folder / "taken.wav").ok());
    EXPECT_FALSE(recorder->save(folder / "missing/a.wav").ok());
    EXPECT_TRUE(fs::is_directory(folder / "taken.wav"));
    EXPECT_TRUE(recorder->save(folder / "a.wav").ok());
}

TEST_F(ARecorder, LeavesNoFileIfItsRecordingIsNotSaved) {
    {
        const auto recorder = make();
        ASSERT_TRUE(recorder->start(2).ok());
        time += 1s;
    }
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

} // namespace
} // namespace sonarith::mci
