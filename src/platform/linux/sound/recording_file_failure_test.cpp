// SPDX-License-Identifier: GPL-3.0-or-later
// Tests which part of a recording is kept if any of its system calls fails or the disk is full.
#include "platform/linux/sound/recording_file.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>

#include <sys/resource.h>
#include <sys/syscall.h>

#include "support/call_judge.h"
#include "support/fake_sound.h"
#include "support/file_content.h"
#include "support/folder_entries.h"
#include "support/forked_child.h"
#include "support/recorded_wav.h"
#include "support/small_disk.h"
#include "support/temp_folder.h"

namespace sonarith::sound {
namespace {

namespace fs = std::filesystem;
using fakes::pattern;
using test::CallJudge;
using test::contentOf;
using test::entriesIn;
using test::expectPlainWav;

constexpr std::size_t oneSecond = frameRate;

bool isHeader(const seccomp_data& call) {
    return call.nr == SYS_pwrite64 && call.args[3] == 0; // the offset
}
bool isSamples(const seccomp_data& call) {
    return call.nr == SYS_pwrite64 && call.args[3] > 0;
}

class FailingDiskTest : public testing::Test {
  protected:
    RecordingFile create(std::int64_t longestWavBytes = maxWavSampleBytes) {
        auto made = RecordingFile::create(Channels::stereo, folder.path(), longestWavBytes);
        EXPECT_TRUE(made.ok());
        return std::move(made.value());
    }
    /// Runs `body`; `verdict` decides the result of each system call that reads, writes, truncates,
    /// flushes or names a file.
    static void intercepted(const CallJudge::Verdict& verdict, const std::function<void()>& body) {
        const bool ran = CallJudge::run({SYS_write, SYS_pwrite64, SYS_fdatasync, SYS_fsync,
                                         SYS_ftruncate, SYS_pread64, SYS_linkat},
                                        verdict, [&](CallJudge&) { body(); });
        if (!ran) {
            GTEST_SKIP() << "this kernel cannot pass system calls to another thread";
        }
    }

    fakes::TempFolder folder;
    const fs::path target = folder / "track.wav";
};

void limitFileSize(rlim_t bytes) {
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(FailingDiskTest, KeepsTheWholeFramesThatFitAndNothingAfterThem) {
    std::ofstream(target) << "old";
    EXPECT_EQ(test::runInChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  limitFileSize(10'001); // in the middle of a frame
                  RecordingFile recording = create();
                  const bool fitted = recording.append(pattern(0, 2000));
                  const bool failed = !recording.append(pattern(2000, 2000));
                  limitFileSize(RLIM_INFINITY); // there is space again, but frames are missing
                  const bool ended = !recording.append(pattern(4000, 2000)) &&
                                     recording.frames() == 2489 && recording.failure() == EFBIG;
                  const bool saved = recording.save(target).ok();
                  return (fitted && failed ? 0 : 1) + (ended ? 0 : 2) + (saved ? 0 : 4);
              }),
              0);
    expectPlainWav(target, pattern(0, 2489));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(FailingDiskTest, SavesThePartThatFitsOnASmallDisk) {
    const fakes::TempFolder result; // not on the small disk
    const int status = test::runInChild([&] {
        if (!test::mountSmallDisk(folder.path().string())) {
            return test::mayNotMount;
        }
        RecordingFile recording = create();
        bool taken = true;
        for (int block = 0; taken && block < 1000; ++block) {
            taken = recording.append(pattern(block * 441, 441));
        }
        const bool full = !taken && recording.failure() == ENOSPC;
        // The file system's own data take less than 64 KiB of the disk.
        const std::int64_t room = test::smallDiskBytes - 64 * 1024;
        const bool nearlyAll = recording.frames() * 4 > room;
        const bool saved = recording.save(target).ok() && entriesIn(folder.path()) == 1;
        // The full disk has no space even for the first byte of a second recording, so create()
        // must fail and leave no second file.
        const bool refused = !RecordingFile::create(Channels::stereo, folder.path()).ok() &&
                             entriesIn(folder.path()) == 1;
        fs::copy(target, result / "copy.wav");
        return (full ? 0 : 1) + (nearlyAll ? 0 : 2) + (saved ? 0 : 4) + (refused ? 0 : 8);
    });
    if (status == test::mayNotMount) {
        GTEST_SKIP() << "this user is not allowed to mount a disk";
    }
    EXPECT_EQ(status, 0);
    const auto frames = (static_cast<std::size_t>(fs::file_size(result / "copy.wav")) - 44) / 4;
    expectPlainWav(result / "copy.wav", pattern(0, frames));
}

TEST_F(FailingDiskTest, KeepsFramesWrittenBeforeAFailedWrite) {
    for (const int error : {ENOSPC, EDQUOT, EIO, EFBIG}) {
        for (const bool recovers : {true, false}) {
            for (int failing = 0; failing < 4; ++failing) {
                int writes = 0;
                intercepted(
                    [&](const seccomp_data& call) {
                        const int number = isSamples(call) ? writes++ : -1;
                        const bool fails = recovers ? number == failing : number >= failing;
                        return fails ? error : CallJudge::letThrough;
                    },
                    [&] {
                        RecordingFile recording = create();
                        for (int block = 0; block < 4; ++block) {
                            EXPECT_EQ(recording.append(pattern(block * 1000, 1000)),
                                      block < failing);
                        }
                        EXPECT_EQ(recording.frames(), failing * 1000);
                        EXPECT_EQ(recording.failure(), error);
                        EXPECT_EQ(recording.save(target).ok(), failing > 0)
                            << "save() must fail if and only if no frame is kept";
                    });
                EXPECT_EQ(entriesIn(folder.path()), failing > 0 ? 1 : 0);
                if (failing > 0) {
                    expectPlainWav(target, pattern(0, static_cast<std::size_t>(failing) * 1000));
                    fs::remove(target);
                }
            }
        }
    }
}

TEST_F(FailingDiskTest, KeepsTheOldFileIfNoFrameIsKept) {
    std::ofstream(target) << "old";
    intercepted(
        [](const seccomp_data& call) { return isSamples(call) ? ENOSPC : CallJudge::letThrough; },
        [&] {
            RecordingFile recording = create();
            EXPECT_FALSE(recording.append(pattern(0, 10)));
            for (int again = 0; again < 2; ++again) {
                const Status status = recording.save(target);
                ASSERT_FALSE(status.ok());
                EXPECT_EQ(status.error().number, ErrorNumber::diskFull);
            }
        });
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(FailingDiskTest, CreateFailsAndLeavesNoFileIfNoByteCanBeWritten) {
    intercepted(
        [](const seccomp_data& call) {
            return isHeader(call) || isSamples(call) ? ENOSPC : CallJudge::letThrough;
        },
        [&] {
            const auto made = RecordingFile::create(Channels::stereo, folder.path());
            ASSERT_FALSE(made.ok());
            EXPECT_EQ(made.error().number, ErrorNumber::diskFull);
        });
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

TEST_F(FailingDiskTest, CopiesTheRecordingIfItsHeaderCannotBeChanged) {
    int headers = 0;
    intercepted(
        [&](const seccomp_data& call) {
            return isHeader(call) && ++headers == 2 ? EIO : CallJudge::letThrough;
        },
        [&] {
            RecordingFile recording = create();
            EXPECT_TRUE(recording.append(pattern(0, 100'000)));
            EXPECT_TRUE(recording.save(target).ok());
        });
    EXPECT_EQ(headers, 3);
    expectPlainWav(target, pattern(0, 100'000));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(FailingDiskTest, CopiesTheRecordingIfItCannotBeTruncated) {
    int truncations = 0;
    intercepted(
        [&](const seccomp_data& call) {
            truncations += call.nr == SYS_ftruncate ? 1 : 0;
            return call.nr == SYS_ftruncate || (isSamples(call) && call.args[2] == 404)
                       ? EIO
                       : CallJudge::letThrough;
        },
        [&] {
            RecordingFile recording = create();
            EXPECT_TRUE(recording.append(pattern(0, 100)));
            EXPECT_FALSE(recording.append(pattern(100, 101)));
            EXPECT_TRUE(recording.save(target).ok());
        });
    EXPECT_EQ(truncations, 1);
    expectPlainWav(target, pattern(0, 100));
}

TEST_F(FailingDiskTest, DoesNotNameTheFileUntilItsHeaderCanBeWritten) {
    std::atomic<bool> broken = false;
    intercepted(
        [&](const seccomp_data& call) {
            return broken && isHeader(call) ? ENOSPC : CallJudge::letThrough;
        },
        [&] {
            RecordingFile recording = create();
            EXPECT_TRUE(recording.append(pattern(0, 100)));
            broken = true;
            EXPECT_FALSE(recording.save(target).ok());
            EXPECT_EQ(entriesIn(folder.path()), 0);
            broken = false;
            EXPECT_TRUE(recording.save(target).ok());
        });
    expectPlainWav(target, pattern(0, 100));
}

TEST_F(FailingDiskTest, KeepsFlushedFramesIfTheDiskLosesTheRest) {
    int flushes = 0;
    intercepted(
        [&](const seccomp_data& call) {
            return call.nr == SYS_fdatasync && ++flushes == 3 ? EDQUOT : CallJudge::letThrough;
        },
        [&] {
            RecordingFile recording = create();
            std::int64_t taken = 0;
            while (recording.append(pattern(taken, oneSecond))) {
                taken += oneSecond;
                ASSERT_LT(taken, 100 * oneSecond);
            }
            EXPECT_GE(recording.frames(), 10 * std::int64_t{oneSecond});
            EXPECT_LT(recording.frames(), 11 * std::int64_t{oneSecond});
            EXPECT_EQ(recording.failure(), EDQUOT);
            EXPECT_TRUE(recording.save(target).ok());
            expectPlainWav(target, pattern(0, static_cast<std::size_t>(recording.frames())));
        });
}

TEST_F(FailingDiskTest, KeepsFlushedFramesIfTheDiskLosesTheRestAtTheSave) {
    std::atomic<int> lost = 0;
    intercepted(
        [&](const seccomp_data& call) {
            const bool isLost = call.nr == SYS_fdatasync && lost-- > 0;
            const bool isCopied = call.nr == SYS_pread64; // so that no copy can be made
            return isLost || isCopied ? EIO : CallJudge::letThrough;
        },
        [&] {
            RecordingFile recording = create();
            EXPECT_TRUE(recording.append(pattern(0, 7 * oneSecond)));
            EXPECT_EQ(recording.frames(), 7 * std::int64_t{oneSecond});
            lost = 1;
            EXPECT_TRUE(recording.save(target).ok());
            EXPECT_GE(recording.frames(), 5 * std::int64_t{oneSecond});
            EXPECT_LT(recording.frames(), 6 * std::int64_t{oneSecond});
            EXPECT_EQ(recording.failure(), EIO);
            expectPlainWav(target, pattern(0, static_cast<std::size_t>(recording.frames())));
        });
}

TEST_F(FailingDiskTest, NamesNoFileIfTheDiskHasLostEverything) {
    intercepted(
        [](const seccomp_data& call) {
            return call.nr == SYS_fdatasync ? EIO : CallJudge::letThrough;
        },
        [&] {
            RecordingFile recording = create();
            EXPECT_TRUE(recording.append(pattern(0, oneSecond)));
            EXPECT_FALSE(recording.save(target).ok());
            EXPECT_EQ(recording.frames(), 0);
            EXPECT_FALSE(recording.save(target).ok());
        });
    EXPECT_EQ(entriesIn(folder.path()), 0);
}

TEST_F(FailingDiskTest, KeepsThePartThatFitsIntoAPlainWavIfNoRf64CopyCanBeMade) {
    constexpr std::int64_t smallLimit = 400'002; // in the middle of a frame
    intercepted(
        [](const seccomp_data& call) {
            return call.nr == SYS_pread64 ? EIO : CallJudge::letThrough;
        },
        [&] {
            RecordingFile recording = create(smallLimit);
            EXPECT_TRUE(recording.append(pattern(0, 100'001)));
            EXPECT_TRUE(recording.save(target).ok());
            EXPECT_EQ(recording.frames(), 100'000);
            EXPECT_EQ(recording.failure(), EFBIG);
        });
    expectPlainWav(target, pattern(0, 100'000));
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(FailingDiskTest, DoesNotNameAFileThatHasBecomeTooShort) {
    auto made = RecordingFile::create(Channels::stereo, folder.path(), maxWavSampleBytes,
                                      files::Concealment::hiddenName);
    ASSERT_TRUE(made.ok());
    EXPECT_TRUE(made.value().append(pattern(0, 1000)));
    const fs::path hidden = fs::directory_iterator(folder.path())->path();
    fs::resize_file(hidden, 2044);
    const Status status = made.value().save(target);
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().number, ErrorNumber::deviceInputOutput);
    EXPECT_FALSE(fs::exists(target));
}

TEST_F(FailingDiskTest, KeepsTheWholeMonoFramesThatFit) {
    EXPECT_EQ(test::runInChild([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  limitFileSize(1003);
                  auto made = RecordingFile::create(Channels::mono, folder.path());
                  const bool failed = !made.value().append(pattern(0, 2000));
                  const bool whole = made.value().frames() == 479;
                  return (failed && whole ? 0 : 1) + (made.value().save(target).ok() ? 0 : 2);
              }),
              0);
    const auto wav = fakes::readWav(target);
    ASSERT_TRUE(wav);
    EXPECT_EQ(wav->samples.size(), 479U);
    EXPECT_EQ(fs::file_size(target), 44U + 2 * 479U);
}

} // namespace
} // namespace sonarith::sound
