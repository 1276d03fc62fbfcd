// SPDX-License-Identifier: GPL-3.0-or-later
// Tests decodings that fail because the MP3 file (the source) cannot be read, the WAV file (the
// target) cannot be written, or no thread can be started: what is reported, and what stays on the
// disk.
#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

#include "platform/linux/mp3/decode_job_fixture.h"
#include "support/forked_child.h"
#include "support/limited_threads.h"
#include "support/small_disk.h"
#include "support/unprivileged.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using fixture::Data;
using fixture::DecodeJobTest;
using fixture::encoded;
using fixture::ignoreEnd;
using fixture::isOpen;
using fixture::operator+;
using fixture::ordinary;
using fixture::readFile;
using fixture::text;
using fixture::writeFile;

TEST_F(DecodeJobTest, FailsAndKeepsTheOldWavIfTheSourceCannotBeRead) {
    writeFile(target, text("old"));
    EXPECT_EQ(decodeSource().outcome, DecodeOutcome::failed); // the source does not exist
    fs::create_directory(source);
    EXPECT_EQ(decodeSource().outcome, DecodeOutcome::failed);
    fs::remove(source);
    ASSERT_EQ(::mkfifo(source.c_str(), 0600), 0);
    EXPECT_EQ(decodeSource().outcome, DecodeOutcome::failed);
    fs::remove(source);
    writeFile(source, ordinary());
    fs::permissions(source, fs::perms::none);
    fs::permissions(folder.path(), fs::perms::all);
    fs::permissions(target, fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  const auto job = start(target);
                  waitFor(*job);
                  const auto& failure = job->result().failure;
                  return failure && failure->step == DecodeStep::opening &&
                                 failure->error.number == ErrorNumber::permissionDenied
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_EQ(readFile(target), text("old"));
}

TEST_F(DecodeJobTest, FailsAndReportsTheReasonIfTheTargetIsAFolder) {
    fs::create_directory(target);
    const DecodeResult result = decode(ordinary());
    EXPECT_EQ(result.outcome, DecodeOutcome::failed);
    ASSERT_TRUE(result.failure);
    EXPECT_EQ(result.failure->step, DecodeStep::writing);
    EXPECT_EQ(result.failure->error.number, ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_directory(target));
}

TEST_F(DecodeJobTest, KeepsThePartBeforeAnUnreadableOffset) {
    // The file is shortened while it is read: reads beyond the new end fail, as on a failing disk.
    const Data& data = encoded(44100, 2, "-b 320");
    const fixture::DecodedSound whole = fixture::sequentially(data);
    for (const unsigned threads : {1U, 2U}) {
        writeFile(source, data);
        // Appends a hole, so that the survey (surveyStream()) takes long: the file must be
        // shortened before the survey ends and the decoding begins.
        fs::resize_file(source, std::uintmax_t{1} << 40);
        const auto job = start(target, {threads, 16});
        EXPECT_TRUE(fakes::eventually([&] { return isOpen(source); }));
        fs::resize_file(source, 100'000);
        EXPECT_TRUE(waitFor(*job));
        const DecodeResult& result = job->result();
        EXPECT_EQ(result.outcome, DecodeOutcome::failed);
        ASSERT_TRUE(result.failure);
        EXPECT_EQ(result.failure->step, DecodeStep::reading);
        const fixture::Samples part = fixture::readWav(target).samples;
        EXPECT_EQ(part.size(), static_cast<std::size_t>(result.samples) * 2);
        EXPECT_EQ(part.size(), (100'000 / 1045 - 1) * 2304U - 1105 * 2)
            << "the WAV must contain exactly the samples of the frames that end before the "
               "file's new end";
        EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()));
    }
}

constexpr int room = 480'000; ///< the maximum size of the WAV, in bytes

/// Decodes with space for two thirds of the sound. For a child process. Returns 0 if the part that
/// fits was kept, and otherwise the number of the check that failed.
int decodeWithoutRoom(const fs::path& source, const fs::path& wav, unsigned threads) {
    DecodeJob job({source, wav, {threads, 16}}, &ignoreEnd,
                  std::make_shared<sound::PendingSaves>());
    if (!fakes::eventually([&] { return job.over(); })) {
        return 1;
    }
    const DecodeResult& result = job.result();
    if (result.outcome != DecodeOutcome::failed || !result.failure ||
        result.failure->step != DecodeStep::writing ||
        result.failure->error.number != ErrorNumber::diskFull) {
        return 2;
    }
    const fixture::Samples part = fixture::readWav(wav).samples;
    if (part.size() != static_cast<std::size_t>(result.samples) * 2) {
        return 3;
    }
    const fixture::Samples whole = fixture::sequentially(ordinary()).samples;
    constexpr std::size_t batch = 150'000; // more than the bytes of one write
    if (part.size() * 2 < room - batch || part.size() >= whole.size()) {
        return 4;
    }
    return std::equal(part.begin(), part.end(), whole.begin()) ? 0 : 5;
}

TEST_F(DecodeJobTest, KeepsThePartThatFitsWhenTheDiskBecomesFull) {
    writeFile(source, ordinary());
    const fs::path disk = folder / "disk";
    fs::create_directory(disk);
    for (const unsigned threads : {1U, 2U}) {
        const int code = test::runInChild([&] {
            if (!test::mountSmallDisk(disk)) {
                return test::mayNotMount;
            }
            writeFile(disk / "filler", Data(test::smallDiskBytes - room, 'x'));
            return decodeWithoutRoom(source, disk / "out.wav", threads);
        });
        if (code == test::mayNotMount) {
            GTEST_SKIP() << "this user is not allowed to mount a disk; "
                            "KeepsThePartThatTheFileSizeLimitAllows tests the same with a limit "
                            "of the file size";
        }
        EXPECT_EQ(code, 0) << threads << " threads";
    }
}

TEST_F(DecodeJobTest, KeepsThePartThatTheFileSizeLimitAllows) {
    writeFile(source, ordinary());
    for (const unsigned threads : {1U, 2U}) {
        const int code = test::runInChild([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{room, room};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            return decodeWithoutRoom(source, target, threads);
        });
        EXPECT_EQ(code, 0) << threads << " threads";
    }
}

TEST_F(DecodeJobTest, FailsAtOnceIfNoThreadCanBeStarted) {
    writeFile(source, ordinary());
    const fakes::LimitedThreads threads(0);
    int reports = 0;
    const DecodeJob job(
        DecodeOrder{source, target, {2, 16, threads.starter()}},
        [&](const DecodeResult& /*result*/) { ++reports; }, saves);
    EXPECT_TRUE(job.over());
    EXPECT_FALSE(job.busy());
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(job.result().outcome, DecodeOutcome::failed);
    ASSERT_TRUE(job.result().failure);
    EXPECT_EQ(job.result().failure->error.number, ErrorNumber::deviceUnavailable);
    EXPECT_FALSE(job.completed());
    EXPECT_EQ(entries(), 1);
}

} // namespace
} // namespace sonarith::mp3
