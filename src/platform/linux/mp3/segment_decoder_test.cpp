// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/segment_decoder.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::DecodedSound;
using fixture::difference;
using fixture::encoded;
using fixture::junk;
using fixture::operator+;
using fixture::ordinary;
using fixture::part;

/// Expects that decoding in segments, for several numbers of frames per segment, yields the same
/// samples as decoding the whole stream in one pass. A decoding in which a segment is broken
/// (SegmentEnd::broken) is not compared. Returns false if a segment was broken.
bool expectSame(const Data& data, const std::string& name) {
    const DecodedSound whole = fixture::sequentially(data);
    EXPECT_FALSE(whole.samples.empty()) << name;
    bool broken = false;
    for (const std::int64_t size : {1, 7, 24, 61}) {
        const DecodedSound pieces = fixture::inSegments(data, size);
        broken = broken || pieces.broken;
        if (!pieces.broken) {
            EXPECT_EQ(difference(pieces.samples, whole.samples), std::nullopt)
                << name << ", " << size << " frames per segment";
            EXPECT_EQ(pieces.format, whole.format) << name;
            EXPECT_EQ(pieces.count, whole.count) << name;
        }
    }
    return !broken;
}

TEST(SegmentDecoderTest, MatchesOnePassForStreamsOfMpeg1) {
    for (const char* options :
         {"-b 128", "-t -b 128", "-V 2", "-V 9 --resample 44.1", "-t -V 4", "--abr 140", "-b 320",
          "-b 32 --resample 44.1", "-p -b 160", "--nores -b 128", "-m m -b 64", "-m s -b 192"}) {
        EXPECT_TRUE(expectSame(encoded(44100, 2, options), options));
    }
    for (const int rate : {48000, 32000}) {
        EXPECT_TRUE(expectSame(encoded(rate, 1, "-b 96"), std::to_string(rate) + " Hz"));
        EXPECT_TRUE(expectSame(encoded(rate, 2, "-V 4"), std::to_string(rate) + " Hz"));
    }
}

TEST(SegmentDecoderTest, MatchesOnePassForStreamsOfLowSampleRates) {
    for (const double rate : {24.0, 22.05, 16.0, 12.0, 11.025, 8.0}) {
        for (const char* options : {"-b 8", "-b 64", "-V 5"}) {
            const std::string all = std::string(options) + " --resample " + std::to_string(rate);
            EXPECT_TRUE(expectSame(encoded(44100, 1, all), all + " mono"));
            EXPECT_TRUE(expectSame(encoded(44100, 2, all), all));
        }
    }
    EXPECT_TRUE(expectSame(encoded(44100, 2, "-p -b 8 --resample 24"), "the smallest frames"));
}

TEST(SegmentDecoderTest, MatchesOnePassForStreamsWithJunkOrGapsUnlessASegmentIsBroken) {
    const std::vector<Data> streams{ordinary(), encoded(44100, 2, "-V 2"),
                                    encoded(44100, 2, "-b 8 --resample 24")};
    for (const Data& data : streams) {
        const std::size_t middle = data.size() / 2;
        for (const std::size_t bytes : {500U, 1500U, 4096U, 70'000U}) {
            const std::string name = std::to_string(bytes) + " bytes";
            expectSame(junk(bytes) + data, "junk in front, " + name);
            expectSame(part(data, 0, middle) + junk(bytes) + part(data, middle, SIZE_MAX),
                       "junk inside, " + name);
            if (middle + bytes < data.size()) {
                expectSame(part(data, 0, middle) + part(data, middle + bytes, SIZE_MAX),
                           "cut out, " + name);
            }
        }
        EXPECT_TRUE(expectSame(part(data, middle, SIZE_MAX), "second half"));
        EXPECT_TRUE(expectSame(part(data, 0, middle), "first half"));
        EXPECT_TRUE(expectSame(data + encoded(48000, 1, "-b 64") + data, "another format inside"));
    }
}

TEST(SegmentDecoderTest, MatchesOnePassForStreamsWithWrongBitsUnlessASegmentIsBroken) {
    int broken = 0;
    int same = 0;
    std::mt19937 random(11);
    for (int round = 0; round < 24; ++round) {
        Data data = round % 2 == 0 ? ordinary() : encoded(44100, 1, "-b 48 --resample 22.05");
        for (int i = 0; i < 1 + round; ++i) {
            data[random() % data.size()] ^= static_cast<std::uint8_t>(1U << random() % 8);
        }
        (expectSame(data, "round " + std::to_string(round)) ? same : broken)++;
    }
    EXPECT_GT(broken, 0) << "unsuitable test data: no round has a broken segment";
    EXPECT_GT(same, 0);
}

TEST(SegmentDecoderTest, EndsWhenItsReceiverReturnsFalse) {
    const MemorySource source(ordinary());
    const FrameSequence frames(source, StreamFormat{});
    SegmentIndex index(frames, 100);
    std::int64_t last = 0;
    const auto end =
        decodeSegment(source, frames.format(), frames.trim(), *index.next(),
                      [&](std::int64_t frame, std::int64_t, std::span<const std::int16_t>) {
                          last = frame;
                          return Result<bool>(false);
                      });
    EXPECT_EQ(end.end, SegmentEnd::stopped);
    EXPECT_LT(last, 100);
}

TEST(SegmentDecoderTest, ReturnsTheErrorOfItsReceiver) {
    const MemorySource source(ordinary());
    const FrameSequence frames(source, StreamFormat{});
    SegmentIndex index(frames, 100);
    const auto end = decodeSegment(source, frames.format(), frames.trim(), *index.next(),
                                   [](std::int64_t, std::int64_t, std::span<const std::int16_t>) {
                                       return Result<bool>(ErrorNumber::diskFull, "full");
                                   });
    ASSERT_EQ(end.end, SegmentEnd::failed);
    EXPECT_EQ(end.failure->step, DecodeStep::writing);
    EXPECT_EQ(end.failure->error.number, ErrorNumber::diskFull);
}

TEST(SegmentDecoderTest, FailsIfTheSourceHasFewerFramesThanTheSegment) {
    const MemorySource source(ordinary());
    const FrameSequence frames(source, StreamFormat{});
    const Segment segment{0, 200, {0, 417}, 0};
    const SegmentOutcome outcome =
        decodeSegment(source, frames.format(), frames.trim(), segment,
                      [](std::int64_t, std::int64_t, std::span<const std::int16_t>) {
                          return Result<bool>(true);
                      });
    ASSERT_EQ(outcome.end, SegmentEnd::failed);
    EXPECT_EQ(outcome.failure->step, DecodeStep::reading);
}

TEST(SegmentDecoderTest, DeliversEverythingBeforeAnUnreadableOffset) {
    const auto found = fixture::framesOf(ordinary());
    const auto bad = static_cast<std::size_t>(found[77].offset) + 5;
    const fixture::BadPlaceSource source(ordinary(), bad, SIZE_MAX);
    const FrameSequence frames(source, StreamFormat{});
    for (const Until until : {Until::segmentEnd, Until::streamEnd}) {
        std::int64_t last = 0;
        fixture::Samples samples;
        const SegmentOutcome outcome = decodeSegment(
            source, frames.format(), frames.trim(), Segment{0, 155, {0, 417}, 0},
            [&](std::int64_t frame, std::int64_t, std::span<const std::int16_t> more) {
                last = frame;
                samples.insert(samples.end(), more.begin(), more.end());
                return Result<bool>(true);
            },
            until);
        ASSERT_EQ(outcome.end, SegmentEnd::failed);
        EXPECT_EQ(outcome.failure->error.text, "bad place");
        EXPECT_EQ(last, 77);
        EXPECT_EQ(difference(samples, fixture::sequentially(source).samples), std::nullopt);
    }
}

} // namespace
} // namespace sonarith::mp3
