// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/renewed_decoder.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::encoded;
using fixture::operator+;
using fixture::Samples;

/// The shortest period that RenewedDecoder::create() permits. A period is the number of frames from
/// one replacement of the decoder to the next.
constexpr std::int64_t shortPeriod = 288;

struct Pass {
    Samples samples;
    std::int64_t silenced = 0;
    std::int64_t mostFrames = 0; ///< the largest number of frames that one decoder received
};

Pass decodeFrom(const Data& data, std::int64_t period, std::size_t first = 0) {
    RenewedDecoder decoder = std::move(RenewedDecoder::create(period).value());
    Pass pass;
    const auto frames = fixture::framesOf(data);
    for (std::size_t i = first; i < frames.size(); ++i) {
        const auto begin = static_cast<std::size_t>(frames[i].offset);
        const auto bytes = static_cast<std::size_t>(frames[i].header.bytes);
        const auto samples = decoder.decode(frames[i], fixture::part(data, begin, begin + bytes));
        pass.samples.insert(pass.samples.end(), samples.begin(), samples.end());
        pass.mostFrames = std::max(pass.mostFrames, decoder.framesOfDecoder());
    }
    pass.silenced = decoder.silencedFrames();
    return pass;
}

/// A stream of `times` equal parts with at least 40 frames each.
Data song(const std::string& options, int times) {
    const Data& once = encoded(44100, 2, options, 1);
    Data data;
    for (int i = 0; i < times; ++i) {
        data = data + once;
    }
    return data;
}

TEST(RenewedDecoderTest, ReturnsTheSameSamplesAsASingleDecoder) {
    for (const char* options : {"-b 128", "-t -V 4", "-b 8 --resample 24", "-t -m m -b 32"}) {
        const Data data = song(options, 9);
        const Pass single = decodeFrom(data, RenewedDecoder::never);
        const Pass renewed = decodeFrom(data, shortPeriod);
        EXPECT_EQ(fixture::difference(renewed.samples, single.samples), std::nullopt) << options;
        EXPECT_EQ(renewed.silenced, single.silenced) << options;
        EXPECT_EQ(single.mostFrames, static_cast<std::int64_t>(fixture::framesOf(data).size()));
    }
}

TEST(RenewedDecoderTest, NoDecoderReceivesMoreFramesThanThePeriodPlusTheLead) {
    EXPECT_LE(decodeFrom(song("-b 128", 30), shortPeriod).mostFrames,
              shortPeriod + RenewedDecoder::lead);
}

/// Changes a frame (MPEG-1, stereo, no checksum) so that libmpg123 stops decoding it after its
/// first granule: the second granule has less data than its scale factors need. This stop affects
/// the lowest bit of later samples of the same decoder. A frame that libmpg123 rejects as a whole
/// would not affect later samples.
void breakFrame(Data& data, std::size_t number) {
    const auto side = static_cast<std::size_t>(fixture::framesOf(data)[number].offset) + 4;
    const auto setBits = [&](std::size_t first, std::size_t count, unsigned value) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t bit = first + i;
            const auto mask = static_cast<std::uint8_t>(0x80 >> bit % 8);
            std::uint8_t& byte = data[side + bit / 8];
            const bool set = (value >> (count - 1 - i) & 1) != 0;
            byte = static_cast<std::uint8_t>(set ? byte | mask : byte & ~mask);
        }
    };
    constexpr std::size_t share = 12; // the first of the bits that select shared scale factors
    constexpr std::size_t granule = 20 + 2 * 59; // the first bit of the second granule
    setBits(share, 8, 0);
    setBits(granule, 12, 1);       // the number of bits of data
    setBits(granule + 29, 4, 0xF); // the largest scale factors
}

TEST(RenewedDecoderTest, ReturnsTheSameSamplesAfterBrokenFramesWhereverTheDecodingBegan) {
    // In the passes from frames 0 and 200, a second decoder begins to decode at frame 296 (the
    // period minus the lead) and replaces the first decoder at frame 576. The pass from frame 304
    // begins too late for a replacement, so its only decoder decodes all its frames.
    constexpr std::int64_t period = 576;
    constexpr std::size_t samplesBeforeReplacement = period * 2304;
    Data data = song("-b 128", 16);
    for (const std::size_t number : {100U, 400U, 580U}) {
        breakFrame(data, number);
    }
    const Samples whole = decodeFrom(data, period).samples;
    const Samples single = decodeFrom(data, RenewedDecoder::never).samples;
    EXPECT_NE(fixture::difference(whole, single), std::nullopt)
        << "unsuitable test data: no decoder was replaced, or no frame is broken";
    // Only the pass from frame 0 contains the broken frame 100, which affects the samples until
    // the decoder is replaced at frame 576. All passes contain the broken frames 400 and 580.
    for (const std::size_t first : {200U, 304U}) {
        const Samples rest = decodeFrom(data, period, first).samples;
        EXPECT_TRUE(std::equal(
            whole.begin() + samplesBeforeReplacement, whole.end(),
            rest.begin() + static_cast<std::ptrdiff_t>(samplesBeforeReplacement - first * 2304),
            rest.end()))
            << "the pass that begins at frame " << first;
    }
}

} // namespace
} // namespace sonarith::mp3
