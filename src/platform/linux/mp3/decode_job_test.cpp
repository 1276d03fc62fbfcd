// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/decode_job.h"

#include <gmock/gmock.h>

#include <csignal>
#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/mp3/mp3_fixture.h"
#include "support/forked_child.h"
#include "support/held_calls.h"
#include "support/limited_threads.h"
#include "support/small_disk.h"
#include "support/unprivileged.h"
#include "support/waiting.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using fixture::Data;
using fixture::encoded;
using fixture::operator+;
using fixture::ordinary;
using fixture::readFile;
using fixture::text;
using fixture::writeFile;

void ignoreEnd(const DecodeResult& /*result*/) {}

/// Whether this process has the file open.
bool isOpen(const fs::path& path) {
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code closedMeanwhile;
        if (fs::read_symlink(entry.path(), closedMeanwhile) == path) {
            return true;
        }
    }
    return false;
}

class DecodeJobTest : public testing::Test {
  protected:
    ~DecodeJobTest() override { EXPECT_TRUE(saves->noneWithin(std::chrono::seconds(30))); }
    std::unique_ptr<DecodeJob> start(const fs::path& to, const Division& division = {2, 16}) {
        return std::make_unique<DecodeJob>(DecodeOrder{source, to, division}, &ignoreEnd, saves);
    }
    static bool waitFor(const DecodeJob& job) {
        return fakes::eventually([&] { return job.over(); });
    }
    DecodeResult decode(const Data& data, const Division& division = {2, 16}) {
        writeFile(source, data);
        return decodeSource(division);
    }
    DecodeResult decodeSource(const Division& division = {2, 16}) {
        const auto job = start(target, division);
        EXPECT_TRUE(waitFor(*job));
        return job->result();
    }
    int entries() const {
        return static_cast<int>(std::distance(fs::directory_iterator(folder.path()), {}));
    }
    fakes::TempFolder folder;
    const std::shared_ptr<sound::PendingSaves> saves = std::make_shared<sound::PendingSaves>();
    const fs::path source = folder / "in.mp3";
    const fs::path target = folder / "out.wav";
};

TEST_F(DecodeJobTest, WritesTheWholeFileByEitherMethod) {
    const fixture::DecodedSound whole = fixture::sequentially(ordinary());
    for (const Division& division : {Division{1, 16}, Division{2, 16}, Division{}}) {
        const DecodeResult result = decode(ordinary(), division);
        EXPECT_EQ(result.outcome, DecodeOutcome::completed);
        EXPECT_EQ(result.method,
                  division.threads == 1 ? DecodeMethod::sequential : DecodeMethod::segments)
            << division.threads;
        EXPECT_EQ(result.count, whole.count);
        EXPECT_EQ(result.samples, 4 * 44100);
        const fixture::DecodedSound decoded = fixture::readWav(target);
        EXPECT_EQ(decoded.format, result.format);
        EXPECT_EQ(fixture::difference(decoded.samples, whole.samples), std::nullopt);
        EXPECT_EQ(entries(), 2);
        fs::remove(target);
    }
}

TEST_F(DecodeJobTest, KeepsEachFilesOwnRateAndChannels) {
    EXPECT_EQ(decode(encoded(22050, 1, "-b 32")).format, (PcmFormat{22050, 1}));
    EXPECT_EQ(fixture::readWav(target).format, (PcmFormat{22050, 1}));
    EXPECT_EQ(decode(encoded(48000, 2, "-b 128")).format, (PcmFormat{48000, 2}));
    EXPECT_EQ(fixture::readWav(target).format, (PcmFormat{48000, 2}));
}

TEST_F(DecodeJobTest, DecodesIndivisibleStreamsInOnePass) {
    for (const Data& data :
         {fixture::layer1(50), fixture::layer2(50), encoded(44100, 2, "--freeformat -b 400")}) {
        const DecodeResult result = decode(data);
        EXPECT_EQ(result.outcome, DecodeOutcome::completed);
        EXPECT_EQ(result.method, DecodeMethod::sequential);
        EXPECT_EQ(fixture::difference(fixture::readWav(target).samples,
                                      fixture::sequentially(data).samples),
                  std::nullopt);
    }
}

TEST_F(DecodeJobTest, ContinuesInOnePassFromAFrameThatTheLibraryCannotDecode) {
    Data broken = ordinary();
    for (std::size_t i = 20'000; i < 30'000; i += 37) {
        broken[i] ^= 0xFF;
    }
    const DecodeResult result = decode(broken);
    EXPECT_EQ(result.outcome, DecodeOutcome::completed);
    EXPECT_EQ(result.method, DecodeMethod::mixed);
    const fixture::DecodedSound whole = fixture::sequentially(broken);
    EXPECT_EQ(result.count, whole.count);
    EXPECT_EQ(fixture::difference(fixture::readWav(target).samples, whole.samples), std::nullopt);
}

TEST_F(DecodeJobTest, WritesNothingIfThereIsNoFrame) {
    writeFile(target, text("old"));
    for (const Data& data : {Data{}, Data(5000, 0), fixture::junk(70'000)}) {
        EXPECT_EQ(decode(data).outcome, DecodeOutcome::noFrames);
        EXPECT_EQ(readFile(target), text("old"));
        EXPECT_EQ(entries(), 2);
    }
}

TEST_F(DecodeJobTest, WritesNothingForAnInformationFrameAlone) {
    writeFile(target, text("old"));
    // 128 kbit/s at 44100 Hz without padding: 417 bytes.
    EXPECT_EQ(decode(fixture::part(fixture::ordinary(), 0, 417)).outcome, DecodeOutcome::noFrames);
    EXPECT_EQ(readFile(target), text("old"));
}

TEST_F(DecodeJobTest, FailsForSourcesThatCannotBeReadAndLeavesTheOldWav) {
    writeFile(target, text("old"));
    EXPECT_EQ(decodeSource().outcome, DecodeOutcome::failed); // it does not exist
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

TEST_F(DecodeJobTest, FailsForTargetsThatCannotBeWrittenAndReportsWhy) {
    fs::create_directory(target);
    const DecodeResult result = decode(ordinary());
    EXPECT_EQ(result.outcome, DecodeOutcome::failed);
    ASSERT_TRUE(result.failure);
    EXPECT_EQ(result.failure->step, DecodeStep::writing);
    EXPECT_EQ(result.failure->error.number, ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_directory(target));
}

TEST_F(DecodeJobTest, LeavesAValidPrefixWhenItIsStopped) {
    const Data& data = encoded(44100, 2, "-b 320");
    writeFile(source, data);
    const fixture::DecodedSound whole = fixture::sequentially(data);
    for (const unsigned threads : {1U, 2U}) {
        for (const int percent : {0, 1, 20, 50, 80}) {
            writeFile(target, text("old"));
            const auto job = start(target, {threads, 16});
            EXPECT_TRUE(fakes::eventually([&] {
                return !job->busy() ||
                       job->progress().position() >= Progress::length / 100 * percent;
            }));
            job->stop(std::chrono::seconds(30));
            EXPECT_FALSE(job->busy());
            ASSERT_TRUE(job->over());
            const DecodeResult& result = job->result();
            ASSERT_FALSE(result.failure);
            if (result.samples == 0) {
                EXPECT_EQ(readFile(target), text("old"))
                    << "an empty result does not replace the old file";
                continue;
            }
            const fixture::Samples part = fixture::readWav(target).samples;
            ASSERT_EQ(part.size(), static_cast<std::size_t>(result.samples) * 2);
            EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()));
            if (result.outcome == DecodeOutcome::completed) { // it ended before the stop
                EXPECT_EQ(part.size(), whole.samples.size());
            } else {
                EXPECT_EQ(result.outcome, DecodeOutcome::stopped);
                EXPECT_FALSE(job->completed());
            }
        }
    }
}

TEST_F(DecodeJobTest, CountsAsStoppedIfItIsStoppedWhileItWrites) {
    writeFile(source, ordinary());
    const fixture::Samples whole = fixture::sequentially(ordinary()).samples;
    for (const unsigned threads : {1U, 2U}) {
        test::HeldCalls disk({SYS_pwrite64}, test::ofPath(folder.path()));
        std::unique_ptr<DecodeJob> job;
        ASSERT_TRUE(disk.run([&] { job = start(target, {threads, 16}); }));
        ASSERT_TRUE(disk.waitForCall()); // before its first sample is in the file
        job->stop(std::chrono::milliseconds(0));
        disk.release();
        EXPECT_TRUE(waitFor(*job));
        EXPECT_EQ(job->result().outcome, DecodeOutcome::stopped);
        EXPECT_FALSE(job->completed());
        const fixture::Samples part = fixture::readWav(target).samples;
        EXPECT_EQ(part.size(), static_cast<std::size_t>(job->result().samples) * 2);
        EXPECT_GT(part.size(), 0U);
        ASSERT_LT(part.size(), whole.size());
        EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin()));
    }
}

TEST_F(DecodeJobTest, LeavesTheOldWavAndEndsAtOnceIfItIsStoppedBeforeTheFirstSample) {
    // A few frames, and then so many zeros that the scan takes long.
    writeFile(source, fixture::part(ordinary(), 0, 4000));
    fs::resize_file(source, std::uintmax_t{1} << 40);
    writeFile(target, text("old"));
    const auto job = start(target);
    EXPECT_TRUE(fakes::eventually([&] { return isOpen(source); }));
    job->stop(std::chrono::seconds(30));
    ASSERT_TRUE(job->over());
    EXPECT_EQ(job->result().outcome, DecodeOutcome::stopped);
    EXPECT_EQ(job->result().samples, 0);
    EXPECT_EQ(readFile(target), text("old"));
}

TEST_F(DecodeJobTest, KeepsThePartBeforeAPlaceThatCannotBeRead) {
    // The file becomes shorter while it is read, as on a failing disk.
    const Data& data = encoded(44100, 2, "-b 320");
    const fixture::DecodedSound whole = fixture::sequentially(data);
    for (const unsigned threads : {1U, 2U}) {
        writeFile(source, data);
        fs::resize_file(source, std::uintmax_t{1} << 40); // so that the scan takes long
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
        EXPECT_EQ(part.size(), (100'000 / 1045 - 1) * 2304U - 1105 * 2) << "every whole frame";
        EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()));
    }
}

constexpr int room = 480'000; ///< in bytes

/// Decodes with space for two thirds of the sound, in a child process. Returns 0 if the part that
/// fits was kept.
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
    constexpr std::size_t batch = 150'000; // bytes of one write
    if (part.size() * 2 < room - batch || part.size() >= whole.size()) {
        return 4;
    }
    return std::equal(part.begin(), part.end(), whole.begin()) ? 0 : 5;
}
TEST_F(DecodeJobTest, KeepsThePartThatFitsOnAFullDisk) {
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
            GTEST_SKIP()
                << "this user may not mount a disk; KeepsThePartThatALimitAllows tests it, too";
        }
        EXPECT_EQ(code, 0) << threads;
    }
}

TEST_F(DecodeJobTest, KeepsThePartThatALimitAllows) {
    writeFile(source, ordinary());
    for (const unsigned threads : {1U, 2U}) {
        const int code = test::runInChild([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{room, room};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            return decodeWithoutRoom(source, target, threads);
        });
        EXPECT_EQ(code, 0) << threads;
    }
}

TEST_F(DecodeJobTest, DecodesTheFormatOfMostFramesByEitherMethod) {
    const Data& other = encoded(48000, 2, "-t -b 128");
    const Data data = fixture::part(other, 0, 4 * 384) + ordinary() + other;
    const fixture::DecodedSound song = fixture::sequentially(ordinary());
    for (const unsigned threads : {1U, 2U}) {
        const DecodeResult result =
            decode(fixture::part(other, 0, 4 * 384) + ordinary(), {threads, 16});
        EXPECT_EQ(result.outcome, DecodeOutcome::completed);
        EXPECT_EQ(result.format, (PcmFormat{44100, 2}));
        EXPECT_EQ(result.count.loss.framesDropped, 4);
        EXPECT_EQ(fixture::difference(fixture::readWav(target).samples, song.samples),
                  std::nullopt);
        EXPECT_EQ(decode(data, {threads, 16}).format, (PcmFormat{48000, 2}));
    }
}

TEST_F(DecodeJobTest, IsSkippedUntilOneOfItsFilesIsChanged) {
    writeFile(source, ordinary());
    int reports = 0;
    const auto run = [&](const std::optional<CompletedDecoding>& former) {
        reports = 0;
        const DecodeJob job(
            {source, target, {2, 16}}, [&](const DecodeResult& /*result*/) { ++reports; }, saves,
            former);
        EXPECT_TRUE(waitFor(job));
        EXPECT_EQ(job.result().outcome, DecodeOutcome::completed);
        EXPECT_EQ(job.progress().position(), Progress::length);
        return job.completed();
    };
    const auto spared = [&](const std::optional<CompletedDecoding>& former) {
        const auto before = FileIdentity::of(target);
        const auto after = run(former);
        EXPECT_EQ(reports == 0, FileIdentity::of(target) == before);
        return reports == 0;
    };
    EXPECT_TRUE(spared(run(std::nullopt)));
    EXPECT_TRUE(spared(run(run(std::nullopt)))) << "once more";
    auto former = run(std::nullopt);
    writeFile(source, ordinary() + ordinary());
    EXPECT_FALSE(spared(former));
    former = run(std::nullopt);
    writeFile(target, text("x"));
    EXPECT_FALSE(spared(former));
    former = run(std::nullopt);
    fs::remove(target);
    EXPECT_FALSE(spared(former));
}

TEST_F(DecodeJobTest, IsReusedOnlyIfItWasCompleted) {
    writeFile(source, fixture::junk(5000));
    const auto job = start(target);
    EXPECT_TRUE(waitFor(*job));
    EXPECT_FALSE(job->completed());
    EXPECT_TRUE(job->isFor({source, target, {}}));
    EXPECT_FALSE(job->isFor({source, source, {}}));
    EXPECT_FALSE(job->isFor({target, target, {}}));
}

TEST_F(DecodeJobTest, AcceptsNamesOfEveryKind) {
    for (const std::string& name :
         {std::string("a b 'c' \"d\" [e].wav"), std::string("\xC3\xA4\xE2\x82\xAC.wav"),
          std::string("bad\xFF\xE4.wav"), std::string(251, 'n') + ".wav"}) {
        writeFile(source, ordinary());
        const auto job = start(folder / name);
        EXPECT_TRUE(waitFor(*job));
        EXPECT_EQ(job->result().outcome, DecodeOutcome::completed) << name;
        EXPECT_TRUE(fs::exists(folder / name)) << name;
    }
}

TEST_F(DecodeJobTest, MayReplaceItsOwnSource) {
    writeFile(source, ordinary());
    EXPECT_TRUE(waitFor(*start(source)));
    EXPECT_EQ(fixture::readWav(source).samples.size(), 4U * 44100 * 2);
}

TEST_F(DecodeJobTest, DecodingsOfOneTargetRunOneAfterTheOther) {
    writeFile(source, ordinary());
    writeFile(target, text("old"));
    fs::create_symlink(target, folder / "link.wav");
    std::vector<std::unique_ptr<DecodeJob>> jobs;
    for (int i = 0; i < 6; ++i) {
        jobs.push_back(start(i % 2 == 0 ? target : folder / "link.wav", {1, 16}));
    }
    for (const auto& job : jobs) {
        EXPECT_TRUE(waitFor(*job));
        EXPECT_EQ(job->result().outcome, DecodeOutcome::completed);
    }
    EXPECT_EQ(fixture::readWav(target).samples.size(), 4U * 44100 * 2);
    EXPECT_EQ(entries(), 3);
}

TEST_F(DecodeJobTest, FailsAtOnceIfTheSystemHasNoThread) {
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
