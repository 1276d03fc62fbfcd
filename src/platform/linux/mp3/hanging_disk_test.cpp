// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the MP3 control on a disk that hangs: each member of the control returns before the disk
// responds, and no decoded sound is lost.
#include <gmock/gmock.h>

#include <memory>

#include "platform/linux/mp3/mp3_fixture.h"
#include "platform/linux/mp3/mpg123_control.h"
#include "support/fake_notices.h"
#include "support/folder_entries.h"
#include "support/held_calls.h"
#include "support/waiting.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using fixture::ordinary;
using test::HeldCalls;

class HangingDiskTest : public testing::Test {
  protected:
    HangingDiskTest() {
        fs::create_directory(slow);
        fs::create_directory(working);
        fixture::writeFile(source, ordinary());
    }
    ~HangingDiskTest() override { EXPECT_TRUE(saves->awaitNone(30s)); }
    std::unique_ptr<Mpg123Control> makeControl() {
        auto made = std::make_unique<Mpg123Control>(
            card, [] { return 0ns; }, fixture::asItIs, notices, saves, Division{2, 16});
        EXPECT_TRUE(made->setSourceFile(source).ok());
        return made;
    }
    /// Begins a decoding whose system calls can be held, and waits until one of them is held.
    void hangIn(HeldCalls& disk, const fs::path& target) {
        disk.atEnd([this] { control.reset(); });
        ASSERT_TRUE(disk.run([&] {
            control = makeControl();
            EXPECT_TRUE(control->DecodeToWav(target).ok());
            EXPECT_TRUE(control->Busy());
        }));
        ASSERT_TRUE(disk.waitForCall());
        EXPECT_TRUE(control->Busy());
    }
    std::size_t samplesIn(const fs::path& wav) {
        const fixture::Samples part = fixture::readWav(wav).samples;
        const fixture::Samples whole = fixture::sequentially(ordinary()).samples;
        EXPECT_LE(part.size(), whole.size());
        EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin()));
        return part.size();
    }
    static constexpr std::size_t allSamples = 4U * 44100 * 2;

    fakes::TempFolder folder;
    /// Stands for a disk that hangs while a test holds calls on it.
    const fs::path slow = folder / "slow";
    /// Stands for a disk that responds at once, except in the tests that hold calls on in.mp3.
    const fs::path working = folder / "working";
    const fs::path source = working / "in.mp3";
    sound::SoundCard card;
    test::FakeNotices notices;
    const std::shared_ptr<sound::PendingSaves> saves = std::make_shared<sound::PendingSaves>();
    std::unique_ptr<Mpg123Control> control;
};

TEST_F(HangingDiskTest, StopReturnsWhileTheDiskHangsAndTheWavIsNamedLater) {
    for (const std::uint32_t call : {SYS_pwrite64, SYS_ftruncate, SYS_fsync}) {
        HeldCalls disk({call}, test::ofPath("/slow/"));
        hangIn(disk, slow / "out.wav");
        EXPECT_TRUE(disk.run([&] {
            EXPECT_TRUE(control->Stop().ok());
            EXPECT_FALSE(control->Busy());
        })) << "system call "
            << call;
        EXPECT_TRUE(disk.run([&] { control.reset(); })) << "system call " << call;
        EXPECT_EQ(test::visibleEntriesIn(slow), 0) << "system call " << call;
        disk.release();
        EXPECT_TRUE(saves->awaitNone(30s));
        EXPECT_GT(samplesIn(slow / "out.wav"), 0U) << "system call " << call;
        fs::remove(slow / "out.wav");
    }
    EXPECT_THAT(notices.texts(), testing::IsEmpty());
}

TEST_F(HangingDiskTest, StopReturnsWhileTheWavIsBeingNamed) {
    HeldCalls disk({SYS_linkat});
    hangIn(disk, slow / "out.wav");
    EXPECT_TRUE(disk.run([&] { control->Stop().passOver(); }));
    EXPECT_FALSE(control->Busy());
    disk.release();
    EXPECT_TRUE(saves->awaitNone(30s));
    EXPECT_EQ(samplesIn(slow / "out.wav"), allSamples);
}

TEST_F(HangingDiskTest, PlayAndStopReturnWhileTheOpeningOrReadingOfTheMp3FileHangs) {
    for (const std::uint32_t call : {SYS_openat, SYS_pread64}) {
        HeldCalls disk({call}, test::ofPath("in.mp3"));
        hangIn(disk, slow / "out.wav");
        EXPECT_TRUE(disk.run([&] {
            EXPECT_TRUE(control->Play().ok());
            EXPECT_TRUE(control->Play().ok());
            EXPECT_TRUE(control->Stop().ok());
            EXPECT_FALSE(control->Busy());
            control.reset();
        }));
        EXPECT_FALSE(card.active());
        disk.release();
        EXPECT_TRUE(saves->awaitNone(30s));
        EXPECT_EQ(test::entriesIn(slow), 0) << "a WAV must not be saved if nothing was decoded";
    }
}

TEST_F(HangingDiskTest, ADecodingToASecondTargetStopsTheFirstDecoding) {
    HeldCalls disk({SYS_pread64}, test::ofPath("in.mp3"));
    hangIn(disk, slow / "out.wav");
    ASSERT_TRUE(disk.run([&] { EXPECT_TRUE(control->DecodeToWav(slow / "next.wav").ok()); }));
    disk.release();
    EXPECT_TRUE(fakes::eventually([&] { return !control->Busy(); }));
    EXPECT_TRUE(saves->awaitNone(30s));
    EXPECT_EQ(samplesIn(slow / "next.wav"), allSamples);
    EXPECT_FALSE(fs::exists(slow / "out.wav"))
        << "the first decoding was stopped before it had decoded a sample";
}

TEST_F(HangingDiskTest, ADecodingToAnotherFileRunsWhileAStoppedDecodingWaitsForTheDisk) {
    HeldCalls disk({SYS_fsync}, test::ofPath("/slow/"));
    hangIn(disk, slow / "out.wav");
    ASSERT_TRUE(disk.run([&] {
        control->Stop().passOver();
        EXPECT_TRUE(control->DecodeToWav(working / "next.wav").ok());
        EXPECT_TRUE(fakes::eventually([&] { return !control->Busy(); }));
    }));
    EXPECT_EQ(samplesIn(working / "next.wav"), allSamples);
    EXPECT_FALSE(fs::exists(slow / "out.wav"));
    disk.release();
    EXPECT_TRUE(saves->awaitNone(30s));
    EXPECT_EQ(samplesIn(slow / "out.wav"), allSamples);
}

TEST_F(HangingDiskTest, ADecodingToTheSameTargetBeginsWhenThePreviousOneHasEnded) {
    const fs::path wav = slow / "out.wav";
    std::unique_ptr<Mpg123Control> next;
    HeldCalls disk({SYS_fsync}, test::ofPath("/slow/"));
    hangIn(disk, wav);
    disk.atEnd([&] {
        control.reset();
        next.reset();
    });
    ASSERT_TRUE(disk.run([&] {
        control.reset(); // the program does this when it unloads the control's window
        fixture::writeFile(source, fixture::encoded(22050, 1, "-b 32"));
        next = makeControl();
        EXPECT_TRUE(next->DecodeToWav(wav).ok());
        std::this_thread::sleep_for(20ms);
        EXPECT_TRUE(next->Busy());
        EXPECT_EQ(next->Position(), 0) << "the second decoding must wait for the first";
    }));
    EXPECT_EQ(test::visibleEntriesIn(slow), 0);
    disk.release();
    EXPECT_TRUE(fakes::eventually([&] { return !next->Busy(); }));
    EXPECT_EQ(next->lastResult().outcome, DecodeOutcome::completed);
    EXPECT_EQ(fixture::readWav(wav).format, (PcmFormat{22050, 1}))
        << "the later decoding must be the last to write the WAV";
    EXPECT_TRUE(saves->awaitNone(30s));
    EXPECT_EQ(fixture::readWav(wav).format, (PcmFormat{22050, 1}));
    next.reset();
}

TEST_F(HangingDiskTest, AStopDuringTheWaitForThePreviousDecodingKeepsThatDecodingsWav) {
    const fs::path wav = slow / "out.wav";
    HeldCalls disk({SYS_fsync}, test::ofPath("/slow/"));
    hangIn(disk, wav);
    ASSERT_TRUE(disk.run([&] {
        control->Stop().passOver();
        EXPECT_TRUE(control->DecodeToWav(wav).ok());
        EXPECT_TRUE(control->Busy());
        control->Stop().passOver();
        EXPECT_FALSE(control->Busy());
    }));
    disk.release();
    EXPECT_TRUE(saves->awaitNone(30s));
    EXPECT_EQ(samplesIn(wav), allSamples);
}

TEST_F(HangingDiskTest, ASecondDecodeToWavReturnsEvenIfTheCheckOfItsFilesHangs) {
    HeldCalls disk({SYS_newfstatat}, test::ofPath("in.mp3"));
    ASSERT_TRUE(disk.run([&] {
        control = makeControl();
        EXPECT_TRUE(control->DecodeToWav(slow / "out.wav").ok());
        EXPECT_TRUE(fakes::eventually([&] { return !control->Busy(); }));
        const auto before = FileIdentity::of(slow / "out.wav");
        EXPECT_TRUE(control->DecodeToWav(slow / "out.wav").ok());
        EXPECT_TRUE(control->Busy()) << "Busy must be true while the check of the files hangs";
        disk.release();
        EXPECT_TRUE(fakes::eventually([&] { return !control->Busy(); }));
        // Neither file has changed, so the second decoding does not write the WAV again.
        EXPECT_EQ(FileIdentity::of(slow / "out.wav"), before);
    }));
}

TEST_F(HangingDiskTest, AFailedSaveIsReportedEvenIfTheControlWasDestroyedBeforeTheFailure) {
    HeldCalls disk({SYS_fsync}, test::ofPath("/slow/"));
    hangIn(disk, slow / "out.wav");
    EXPECT_TRUE(disk.run([&] { control.reset(); }));
    fs::remove_all(slow);
    disk.release();
    EXPECT_TRUE(saves->awaitNone(30s));
    ASSERT_EQ(notices.texts().size(), 1U);
    EXPECT_THAT(notices.texts()[0], testing::StartsWith("out.wav was not saved: "));
}

} // namespace
} // namespace sonarith::mp3
