// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/sequential_decoder.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::byTool;
using fixture::Data;
using fixture::DecodedSound;
using fixture::difference;
using fixture::encoded;
using fixture::junk;
using fixture::operator+;
using fixture::ordinary;
using fixture::part;
using fixture::sequentially;

void expectLikeTheTool(const Data& data, const std::string& name) {
    const DecodedSound ours = sequentially(data);
    const DecodedSound tools = byTool(data);
    EXPECT_EQ(ours.format, tools.format) << name;
    EXPECT_FALSE(ours.samples.empty()) << name;
    EXPECT_EQ(ours.samples.size(), tools.samples.size()) << name;
    EXPECT_EQ(difference(ours.samples, tools.samples), std::nullopt) << name;
}

TEST(SequentialDecoderTest, DecodesUndamagedStreamsToTheSameSamplesAsMpg123) {
    constexpr double seconds = 1;
    for (const char* options :
         {"-b 128", "-t -b 128", "-V 2", "-t -V 4", "--abr 140", "-b 320", "-p -b 160",
          "--nores -b 128", "-b 32 --resample 44.1", "-m m -b 96"}) {
        expectLikeTheTool(encoded(44100, 2, options, seconds), options);
    }
    for (const int rate : {48000, 32000, 24000, 22050, 16000, 12000, 11025, 8000}) {
        const std::string options = "--resample " + std::to_string(rate / 1000.0);
        expectLikeTheTool(encoded(rate, 1, "-b 32 " + options, seconds), "mono " + options);
        expectLikeTheTool(encoded(rate, 2, "-b 64 " + options, seconds), "stereo " + options);
    }
    for (const int rate : {24000, 16000, 8000}) {
        const std::string options = "-b 8 --resample " + std::to_string(rate / 1000.0);
        expectLikeTheTool(encoded(rate, 2, options, seconds), options);
    }
}

TEST(SequentialDecoderTest, DecodesLayersIAndIIToTheSameSamplesAsMpg123) {
    expectLikeTheTool(fixture::layer1(40), "Layer I");
    expectLikeTheTool(fixture::layer2(40), "Layer II");
}

TEST(SequentialDecoderTest, DecodesJoinedFilesToTheSameSamplesAsMpg123) {
    expectLikeTheTool(ordinary() + ordinary(), "joined");
}

TEST(SequentialDecoderTest, ReturnsExactlyAsManySamplesAsWereEncoded) {
    EXPECT_EQ(sequentially(ordinary()).samples.size(), 4U * 44100 * 2);
    EXPECT_EQ(sequentially(ordinary()).count, (DecodeCount{155, 0, {}}));
}

TEST(SequentialDecoderTest, DecodesAllFramesAroundJunkAndMakesAtMostThreeOfThemSilent) {
    const std::size_t place = static_cast<std::size_t>(fixture::framesOf(ordinary())[70].offset);
    const DecodedSound whole = sequentially(ordinary());
    for (const std::size_t bytes : {500U, 1500U, 4096U, 70'000U}) {
        EXPECT_EQ(difference(sequentially(junk(bytes) + ordinary()).samples, whole.samples),
                  std::nullopt)
            << bytes << " bytes of junk before the stream";
        const DecodedSound inside = sequentially(part(ordinary(), 0, place) + junk(bytes) +
                                                 part(ordinary(), place, SIZE_MAX));
        EXPECT_EQ(inside.samples.size(), whole.samples.size())
            << bytes << " bytes of junk inside the stream";
        EXPECT_EQ(inside.count.framesDecoded, 155);
        EXPECT_EQ(inside.count.loss.bytesSkipped, static_cast<std::int64_t>(bytes));
        EXPECT_LE(inside.count.framesSilenced, 3);
        // All samples are unchanged except those of the few frames that refer to data before the
        // junk.
        const std::size_t before = 70 * 1152 * 2 - 1105 * 2;
        const std::size_t after = before + 5 * 1152 * 2;
        const auto differs = difference(inside.samples, whole.samples);
        EXPECT_TRUE(!differs || *differs >= before);
        EXPECT_TRUE(std::equal(inside.samples.begin() + static_cast<std::ptrdiff_t>(after),
                               inside.samples.end(),
                               whole.samples.begin() + static_cast<std::ptrdiff_t>(after)));
    }
}

TEST(SequentialDecoderTest, DecodesTheFramesOfTheMostFrequentFormatAndCountsTheOthers) {
    const Data& mono = encoded(44100, 1, "-b 64");
    const Data jingle = part(mono, 0, static_cast<std::size_t>(fixture::framesOf(mono)[3].offset));
    const DecodedSound decoded =
        sequentially(jingle + ordinary() + encoded(48000, 2, "-b 128") + mono + ordinary());
    EXPECT_EQ(decoded.format, (PcmFormat{44100, 2}));
    EXPECT_EQ(decoded.count.framesDecoded, 155 + 156);
    EXPECT_EQ(decoded.count.loss.framesDropped, 4 + 168 + 155 + 2);
    EXPECT_EQ(decoded.count.loss.bytesSkipped, 0);
    // Frames of another format before the stream do not change its samples.
    EXPECT_EQ(
        difference(sequentially(jingle + ordinary()).samples, sequentially(ordinary()).samples),
        std::nullopt);
}

TEST(SequentialDecoderTest, IsNotCreatedForAStreamWithoutAFrame) {
    for (const Data& data : {Data{}, junk(100'000), Data(70'000, 0)}) {
        EXPECT_TRUE(sequentially(data).samples.empty());
        EXPECT_EQ(sequentially(data).format, (PcmFormat{0, 0}));
    }
}

TEST(SequentialDecoderTest, DecodesEverythingBeforeAReadFailureAndReportsTheFailure) {
    const auto bad = static_cast<std::size_t>(fixture::framesOf(ordinary())[100].offset);
    const DecodedSound decoded = sequentially(fixture::BadPlaceSource(ordinary(), bad, SIZE_MAX));
    ASSERT_TRUE(decoded.failure);
    EXPECT_EQ(decoded.count.framesDecoded, 100);
    const DecodedSound whole = sequentially(ordinary());
    ASSERT_GT(decoded.samples.size(), 98U * 1152 * 2);
    EXPECT_TRUE(std::equal(decoded.samples.begin(), decoded.samples.end(), whole.samples.begin()));
}

TEST(SequentialDecoderTest, ReturnsThePartOfEachFrameThatTheGaplessTrimKeeps) {
    const StreamFormat format; // 1152 samples, stereo
    const std::vector<std::int16_t> samples(2304);
    // Removes the samples before 1500 and in [2500, 3456), and keeps all later samples.
    const GaplessTrim trim(1500, 2500, 3456);
    const auto keptRange = [&](std::int64_t number) {
        const auto kept = keptPart(trim, format, number, samples);
        return std::pair(kept.empty() ? 0 : kept.data() - samples.data(), kept.size());
    };
    using Pair = std::pair<std::ptrdiff_t, std::size_t>;
    EXPECT_EQ(keptRange(0), (Pair{0, 0}));
    EXPECT_EQ(keptRange(1), (Pair{348 * 2, (2304 - 1500) * 2}));
    EXPECT_EQ(keptRange(2), (Pair{0, (2500 - 2304) * 2}));
    EXPECT_EQ(keptRange(3), (Pair{0, 2304}));
}

} // namespace
} // namespace sonarith::mp3
