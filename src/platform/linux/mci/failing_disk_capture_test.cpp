// SPDX-License-Identifier: GPL-3.0-or-later
// Tests captures (recordings of a played track) whose destination hangs or becomes full. Each
// command must return nevertheless. After a hang, the whole recording must be saved; on a full
// disk, the part that fits. The disc player, the sound card and the recording are those of the
// program.
#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/syscall.h>

#include "platform/linux/mci/machine_fixture.h"
#include "support/call_judge.h"
#include "support/fake_disc.h"
#include "support/folder_entries.h"
#include "support/forked_child.h"
#include "support/small_disk.h"
#include "support/wav_samples.h"

namespace sonarith::mci {
namespace {

using fakes::eventually;
using fakes::fine;
using fakes::refused;
using test::CallJudge;

/// A capture of a whole disc: a track of 10 s, then a track of 1 s.
class FailingCapture : public MachineSession {
  public:
    explicit FailingCapture(sound::RecordingTiming timing)
        : MachineSession([this] { return drive; }, timing) {}

    void begin() {
        EXPECT_EQ(send("open new type waveaudio alias capture"), fine());
        EXPECT_EQ(send(stereo), fine());
        EXPECT_EQ(send("open cdaudio alias cd"), fine());
        EXPECT_EQ(send("set cd time format milliseconds"), fine());
        EXPECT_EQ(send("set capture time format bytes"), fine());
        EXPECT_EQ(send("record capture overwrite"), fine());
        EXPECT_EQ(send("play cd"), fine());
    }
    /// The length of the recording so far, in frames.
    std::int64_t length() { return std::stoll(send("status capture length").reply) / 4; }

    std::shared_ptr<fakes::FakeDrive> drive = std::make_shared<fakes::FakeDrive>(
        std::make_shared<fakes::FakeDisc>(fakes::audioTable({750, 75})));
};

/// Expects that the file contains exactly the first `count` frames of the disc.
void expectStartOfDisc(const std::filesystem::path& path, std::int64_t count) {
    const auto wav = fakes::readWav(path);
    ASSERT_TRUE(wav);
    ASSERT_EQ(std::ssize(wav->samples), 2 * count);
    for (std::int64_t i = 0; i < count; ++i) {
        const auto place = static_cast<std::size_t>(2 * i);
        const sound::StereoFrame frame{wav->samples[place], wav->samples[place + 1]};
        ASSERT_EQ(frame, fakes::FakeDisc::frameAt(i)) << "frame " << i;
    }
}

class ADestinationThatHangs : public testing::TestWithParam<std::uint32_t> {
  protected:
    static int verdict(const seccomp_data& call) {
        const bool isToBeHeld = static_cast<std::uint32_t>(call.nr) == GetParam() &&
                                (call.nr != SYS_openat || (call.args[2] & O_TMPFILE) == O_TMPFILE);
        return isToBeHeld ? CallJudge::hold : CallJudge::letThrough;
    }
    /// Runs `body`. Until `body` calls release(), every system call with the number GetParam()
    /// hangs; of the openat calls, only those that create an unnamed file.
    static void hang(const std::function<void(CallJudge&)>& body) {
        if (!CallJudge::run({GetParam()}, verdict, body)) {
            GTEST_SKIP()
                << "this kernel cannot let a thread decide on the system calls of another thread";
        }
    }
};

TEST_P(ADestinationThatHangs, BlocksNoCommandOfACaptureAndReceivesTheFileWhenItRespondsAgain) {
    hang([](CallJudge& judge) {
        FailingCapture session(sound::briefTiming);
        session.begin();
        session.tickUntil(2000);
        const std::int64_t count = session.length();
        EXPECT_GE(count, 2 * 44'100);
        EXPECT_EQ(session.send("stop capture"), fine());
        EXPECT_EQ(session.send("stop cd"), fine());
        EXPECT_EQ(session.send("save capture 1.wav"), refused(MciError::fileNotSaved));
        EXPECT_EQ(session.send("close capture"), fine());
        EXPECT_EQ(session.send("close cd"), fine());
        EXPECT_FALSE(session.card.active());
        EXPECT_GT(judge.held(), 0);
        judge.release();
        EXPECT_TRUE(session.saves->awaitNone(std::chrono::seconds(30)));
        expectStartOfDisc(session.folder / "1.wav", count);
        EXPECT_EQ(test::entriesIn(session.folder.path()), 1);
    });
}

TEST_P(ADestinationThatHangs, DoesNotBlockTheNextCaptureAfterAnUnsavedCaptureWasClosed) {
    hang([](CallJudge& judge) {
        FailingCapture session(sound::briefTiming);
        session.begin();
        session.tickUntil(500);
        EXPECT_EQ(session.send("close all"), fine());
        session.begin();
        session.tickUntil(500);
        const std::int64_t count = session.length();
        EXPECT_EQ(session.send("save capture 1.wav"), refused(MciError::fileNotSaved));
        judge.release();
        EXPECT_TRUE(session.saves->awaitNone(std::chrono::seconds(30)));
        EXPECT_EQ(session.send("save capture 1.wav"), fine())
            << "the second save command must report the success of the first save";
        EXPECT_EQ(session.send("close all"), fine());
        expectStartOfDisc(session.folder / "1.wav", count);
    });
}

TEST_P(ADestinationThatHangs, LeavesNoPendingSaveWhenItRespondsAfterTheDevicesWereDestroyed) {
    hang([](CallJudge& judge) {
        std::shared_ptr<sound::PendingSaves> saves;
        {
            FailingCapture session(sound::briefTiming);
            saves = session.saves;
            session.begin();
            session.tickUntil(500);
            EXPECT_EQ(session.send("save capture 1.wav"), refused(MciError::fileNotSaved));
        }
        // The session's destructor has also deleted the folder, so the save fails; the failure can
        // no longer be reported.
        judge.release();
        EXPECT_TRUE(saves->awaitNone(std::chrono::seconds(30)));
    });
}

INSTANTIATE_TEST_SUITE_P(Calls, ADestinationThatHangs,
                         testing::Values(SYS_openat, SYS_pwrite64, SYS_fdatasync, SYS_linkat));

TEST(ADestinationThatBecomesFull, KeepsTheBeginningOfTheTrackWithoutGapsAndNotifiesTheUser) {
    const fakes::TempFolder result; // not on the disk that becomes full
    const int answer = test::runInChild([&] {
        FailingCapture session(sound::patientTiming);
        if (!test::mountSmallDisk(session.folder.path().string())) {
            return test::mayNotMount;
        }
        session.begin();
        session.tickUntil(9000); // the disk is full after 5.9 seconds
        const bool hasEnded = eventually([&] { return !session.notices.texts().empty(); });
        const std::int64_t count = session.length();
        session.time += std::chrono::seconds(5);
        const bool isKept = count > 5 * 44'100 && session.length() == count;
        session.send("stop capture");
        const bool isSaved = session.send("save capture 4711-1.wav") == fine();
        session.send("close all");
        const auto texts = session.notices.texts();
        const std::string place = "\"4711-1.wav\" in \"" + session.folder.path().string() + "\"";
        const bool isReported = texts.size() == 2 && texts[0].find("no space is left") < 200 &&
                                texts[1].find(place) < 200 &&
                                texts[1].find("it contains the first 0:05") < 400;
        std::filesystem::copy(session.folder / "4711-1.wav", result / "copy.wav");
        const bool isOnlyEntry = test::entriesIn(session.folder.path()) == 1;
        return (hasEnded ? 0 : 1) + (isKept ? 0 : 2) + (isSaved ? 0 : 4) + (isReported ? 0 : 8) +
               (isOnlyEntry ? 0 : 16);
    });
    if (answer == test::mayNotMount) {
        GTEST_SKIP() << "this user may not mount a disk";
    }
    EXPECT_EQ(answer, 0);
    const auto wav = fakes::readWav(result / "copy.wav");
    ASSERT_TRUE(wav);
    EXPECT_EQ(static_cast<std::size_t>(std::filesystem::file_size(result / "copy.wav")),
              44 + 2 * wav->samples.size())
        << "the file must consist of a header of 44 bytes and whole samples";
    expectStartOfDisc(result / "copy.wav", std::ssize(wav->samples) / 2);
}

} // namespace
} // namespace sonarith::mci
