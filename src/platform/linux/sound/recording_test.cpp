// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <fstream>

#include "platform/linux/sound/recording_fixture.h"
#include "platform/linux/sound/recording_queue.h"
#include "support/file_content.h"
#include "support/folder_entries.h"
#include "support/limited_threads.h"
#include "support/memory_use.h"
#include "support/recorded_wav.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using fakes::eventually;
using fakes::pattern;
using test::CallJudge;
using test::entriesIn;
using test::expectPlainWav;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// If the disk hangs, the save and the destruction of a recording together wait for it only once,
// for less than 100 ms. The queue has space for the sound that arrives while the four folders
// that the program passes to begin() are tried.
static_assert(RecordingTiming{}.command < 100ms);
static_assert(4 * RecordingTiming{}.folder <
              std::chrono::seconds(RecordingQueue::capacityFrames / frameRate));

class RecordingTest : public RecordingFixture {};

TEST_F(RecordingTest, SavesEveryFrameThatTheCardDelivered) {
    const auto recording = begin();
    std::int64_t handed = 0;
    for (int block = 0; block < 700; ++block) { // seven seconds, in blocks of different lengths
        const std::size_t count = block % 2 == 0 ? 441 : 440;
        recording->sink()->record(pattern(handed, count));
        handed += static_cast<std::int64_t>(count);
        ASSERT_EQ(recording->bytes(), handed * 4);
        if (block % 100 == 0) {
            ASSERT_TRUE(eventually([&] { return isWritten(*recording); }));
        }
    }
    EXPECT_EQ(test::visibleEntriesIn(folder.path()), 0);
    ASSERT_TRUE(recording->save(target).ok());
    EXPECT_EQ(recording->bytes(), handed * 4);
    expectPlainWav(target, pattern(0, static_cast<std::size_t>(handed)));
    EXPECT_THAT(shown.texts(), IsEmpty());
}

TEST_F(RecordingTest, CountsTheBytesOfOneChannelInMono) {
    const auto begun = Recording::begin(Channels::mono, {folder.path()}, context);
    ASSERT_TRUE(begun.ok());
    begun.value()->sink()->record(pattern(0, 100));
    EXPECT_EQ(begun.value()->bytes(), 200);
    ASSERT_TRUE(begun.value()->save(target).ok());
    EXPECT_EQ(fs::file_size(target), 244U);
}

TEST_F(RecordingTest, UsesTheFirstFolderInWhichAFileCanBeCreated) {
    const auto recording =
        begin({folder / "missing", fs::path("/proc"), folder.path()}, patientTiming);
    recording->sink()->record(pattern(0, 10));
    EXPECT_TRUE(recording->save(target).ok());
    expectPlainWav(target, pattern(0, 10));
    EXPECT_THAT(shown.texts(), IsEmpty());
}

TEST_F(RecordingTest, FailsWithANoticeIfNoFileCanBeCreatedInAnyFolder) {
    for (const std::vector<fs::path>& folders :
         {std::vector<fs::path>{fs::path("/proc"), folder / "missing"}, std::vector<fs::path>{}}) {
        const auto begun = Recording::begin(Channels::stereo, folders, context);
        ASSERT_FALSE(begun.ok());
        EXPECT_EQ(begun.error().number, ErrorNumber::pathNotFound);
    }
    ASSERT_EQ(shown.texts().size(), 1U)
        << "the notice must be reported only once while no file can be created";
    EXPECT_THAT(shown.texts()[0], HasSubstr("Nothing is recorded: "));
    EXPECT_THAT(shown.texts()[0], HasSubstr("missing"));
    begin();
    EXPECT_EQ(shown.texts().size(), 2U) << "the cause must be settled when a file can be created";
}

TEST_F(RecordingTest, LeavesNoFileIfItIsNotSaved) {
    for (const std::size_t frames : {0U, 100U, 100'000U}) {
        begin()->sink()->record(pattern(0, frames));
        EXPECT_EQ(entriesIn(folder.path()), 0);
    }
    EXPECT_THAT(shown.texts(), IsEmpty());
}

TEST_F(RecordingTest, ASinkThatOutlivesItsRecordingNeverStopsTheCard) {
    const std::shared_ptr<RecordingSink> sink = begin()->sink();
    sink->record(pattern(0, 1000));
    EXPECT_GT(sink->room(), 1'000'000U) << "the sink must always have space";
}

TEST_F(RecordingTest, CanBeSavedSeveralTimesAndAcceptsNoFramesAfterAFailedSave) {
    const auto recording = begin();
    recording->sink()->record(pattern(0, 10));
    EXPECT_FALSE(recording->save(folder / "missing" / "1234-3.wav").ok());
    EXPECT_FALSE(recording->save(folder / "missing" / "1234-3.wav").ok());
    recording->sink()->record(pattern(10, 10));
    EXPECT_EQ(recording->bytes(), 40);
    EXPECT_TRUE(recording->save(target).ok());
    EXPECT_TRUE(recording->save(folder / "second.wav").ok());
    expectPlainWav(target, pattern(0, 10));
    expectPlainWav(folder / "second.wav", pattern(0, 10));
    EXPECT_THAT(shown.texts(),
                ElementsAre(testing::AllOf(HasSubstr("\"1234-3.wav\""), HasSubstr("was not saved"),
                                           HasSubstr("missing\" does not exist"))));
}

TEST_F(RecordingTest,
       KeepsTheFramesWrittenBeforeTheDiskIsFullAndReportsTheFullDiskAtOnceAndAtTheSave) {
    std::atomic<bool> full = false;
    intercepted(
        [&](const seccomp_data& call) {
            return full && isSamples(call) ? ENOSPC : CallJudge::letThrough;
        },
        [&](CallJudge&) {
            const auto recording = begin();
            recording->sink()->record(pattern(0, 88'200));
            ASSERT_TRUE(eventually([&] { return isWritten(*recording); }));
            // isWritten() is already true while the last frames are still in the queue or being
            // written. The full disk may refuse some of them, so the number of kept frames is not
            // known in advance: the test reads it below, and checks that the file contains exactly
            // these frames.
            full = true;
            recording->sink()->record(pattern(88'200, 88'200));
            ASSERT_TRUE(eventually([&] { return !shown.texts().empty(); }));
            const std::int64_t kept = recording->bytes() / 4;
            EXPECT_GT(recording->sink()->room(), 1'000'000U)
                << "a full disk must not stop the card";
            recording->sink()->record(pattern(0, 1000));
            EXPECT_EQ(recording->bytes(), kept * 4);
            EXPECT_TRUE(recording->save(target).ok());
            expectPlainWav(target, pattern(0, static_cast<std::size_t>(kept)));
        });
    const std::string place = "\"" + folder.path().string() + "\"";
    ASSERT_EQ(shown.texts().size(), 2U);
    EXPECT_THAT(shown.texts()[0],
                testing::AllOf(HasSubstr(place), HasSubstr("no space is left; its first 0:0"),
                               HasSubstr("can still be saved")));
    EXPECT_THAT(shown.texts()[1],
                testing::AllOf(HasSubstr("settled"), HasSubstr("\"1234-3.wav\" in " + place),
                               HasSubstr("no space is left; it contains the first 0:0")));
}

TEST_F(RecordingTest, KeepsOnlyThePreviouslyFlushedPartIfTheFlushDuringTheSaveFails) {
    std::atomic<bool> loses = false;
    intercepted(
        [&](const seccomp_data& call) {
            return loses && call.nr == SYS_fdatasync && loses.exchange(false)
                       ? EIO
                       : CallJudge::letThrough;
        },
        [&](CallJudge&) {
            const auto recording = begin();
            for (std::int64_t second = 0; second < 7; ++second) {
                recording->sink()->record(pattern(second * 44'100, 44'100));
                // After this, only the last part of this second may still be unwritten.
                ASSERT_TRUE(eventually([&] { return isWritten(*recording); }));
            }
            loses = true;
            EXPECT_TRUE(recording->save(target).ok());
            const auto kept = static_cast<std::size_t>(recording->bytes() / 4);
            // The file is flushed to the disk after every 5 s of sound. The sound after the last
            // flush that succeeded is not kept, because it may not have reached the disk.
            EXPECT_GE(kept, 5U * 44'100);
            EXPECT_LT(kept, 6U * 44'100);
            expectPlainWav(target, pattern(0, kept));
        });
    EXPECT_THAT(shown.texts(), ElementsAre(testing::AllOf(HasSubstr("\"1234-3.wav\""),
                                                          HasSubstr("it contains the first 0:05"),
                                                          HasSubstr("Input/output error"))));
}

TEST_F(RecordingTest, ReportsNoFailureOfADestroyedRecording) {
    intercepted(
        [&](const seccomp_data& call) {
            return isSamples(call) ? CallJudge::hold : CallJudge::letThrough;
        },
        [&](CallJudge& judge) {
            auto recording = begin(briefTiming);
            recording->sink()->record(pattern(0, 30'000));
            ASSERT_TRUE(eventually([&] { return judge.held() > 0; }));
            recording.reset();
            judge.release(EIO);
        });
    EXPECT_THAT(shown.texts(), IsEmpty());
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

TEST_F(RecordingTest, NeedsConstantMemory) {
    const auto recording = begin();
    const auto block = pattern(0, blockFrames);
    const auto recordSeconds = [&](int seconds) {
        for (int i = 0; i < seconds * 100; ++i) {
            recording->sink()->record(block);
            if (i % 40 == 0) { // the disk keeps up with the card, as in real time
                ASSERT_TRUE(eventually([&] { return isWritten(*recording); }));
            }
        }
    };
    recordSeconds(1);
    const std::int64_t before = test::memoryInKibibytes();
    recordSeconds(600);
    EXPECT_GT(recording->bytes(), 100'000'000);
    EXPECT_LT(test::memoryInKibibytes() - before, 1024)
        << "100,000 KiB of sound must increase the memory use by less than 1024 KiB (a full queue "
           "would use 1,700 KiB)";
}

TEST_F(RecordingTest, FailsWithANoticeIfNoThreadCanBeStarted) {
    const fakes::LimitedThreads threads(0);
    context.starter = threads.starter();
    const auto begun = Recording::begin(Channels::stereo, {folder.path()}, context);
    ASSERT_FALSE(begun.ok());
    EXPECT_EQ(begun.error().number, ErrorNumber::deviceUnavailable);
    EXPECT_EQ(test::entriesIn(folder.path()), 0);
    EXPECT_THAT(shown.texts(), ElementsAre(HasSubstr("no more threads can be started")));
}

} // namespace
} // namespace sonarith::sound
