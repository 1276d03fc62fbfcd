// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/decode_job.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include "platform/linux/mp3/mp3_fixture.h"
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

class DecodeJobTest : public testing::Test {
  protected:
    DecodeResult decode(const Data& data, const Division& division = {2, 16}) {
        writeFile(source, data);
        return decodeSource(division);
    }
    DecodeResult decodeSource(const Division& division = {2, 16}) {
        DecodeJob job(source, target, division);
        EXPECT_TRUE(fakes::eventually([&] { return !job.busy(); }));
        job.stop();
        return job.result();
    }
    int entries() const {
        return static_cast<int>(std::distance(fs::directory_iterator(folder.path()), {}));
    }
    fakes::TempFolder folder;
    const fs::path source = folder / "in.mp3";
    const fs::path target = folder / "out.wav";
};

TEST_F(DecodeJobTest, WritesTheWholeFileOnEitherRoad) {
    const fixture::Heard whole = fixture::sequentially(ordinary());
    for (const Division& division : {Division{1, 16}, Division{2, 16}, Division{}}) {
        const DecodeResult result = decode(ordinary(), division);
        EXPECT_EQ(result.outcome, DecodeOutcome::completed);
        EXPECT_EQ(result.road,
                  division.threads == 1 ? DecodeRoad::sequential : DecodeRoad::segments)
            << division.threads;
        EXPECT_EQ(result.count, whole.count);
        EXPECT_EQ(result.samples, 4 * 44100);
        const fixture::Heard heard = fixture::readWav(target);
        EXPECT_EQ(heard.format, result.format);
        EXPECT_EQ(fixture::difference(heard.samples, whole.samples), std::nullopt);
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

TEST_F(DecodeJobTest, TakesTheSequentialRoadWhereTheOtherDoesNotHold) {
    for (const Data& data :
         {fixture::layer1(50), fixture::layer2(50), encoded(44100, 2, "--freeformat -b 400")}) {
        const DecodeResult result = decode(data);
        EXPECT_EQ(result.outcome, DecodeOutcome::completed);
        EXPECT_EQ(result.road, DecodeRoad::sequential);
        EXPECT_EQ(fixture::difference(fixture::readWav(target).samples,
                                      fixture::sequentially(data).samples),
                  std::nullopt);
    }
}

TEST_F(DecodeJobTest, GoesOnInOnePassFromAFrameThatTheLibraryGivesUp) {
    Data broken = ordinary();
    for (std::size_t i = 20'000; i < 30'000; i += 37) {
        broken[i] ^= 0xFF;
    }
    const DecodeResult result = decode(broken);
    EXPECT_EQ(result.outcome, DecodeOutcome::completed);
    EXPECT_EQ(result.road, DecodeRoad::mixed);
    const fixture::Heard whole = fixture::sequentially(broken);
    EXPECT_EQ(result.count, whole.count);
    EXPECT_EQ(fixture::difference(fixture::readWav(target).samples, whole.samples), std::nullopt);
}

TEST_F(DecodeJobTest, WritesNothingWhereThereIsNoFrame) {
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
    EXPECT_EQ(decodeSource().outcome, DecodeOutcome::failed); // not there
    fs::create_directory(source);
    EXPECT_EQ(decodeSource().outcome, DecodeOutcome::failed);
    fs::remove(source);
    ASSERT_EQ(::mkfifo(source.c_str(), 0600), 0);
    EXPECT_EQ(decodeSource().outcome, DecodeOutcome::failed);
    fs::remove(source);
    writeFile(source, ordinary());
    fs::permissions(source, fs::perms::none);
    fs::permissions(folder.path(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  DecodeJob job(source, target, {2, 16});
                  fakes::eventually([&] { return !job.busy(); });
                  return job.result().error &&
                                 job.result().error->number == ErrorNumber::permissionDenied
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_EQ(readFile(target), text("old"));
}

TEST_F(DecodeJobTest, FailsForTargetsThatCannotBeWrittenAndSaysWhy) {
    fs::create_directory(target);
    const DecodeResult result = decode(ordinary());
    EXPECT_EQ(result.outcome, DecodeOutcome::failed);
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->number, ErrorNumber::pathFileAccess);
    EXPECT_TRUE(fs::is_directory(target));
}

TEST_F(DecodeJobTest, LeavesAValidPrefixWhenItIsStopped) {
    const Data& data = encoded(44100, 2, "-b 320", 8);
    writeFile(source, data);
    const fixture::Heard whole = fixture::sequentially(data);
    for (const unsigned threads : {1U, 2U}) {
        for (const int percent : {0, 1, 5, 20, 50, 80}) {
            writeFile(target, text("old"));
            DecodeJob job(source, target, {threads, 16});
            EXPECT_TRUE(fakes::eventually([&] {
                return !job.busy() || job.progress().position() >= Progress::length / 100 * percent;
            }));
            job.stop();
            EXPECT_FALSE(job.busy());
            const DecodeResult& result = job.result();
            ASSERT_FALSE(result.error);
            if (result.samples == 0) {
                EXPECT_EQ(readFile(target), text("old")) << "nothing is no reason to replace it";
                continue;
            }
            const fixture::Samples part = fixture::readWav(target).samples;
            ASSERT_EQ(part.size(), static_cast<std::size_t>(result.samples) * 2);
            EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()));
            EXPECT_EQ(result.outcome == DecodeOutcome::completed,
                      part.size() == whole.samples.size() &&
                          result.outcome != DecodeOutcome::stopped);
        }
    }
}

TEST_F(DecodeJobTest, LeavesTheOldWavAndEndsAtOnceIfItIsStoppedBeforeTheFirstSample) {
    // A few frames, fewer than the segment's, and then so many zeros that the scan goes on for
    // long.
    writeFile(source, fixture::part(ordinary(), 0, 4000));
    fs::resize_file(source, std::uintmax_t{1} << 40);
    writeFile(target, text("old"));
    DecodeJob job(source, target, {2, 16});
    EXPECT_TRUE(fakes::eventually([&] { // until the unnamed file of the new WAV is there
        for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code closedMeanwhile;
            const std::string name = fs::read_symlink(entry.path(), closedMeanwhile).string();
            const bool hasNoName = name.ends_with(" (deleted)");
            const bool isHidden = name.find("/.sonarith-") != std::string::npos;
            if (name.starts_with(folder.path().string()) && (hasNoName || isHidden)) {
                return true;
            }
        }
        return false;
    }));
    job.stop();
    EXPECT_EQ(job.result().outcome, DecodeOutcome::stopped);
    EXPECT_EQ(job.result().samples, 0);
    EXPECT_EQ(readFile(target), text("old"));
}

TEST_F(DecodeJobTest, HoldsUntilOneOfItsFilesIsChanged) {
    writeFile(source, ordinary());
    const auto completed = [&] {
        auto job = std::make_unique<DecodeJob>(source, target, Division{2, 16});
        EXPECT_TRUE(fakes::eventually([&] { return !job->busy(); }));
        EXPECT_TRUE(job->stillHolds());
        return job;
    };
    EXPECT_TRUE(completed()->isFor(source, target));
    EXPECT_FALSE(completed()->isFor(source, source));
    auto job = completed();
    writeFile(source, ordinary() + text("x"));
    EXPECT_FALSE(job->stillHolds());
    job = completed();
    writeFile(target, text("x"));
    EXPECT_FALSE(job->stillHolds());
    job = completed();
    fs::remove(target);
    EXPECT_FALSE(job->stillHolds());
}

TEST_F(DecodeJobTest, TakesNamesOfEveryKind) {
    for (const std::string& name :
         {std::string("a b 'c' \"d\" [e].wav"), std::string("\xC3\xA4\xE2\x82\xAC.wav"),
          std::string("bad\xFF\xE4.wav"), std::string(251, 'n') + ".wav"}) {
        writeFile(source, ordinary());
        DecodeJob job(source, folder / name, {2, 16});
        EXPECT_TRUE(fakes::eventually([&] { return !job.busy(); }));
        EXPECT_EQ(job.result().outcome, DecodeOutcome::completed) << name;
        EXPECT_TRUE(fs::exists(folder / name)) << name;
    }
}

TEST_F(DecodeJobTest, MayReplaceItsOwnSource) {
    writeFile(source, ordinary());
    DecodeJob job(source, source, {2, 16});
    EXPECT_TRUE(fakes::eventually([&] { return !job.busy(); }));
    EXPECT_EQ(fixture::readWav(source).samples.size(), 4U * 44100 * 2);
}

} // namespace
} // namespace sonarith::mp3
