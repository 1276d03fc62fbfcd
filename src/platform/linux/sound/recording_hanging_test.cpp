// SPDX-License-Identifier: GPL-3.0-or-later
// Tests recordings on disks that do not respond, for a while or forever. Such a disk blocks neither
// the card nor the logic. If the disk responds again, the recording is complete.
#include "platform/linux/sound/recording.h"

#include <gmock/gmock.h>

#include "platform/linux/sound/recording_fixture.h"
#include "platform/linux/sound/recording_queue.h"
#include "support/folder_entries.h"
#include "support/limited_threads.h"
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
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class HangingDiskTest : public RecordingFixture {
  protected:
    /// Advances the card by `time` in steps of 10 ms, as the card's thread does.
    void play(std::chrono::milliseconds time) {
        for (const SoundCard::Time end = now + time; now < end;) {
            card.advance(now += 10ms);
        }
    }
    void startRecording(const Recording& recording) {
        card.startRecording(recording.sink(), now);
        card.attach(Line::compactDisc, disc, now);
    }
    [[nodiscard]] std::vector<StereoFrame> played() const {
        return pattern(0, static_cast<std::size_t>(disc->position()));
    }

    SoundCard card;
    SoundCard::Time now = 0s;
    std::shared_ptr<fakes::PatternSource> disc = std::make_shared<fakes::PatternSource>();
};

/// Selects the system calls that hang.
struct Hang {
    const char* name;
    bool (*hits)(const seccomp_data& call);
    friend void PrintTo(const Hang& hang, std::ostream* out) { *out << hang.name; }
};

bool hitsSamples(const seccomp_data& call) {
    return RecordingFixture::isSamples(call);
}

TEST_F(HangingDiskTest, DoesNotBlockTheCardTheSpeakersOrQueriesOfTheRecording) {
    const auto speakers = std::make_shared<fakes::MemorySink>();
    intercepted([](const seccomp_data& call) { return hitsSamples(call) ? CallJudge::hold : 0; },
                [&](CallJudge& judge) {
                    const auto recording = begin(briefTiming);
                    card.setSpeakers(speakers);
                    startRecording(*recording);
                    play(2s);
                    ASSERT_TRUE(eventually([&] { return judge.held() > 0; }));
                    play(3s);
                    card.setMuted(Line::compactDisc, true);
                    EXPECT_EQ(speakers->size(), 5U * 44'100);
                    EXPECT_EQ(disc->position(), 5 * 44'100);
                    EXPECT_EQ(recording->bytes(), 5 * 176'400);
                    card.stopRecording(now);
                    EXPECT_GT(judge.held(), 0);
                });
}

TEST_F(HangingDiskTest, DoesNotChangeTheLengthOrTheSamplesOfATrack) {
    std::atomic<bool> hanging = false;
    intercepted(
        [&](const seccomp_data& call) {
            return hanging && hitsSamples(call) ? CallJudge::hold : CallJudge::letThrough;
        },
        [&](CallJudge& judge) {
            const auto recording = begin();
            startRecording(*recording);
            play(1s);
            hanging = true;
            play(4s);
            ASSERT_GT(judge.held(), 0);
            EXPECT_EQ(disc->position(), 5 * 44'100)
                << "the disc must continue to play during the stall";
            judge.release();
            play(2s);
            card.stopRecording(now);
            EXPECT_EQ(disc->position(), 7 * 44'100);
            EXPECT_EQ(recording->bytes(), 7 * 176'400);
            ASSERT_TRUE(eventually([&] { return shown.texts().size() == 2; }));
            EXPECT_TRUE(recording->save(target).ok());
        });
    expectPlainWav(target, played());
    const std::string place = "\"" + folder.path().string() + "\"";
    EXPECT_THAT(shown.texts(), ElementsAre(AllOf(HasSubstr(place), HasSubstr("does not respond")),
                                           AllOf(HasSubstr("settled"), HasSubstr(place),
                                                 HasSubstr("responds again"))));
}

TEST_F(HangingDiskTest, PausesTheDiscWhenTheQueueIsFullAndLosesNothing) {
    intercepted([](const seccomp_data& call) { return hitsSamples(call) ? CallJudge::hold : 0; },
                [&](CallJudge& judge) {
                    const auto recording = begin();
                    startRecording(*recording);
                    play(1s);
                    ASSERT_TRUE(eventually([&] { return judge.held() > 0; }));
                    play(60s);
                    const std::int64_t bound = disc->position();
                    EXPECT_LE(bound, 441'000 + 44'100)
                        << "the disc must not play more than 1 s beyond the capacity of the queue";
                    EXPECT_GE(bound, 441'000);
                    EXPECT_EQ(recording->bytes(), bound * 4);
                    play(60s);
                    EXPECT_EQ(disc->position(), bound);
                    judge.release();
                    ASSERT_TRUE(eventually([&] { return isWritten(*recording); }));
                    play(2s);
                    card.stopRecording(now);
                    EXPECT_EQ(disc->position(), bound + 2 * 44'100);
                    EXPECT_TRUE(recording->save(target).ok());
                });
    expectPlainWav(target, played());
}

class HangingCallTest : public HangingDiskTest, public testing::WithParamInterface<Hang> {};

TEST_P(HangingCallTest, DoesNotBlockTheLogicAndCompletesTheSaveWhenTheDiskResponds) {
    intercepted(
        [](const seccomp_data& call) { return GetParam().hits(call) ? CallJudge::hold : 0; },
        [&](CallJudge& judge) {
            auto recording = begin(briefTiming);
            startRecording(*recording);
            play(2s);
            EXPECT_EQ(recording->bytes(), 2 * 176'400);
            card.stopRecording(now);
            const Status late = recording->save(target);
            ASSERT_FALSE(late.ok());
            EXPECT_EQ(late.error().number, ErrorNumber::deviceInputOutput);
            EXPECT_THAT(late.error().text, HasSubstr("not saved yet"));
            EXPECT_FALSE(context.saves->awaitNone(0ms));
            recording.reset();
            ASSERT_TRUE(eventually([&] { return !shown.texts().empty(); }));
            EXPECT_TRUE(eventually([&] { return judge.held() == 1; }));
            EXPECT_FALSE(fs::exists(target));
            judge.release();
            EXPECT_TRUE(noSaveIsPending());
            expectPlainWav(target, played());
        });
    EXPECT_EQ(entriesIn(folder.path()), 1);
    EXPECT_THAT(shown.texts(),
                ElementsAre(AllOf(HasSubstr("\"1234-3.wav\""), HasSubstr("does not respond")),
                            AllOf(HasSubstr("settled"), HasSubstr("has now been saved"))));
}

TEST_P(HangingCallTest, DoesNotBlockTheLogicAndLeavesNoFileOfAnUnsavedRecording) {
    intercepted(
        [](const seccomp_data& call) { return GetParam().hits(call) ? CallJudge::hold : 0; },
        [&](CallJudge& judge) {
            auto recording = begin(briefTiming);
            startRecording(*recording);
            play(7s); // a recording is flushed to the disk after every 5 s of sound
            card.stopRecording(now);
            recording.reset();
            EXPECT_EQ(entriesIn(folder.path()), 0);
            judge.release();
        });
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

INSTANTIATE_TEST_SUITE_P(Calls, HangingCallTest,
                         testing::Values(Hang{"write", hitsSamples},
                                         Hang{"header",
                                              [](const seccomp_data& call) {
                                                  return call.nr == SYS_pwrite64 &&
                                                         call.args[3] == 0;
                                              }},
                                         Hang{"flush",
                                              [](const seccomp_data& call) {
                                                  return call.nr == SYS_fdatasync ||
                                                         call.nr == SYS_fsync;
                                              }},
                                         Hang{"naming",
                                              [](const seccomp_data& call) {
                                                  return call.nr == SYS_linkat;
                                              }},
                                         Hang{"creation",
                                              [](const seccomp_data& call) {
                                                  return call.nr == SYS_openat &&
                                                         (call.args[2] & O_TMPFILE) == O_TMPFILE;
                                              }}),
                         [](const auto& hang) { return hang.param.name; });

TEST_F(HangingDiskTest, ASaveAndTheDestructionOfItsRecordingTogetherWaitOnlyOnce) {
    intercepted(&holdNaming, [&](CallJudge& judge) {
        // Each wait lasts 2 s. So the check below for less than 3.9 s succeeds with one wait, even
        // under load, and fails with two waits (4 s).
        auto recording = begin({2s, 1h, 1h});
        recording->sink()->record(pattern(0, 100));
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(recording->save(target).ok());
        recording.reset();
        EXPECT_LT(std::chrono::steady_clock::now() - start, 3900ms);
        judge.release();
        EXPECT_TRUE(noSaveIsPending());
    });
    intercepted([](const seccomp_data& call) { return isSamples(call) ? CallJudge::hold : 0; },
                [&](CallJudge&) {
                    auto recording = begin({2s, 1h, 1h});
                    recording->sink()->record(pattern(0, 100));
                    const auto start = std::chrono::steady_clock::now();
                    EXPECT_FALSE(recording->save(target).ok());
                    EXPECT_FALSE(recording->save(folder / "other.wav").ok());
                    recording.reset();
                    EXPECT_LT(std::chrono::steady_clock::now() - start, 3900ms);
                });
}

TEST_F(HangingDiskTest, IsSkippedAndTheNextFolderReceivesTheWholeRecording) {
    const fakes::TempFolder other;
    intercepted(holdCreationIn(folder.path()), [&](CallJudge& judge) {
        const auto recording = begin({folder.path(), other.path()}, briefTiming);
        startRecording(*recording);
        play(2s);
        ASSERT_TRUE(eventually([&] { return isWritten(*recording); }))
            << "the recording must use the other folder";
        play(1s);
        card.stopRecording(now);
        EXPECT_EQ(judge.held(), 1);
        static_cast<void>(recording->save(other / "1234-3.wav"));
        EXPECT_TRUE(noSaveIsPending());
        judge.release();
    });
    expectPlainWav(other / "1234-3.wav", played());
    EXPECT_EQ(entriesIn(folder.path()), 0)
        << "the late creation must leave no file in the skipped folder";
    ASSERT_GE(shown.texts().size(), 1U);
    EXPECT_THAT(shown.texts()[0],
                AllOf(HasSubstr("\"" + folder.path().string() + "\""),
                      HasSubstr("does not respond"), HasSubstr("another folder")));
}

TEST_F(HangingDiskTest, IsUsedIfItRespondsBeforeItIsSkipped) {
    const fakes::TempFolder other;
    intercepted(holdCreationIn(folder.path()), [&](CallJudge& judge) {
        const auto recording = begin({folder.path(), other.path()}, {20ms, 1h, 1h});
        startRecording(*recording);
        play(1s);
        ASSERT_TRUE(eventually([&] { return judge.held() == 1; }));
        judge.release();
        play(1s);
        card.stopRecording(now);
        static_cast<void>(recording->save(target));
        EXPECT_TRUE(noSaveIsPending());
    });
    expectPlainWav(target, played());
    EXPECT_THAT(shown.texts(), IsEmpty());
}

TEST_F(HangingDiskTest, IsWaitedForIfEveryFolderHangs) {
    intercepted(holdCreationIn(folder.path()), [&](CallJudge& judge) {
        const auto recording = begin({folder.path(), folder.path()}, briefTiming);
        startRecording(*recording);
        ASSERT_TRUE(eventually([&] { return judge.held() == 2; }));
        play(60s);
        EXPECT_EQ(disc->position(), 441'000) << "the disc must wait when the queue is full";
        judge.release();
        ASSERT_TRUE(eventually([&] { return isWritten(*recording); }));
        play(1s);
        card.stopRecording(now);
        static_cast<void>(recording->save(target));
        EXPECT_TRUE(noSaveIsPending());
    });
    EXPECT_EQ(disc->position(), 441'000 + 44'100);
    expectPlainWav(target, played());
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(HangingDiskTest, ASecondNameForAPendingSaveIsRefusedAndTheFirstNameSucceedsLater) {
    intercepted(&holdNaming, [&](CallJudge& judge) {
        const auto recording = begin(briefTiming);
        recording->sink()->record(pattern(0, 100));
        EXPECT_FALSE(recording->save(target).ok());
        const Status other = recording->save(folder / "other.wav");
        ASSERT_FALSE(other.ok());
        EXPECT_EQ(other.error().number, ErrorNumber::deviceUnavailable);
        EXPECT_FALSE(recording->save(target).ok());
        judge.release();
        EXPECT_TRUE(noSaveIsPending());
        EXPECT_TRUE(recording->save(target).ok()) << "the first save must have been completed";
    });
    expectPlainWav(target, pattern(0, 100));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(HangingDiskTest, TheWatchingThreadWritesToTheNextFolderIfNoFurtherThreadCanBeStarted) {
    const fakes::TempFolder other;
    const fakes::LimitedThreads threads(2); // the writing thread and the thread that watches it
    context.starter = threads.starter();
    intercepted(holdCreationIn(folder.path()), [&](CallJudge& judge) {
        const auto recording = begin({folder.path(), other.path()}, briefTiming);
        startRecording(*recording);
        play(2s);
        ASSERT_TRUE(eventually([&] { return isWritten(*recording); }));
        EXPECT_EQ(threads.refused(), 1);
        card.stopRecording(now);
        static_cast<void>(recording->save(other / "1234-3.wav"));
        EXPECT_TRUE(noSaveIsPending());
        judge.release();
    });
    expectPlainWav(other / "1234-3.wav", played());
}

TEST_F(HangingDiskTest, IsWaitedForIfNoThreadCanBeStartedToWatchIt) {
    const fakes::TempFolder other;
    const fakes::LimitedThreads threads(1);
    context.starter = threads.starter();
    intercepted(holdCreationIn(folder.path()), [&](CallJudge& judge) {
        const auto recording = begin({folder.path(), other.path()}, briefTiming);
        startRecording(*recording);
        play(2s);
        judge.release();
        card.stopRecording(now);
        static_cast<void>(recording->save(target));
        EXPECT_TRUE(noSaveIsPending());
    });
    EXPECT_GE(threads.refused(), 1);
    expectPlainWav(target, played());
}

TEST_F(HangingDiskTest, ALateSaveIsReportedAtOnceIfNoThreadCanWatchIt) {
    const fakes::LimitedThreads threads(1);
    context.starter = threads.starter();
    intercepted(&holdNaming, [&](CallJudge& judge) {
        const auto recording = begin({20ms, 1h, 1h});
        recording->sink()->record(pattern(0, 100));
        EXPECT_FALSE(recording->save(target).ok());
        EXPECT_EQ(shown.texts().size(), 1U);
        judge.release();
        EXPECT_TRUE(noSaveIsPending());
    });
    expectPlainWav(target, pattern(0, 100));
}

} // namespace
} // namespace sonarith::sound
