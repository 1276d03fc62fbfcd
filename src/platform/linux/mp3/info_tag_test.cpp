// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/info_tag.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::encoded;

std::optional<GaplessTrim> tagOf(const Data& data) {
    const auto header = parseHeader(data);
    return parseInfoTag(*header, Bytes(data).first(static_cast<std::size_t>(header->bytes)));
}

TEST(InfoTagTest, KeepsExactlyAsManySamplesAsWereEncoded) {
    constexpr double seconds = 1;
    for (const char* options : {"-b 128", "-V 2", "--abr 140", "-p -b 128"}) {
        for (const int channels : {1, 2}) {
            const Data& data = encoded(44100, channels, options, seconds);
            const auto trim = tagOf(data);
            ASSERT_TRUE(trim) << options;
            const auto frames = static_cast<std::int64_t>(fixture::framesOf(data).size());
            EXPECT_EQ(trim->keptBefore(frames * 1152), seconds * 44100) << options;
        }
    }
    const Data& low = encoded(22050, 2, "-b 64", seconds);
    EXPECT_EQ(
        tagOf(low)->keptBefore(576 * static_cast<std::int64_t>(fixture::framesOf(low).size())),
        seconds * 22050);
}

TEST(InfoTagTest, IsNotDetectedInStreamsWithoutATag) {
    EXPECT_FALSE(tagOf(encoded(44100, 2, "-t -b 128")));
    EXPECT_FALSE(tagOf(fixture::layer2(1)));
}

TEST(InfoTagTest, IsDetectedByItsIdentifierButTrimsNothingIfItIsTruncated) {
    const Data& data = fixture::ordinary();
    for (std::size_t bytes = 0; bytes < 200; ++bytes) {
        const auto tag = parseInfoTag(*parseHeader(data), Bytes(data).first(bytes));
        EXPECT_EQ(tag.has_value(), bytes >= 40);
        if (tag && bytes < 180) {
            EXPECT_EQ(*tag, GaplessTrim());
        }
    }
}

TEST(InfoTagTest, TrimsNothingIfTheEncodersNameOrTheNumberOfFramesIsMissing) {
    Data data = fixture::ordinary();
    // The first byte of the encoder's name. The tag begins at offset 36 with its identifier and its
    // flags (4 bytes each), followed by the numbers of frames and of bytes (4 bytes each), the seek
    // table (100 bytes), the quality (4 bytes) and the encoder's name.
    data[156] = 0;
    EXPECT_EQ(tagOf(data), GaplessTrim());
    data = fixture::ordinary();
    data[43] = 0; // the flags of the fields: no field exists, not even the number of frames
    EXPECT_EQ(tagOf(data), GaplessTrim());
}

TEST(InfoTagTest, TrimsNothingIfItStatesZeroFrames) {
    Data data = fixture::ordinary();
    std::fill(data.begin() + 44, data.begin() + 48, 0); // the number of frames
    EXPECT_EQ(tagOf(data), GaplessTrim());
}

TEST(GaplessTrimTest, RemovesWhatTheEncoderAddedButKeepsSamplesThatAnotherProgramAppended) {
    const GaplessTrim trim(10, 90, 100);
    const std::vector<std::pair<std::int64_t, std::int64_t>> cases{
        {0, 0}, {10, 0}, {11, 1}, {90, 80}, {95, 80}, {100, 80}, {101, 81}, {200, 180}};
    for (const auto& [sample, before] : cases) {
        EXPECT_EQ(trim.keptBefore(sample), before) << sample;
    }
    EXPECT_EQ(GaplessTrim().keptBefore(77), 77);
}

} // namespace
} // namespace sonarith::mp3
