// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/decode_job.h"

#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/mp3/decode_job_fixture.h"
#include "support/held_calls.h"

namespace sonarith::mp3 {
namespace {

namespace fs = std::filesystem;
using fixture::Data;
using fixture::DecodeJobTest;
using fixture::encoded;
using fixture::isOpen;
using fixture::operator+;
using fixture::ordinary;
using fixture::readFile;
using fixture::text;
using fixture::writeFile;

TEST_F(DecodeJobTest, DecodesTheWholeFileOnOneOrSeveralThreads) {
    const fixture::DecodedSound whole = fixture::sequentially(ordinary());
    for (const Division& division : {Division{1, 16}, Division{2, 16}, Division{}}) {
        const DecodeResult result = decode(ordinary(), division);
        EXPECT_EQ(result.outcome, DecodeOutcome::completed);
        EXPECT_EQ(result.method,
                  division.threads == 1 ? DecodeMethod::sequential : DecodeMethod::segments)
            << division.threads << " threads";
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

TEST_F(DecodeJobTest, DecodesLayer1Layer2AndFreeFormatInOnePass) {
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

TEST_F(DecodeJobTest, ContinuesInOnePassFromAFrameThatLibmpg123CannotDecode) {
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
    // The stream begins with the information frame: 417 bytes (128 kbit/s, 44100 Hz, no padding).
    EXPECT_EQ(decode(fixture::part(fixture::ordinary(), 0, 417)).outcome, DecodeOutcome::noFrames);
    EXPECT_EQ(readFile(target), text("old"));
}

TEST_F(DecodeJobTest, WritesTheBeginningOfTheSoundOrNothingIfItIsStopped) {
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
                    << "an empty result must not replace the old file";
                continue;
            }
            const fixture::Samples part = fixture::readWav(target).samples;
            ASSERT_EQ(part.size(), static_cast<std::size_t>(result.samples) * 2);
            EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()));
            if (result.outcome == DecodeOutcome::completed) { // the decoding ended before the stop
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
        ASSERT_TRUE(disk.waitForCall()); // the WAV contains no sample yet
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

TEST_F(DecodeJobTest, DecodesOnlyTheFramesOfTheMostFrequentFormat) {
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

TEST_F(DecodeJobTest, ReusesACompletedDecodingOnlyIfBothFilesAreUnchanged) {
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
    const auto reused = [&](const std::optional<CompletedDecoding>& former) {
        const auto before = FileIdentity::of(target);
        const auto after = run(former);
        EXPECT_EQ(reports == 0, FileIdentity::of(target) == before);
        return reports == 0;
    };
    EXPECT_TRUE(reused(run(std::nullopt)));
    EXPECT_TRUE(reused(run(run(std::nullopt)))) << "a result must be reusable more than once";
    auto former = run(std::nullopt);
    writeFile(source, ordinary() + ordinary());
    EXPECT_FALSE(reused(former));
    former = run(std::nullopt);
    writeFile(target, text("x"));
    EXPECT_FALSE(reused(former));
    former = run(std::nullopt);
    fs::remove(target);
    EXPECT_FALSE(reused(former));
}

TEST_F(DecodeJobTest, IsNotCompletedWithoutFramesAndMatchesOnlyItsOwnFiles) {
    writeFile(source, fixture::junk(5000));
    const auto job = start(target);
    EXPECT_TRUE(waitFor(*job));
    EXPECT_FALSE(job->completed());
    EXPECT_TRUE(job->isFor({source, target, {}}));
    EXPECT_FALSE(job->isFor({source, source, {}}));
    EXPECT_FALSE(job->isFor({target, target, {}}));
}

TEST_F(DecodeJobTest, AcceptsUnusualTargetNames) {
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

TEST_F(DecodeJobTest, SeveralDecodingsToOneTargetAllComplete) {
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

} // namespace
} // namespace sonarith::mp3
