// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/segment_workers.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"
#include "support/limited_threads.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::encoded;

/// A source that calls `onRead` at each read; the read fails if `onRead` fails.
class WatchedSource : public ByteSource {
  public:
    explicit WatchedSource(const Data& data) : memory_(data) {}
    std::function<Status(std::int64_t offset)> onRead = [](std::int64_t) {
        return Status();
    };

    [[nodiscard]] std::int64_t size() const override { return memory_.size(); }
    [[nodiscard]] Reading readAt(std::int64_t offset, std::span<std::uint8_t> out) const override {
        const Status status = onRead(offset);
        return status.ok() ? memory_.readAt(offset, out) : Reading{0, status.error()};
    }

  private:
    MemorySource memory_;
};

class SegmentWorkersTest : public testing::Test {
  protected:
    Decoded decode(const ByteSource& source, const Division& division) {
        const FrameSequence frames(source, StreamFormat{});
        target = std::move(
            WavTarget::create(path, {frames.format().rate, frames.format().channels}).value());
        progress.setTotal(source.size());
        return SegmentWorkers(source, frames, *target, division, stop, progress).run();
    }
    fixture::Samples written(const Decoded& decoded) {
        EXPECT_TRUE(target->finish(decoded.samples).ok());
        return fixture::readWav(path).samples;
    }
    fakes::TempFolder folder;
    const std::filesystem::path path = folder / "a.wav";
    std::unique_ptr<WavTarget> target;
    std::atomic<bool> stop = false;
    Progress progress;
};

/// A stream in which some frames cannot be decoded; `frames` contains their numbers (from 0).
Data brokenAt(std::vector<std::size_t> frames) {
    Data data = encoded(44100, 2, "-b 320");
    const auto found = fixture::framesOf(data);
    for (const std::size_t number : frames) {
        // Window switching with the normal window type is invalid, so no decoder can decode this
        // frame.
        const auto side = static_cast<std::size_t>(found[number].offset) + 4;
        data[side + 6] = static_cast<std::uint8_t>((data[side + 6] & 0xF8) | 4);
    }
    // Junk after the last frame: DecodeCount::loss contains these bytes only if the frame scanner
    // has reached the end of the stream. So a comparison of the counts also tests that the scanner
    // got there.
    const Data tail = fixture::junk(300);
    data.insert(data.end(), tail.begin(), tail.end());
    return data;
}

TEST_F(SegmentWorkersTest, WriteTheSamplesOfASequentialDecodingForAnyNumberOfWorkers) {
    const Data& data = encoded(44100, 2, "-V 2");
    const fixture::DecodedSound whole = fixture::sequentially(data);
    for (const unsigned threads : {0U, 1U, 2U, 3U, 8U}) {
        const MemorySource source(data);
        const Decoded decoded = decode(source, {threads, 13});
        EXPECT_TRUE(decoded.complete);
        EXPECT_FALSE(decoded.sequentialFrom || decoded.failure);
        EXPECT_EQ(decoded.count, whole.count);
        EXPECT_EQ(fixture::difference(written(decoded), whole.samples), std::nullopt)
            << threads << " threads";
        // `progress` adds up all decodings, so its position is checked only after the first one.
        if (threads == 0) {
            EXPECT_GT(progress.position(), Progress::length * 9 / 10);
        }
    }
}

TEST_F(SegmentWorkersTest, LeaveAPrefixWithoutGapsWhereverTheyAreStopped) {
    const Data& data = encoded(44100, 2, "-b 320");
    const fixture::DecodedSound whole = fixture::sequentially(data);
    int stoppedInTheMiddle = 0;
    for (std::int64_t at = 0; at < static_cast<std::int64_t>(data.size()); at += 30'000) {
        stop = false;
        WatchedSource source(data);
        source.onRead = [&](std::int64_t offset) {
            stop = stop || offset > at;
            return stop ? Status(ErrorNumber::deviceInputOutput, "stopped") : Status();
        };
        const Decoded decoded = decode(source, {2, 20});
        EXPECT_TRUE(!decoded.complete || !stop);
        EXPECT_FALSE(decoded.failure);
        const fixture::Samples part = written(decoded);
        ASSERT_LE(part.size(), whole.samples.size());
        EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()))
            << "stopped at byte " << at;
        EXPECT_TRUE(!decoded.complete || part.size() == whole.samples.size())
            << "stopped at byte " << at;
        stoppedInTheMiddle += !part.empty() && part.size() < whole.samples.size() ? 1 : 0;
    }
    EXPECT_GT(stoppedInTheMiddle, 0)
        << "unsuitable test data: no decoding was stopped in the middle";
}

TEST_F(SegmentWorkersTest, KeepEverythingBeforeAnUnreadableOffset) {
    const Data& data = encoded(44100, 2, "-b 320");
    const auto frames = fixture::framesOf(data);
    const fixture::DecodedSound whole = fixture::sequentially(data);
    for (const std::size_t number : {1U, 77U, 80U, 154U}) {
        const auto bad = static_cast<std::size_t>(frames[number].offset) + 500;
        for (const unsigned threads : {1U, 3U}) {
            const fixture::BadPlaceSource source(data, bad, SIZE_MAX);
            const Decoded decoded = decode(source, {threads, 20});
            ASSERT_TRUE(decoded.failure);
            EXPECT_EQ(decoded.failure->step, DecodeStep::reading);
            EXPECT_EQ(decoded.failure->error.text, "bad place");
            EXPECT_FALSE(decoded.complete);
            const fixture::Samples part = written(decoded);
            // A frame has 2304 samples for both channels together; at the start of the stream, 1105
            // samples of each channel are trimmed.
            EXPECT_EQ(part.size(), number * 2304 - 1105 * 2);
            EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()));
        }
    }
}

TEST_F(SegmentWorkersTest, KeepEverythingBeforeAnUnreadableOffsetThatFollowsABrokenFrame) {
    const Data data = brokenAt({25});
    const auto bad = static_cast<std::size_t>(fixture::framesOf(data)[90].offset);
    const fixture::BadPlaceSource source(data, bad, SIZE_MAX);
    const Decoded decoded = decode(source, {2, 20});
    ASSERT_TRUE(decoded.failure);
    EXPECT_EQ(decoded.sequentialFrom, 20);
    EXPECT_FALSE(decoded.complete);
    const fixture::Samples part = written(decoded);
    EXPECT_EQ(fixture::difference(part, fixture::sequentially(source).samples), std::nullopt);
    EXPECT_EQ(part.size(), 90U * 2304 - 1105 * 2);
}

TEST_F(SegmentWorkersTest, OneWorkerContinuesAloneFromTheFirstBrokenSegment) {
    for (const auto& frames : {std::vector<std::size_t>{0}, {75}, {100, 119, 120}, {150}}) {
        const Data data = brokenAt(frames);
        const fixture::DecodedSound whole = fixture::sequentially(data);
        for (const unsigned threads : {1U, 2U, 4U}) {
            const MemorySource source(data);
            const Decoded decoded = decode(source, {threads, 20});
            EXPECT_EQ(decoded.sequentialFrom, frames[0] / 20 * 20);
            EXPECT_TRUE(decoded.complete);
            EXPECT_FALSE(decoded.failure);
            EXPECT_EQ(decoded.count, whole.count);
            EXPECT_EQ(fixture::difference(written(decoded), whole.samples), std::nullopt)
                << "first broken frame: " << frames[0];
        }
    }
}

TEST_F(SegmentWorkersTest, LeaveAPrefixWithoutGapsIfTheWorkerThatContinuesAloneIsStopped) {
    const Data data = brokenAt({75});
    const fixture::DecodedSound whole = fixture::sequentially(data);
    int stoppedAfterBrokenFrame = 0;
    // How far each worker is at a given read depends on the system's scheduler, so the loop is
    // repeated until the worker that continues alone was stopped after the broken frame.
    constexpr int mostTries = 200;
    for (int i = 0; i < 8 || (stoppedAfterBrokenFrame == 0 && i < mostTries); ++i) {
        const int allowedReads = 4 + 3 * (i % 8);
        stop = false;
        std::atomic<int> count = 0;
        WatchedSource source(data);
        source.onRead = [&](std::int64_t) {
            stop = stop || ++count > allowedReads;
            return stop ? Status(ErrorNumber::deviceInputOutput, "stopped") : Status();
        };
        const Decoded decoded = decode(source, {2, 20});
        EXPECT_FALSE(decoded.failure);
        const fixture::Samples part = written(decoded);
        ASSERT_LE(part.size(), whole.samples.size());
        EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()))
            << allowedReads << " reads";
        EXPECT_TRUE(!decoded.complete || part.size() == whole.samples.size())
            << allowedReads << " reads";
        stoppedAfterBrokenFrame += !decoded.complete && part.size() > 80U * 2304 ? 1 : 0;
    }
    EXPECT_GT(stoppedAfterBrokenFrame, 0)
        << "the worker that continues alone was never stopped after the broken frame";
}

TEST_F(SegmentWorkersTest, EndWhenTheyAreStoppedEvenIfTheSourceCanStillBeRead) {
    for (const bool broken : {false, true}) {
        const Data data = broken ? brokenAt({75}) : encoded(44100, 2, "-b 320");
        const fixture::DecodedSound whole = fixture::sequentially(data);
        int stoppedInTheMiddle = 0;
        for (int allowedReads = 0; allowedReads < 40; allowedReads += 3) {
            stop = false;
            int count = 0;
            WatchedSource source(data);
            source.onRead = [&](std::int64_t) {
                stop = ++count > allowedReads;
                return Status();
            };
            const Decoded decoded = decode(source, {1, 20});
            EXPECT_FALSE(decoded.failure);
            const fixture::Samples part = written(decoded);
            ASSERT_LE(part.size(), whole.samples.size());
            EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.samples.begin()));
            // In the stream with a broken frame, these samples were decoded by the worker that
            // continues alone.
            stoppedInTheMiddle += !decoded.complete && part.size() > 80U * 2304 ? 1 : 0;
        }
        EXPECT_GT(stoppedInTheMiddle, 0) << (broken ? "with" : "without") << " a broken frame";
    }
}

TEST_F(SegmentWorkersTest, DoAllWorkEvenIfAThreadCannotBeStarted) {
    const Data& data = encoded(44100, 2, "-V 2");
    const fixture::DecodedSound whole = fixture::sequentially(data);
    for (const int left : {0, 1, 2}) {
        const fakes::LimitedThreads threads(left);
        const MemorySource source(data);
        const Decoded decoded = decode(source, {4, 13, threads.starter()});
        EXPECT_EQ(threads.refused(), 1);
        EXPECT_TRUE(decoded.complete);
        EXPECT_EQ(fixture::difference(written(decoded), whole.samples), std::nullopt)
            << left << " threads could be started";
    }
}

} // namespace
} // namespace sonarith::mp3
