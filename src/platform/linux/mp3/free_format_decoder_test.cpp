// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/free_format_decoder.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::DecodedSound;
using fixture::encoded;
using fixture::Samples;
using fixture::operator+;

TEST(FreeFormatDecoderTest, DecodesToTheSameSamplesAsTheToolMpg123) {
    for (const char* options :
         {"--freeformat -b 400", "-t --freeformat -b 400", "-t --freeformat -b 37 --resample 32"}) {
        const Data& data = encoded(44100, 2, options, 1);
        const DecodedSound ours = fixture::sequentially(data);
        const DecodedSound tools = fixture::byTool(data);
        EXPECT_EQ(ours.format, tools.format) << options;
        EXPECT_GT(ours.samples.size(), 32000U * 2 - 1) << options;
        EXPECT_EQ(fixture::difference(ours.samples, tools.samples), std::nullopt) << options;
    }
}

TEST(FreeFormatDecoderTest, DecodesAfterJunk) {
    const Data& data = encoded(44100, 2, "-t --freeformat -b 400");
    EXPECT_EQ(fixture::difference(fixture::sequentially(fixture::junk(4096) + data).samples,
                                  fixture::sequentially(data).samples),
              std::nullopt);
}

TEST(FreeFormatDecoderTest, DropsFramesOfAnotherFormat) {
    const DecodedSound decoded = fixture::sequentially(encoded(44100, 2, "-t --freeformat -b 400") +
                                                       encoded(48000, 2, "-t -b 128"));
    EXPECT_EQ(decoded.format, (PcmFormat{44100, 2}));
    EXPECT_GT(decoded.count.loss.framesDropped, 100);
    EXPECT_LE(decoded.samples.size(), 156U * 2304);
}

TEST(FreeFormatDecoderTest, EndsWithAFailureIfReadingFails) {
    const fakes::TempFolder folder;
    fixture::writeFile(folder / "a", encoded(44100, 2, "-t --freeformat -b 400"));
    const std::atomic<bool> stop = false;
    const auto source = FileSource::open(folder / "a", stop);
    const auto reader = openPcmReader(*source.value(), surveyStream(*source.value()));
    ASSERT_TRUE(reader.ok() && reader.value());
    std::filesystem::resize_file(folder / "a", 60'000);
    while (!reader.value()->next().empty()) {
    }
    EXPECT_TRUE(reader.value()->failure());
}

Samples decodeWith(const Data& data, std::int64_t patience, int& renewals) {
    const MemorySource source(data);
    const auto decoder = std::move(FreeFormatDecoder::create(source, 0, patience).value());
    Samples samples;
    for (auto part = decoder->next(); !part.empty(); part = decoder->next()) {
        samples.insert(samples.end(), part.begin(), part.end());
    }
    EXPECT_EQ(decoder->count().framesDecoded * 2304, static_cast<std::int64_t>(samples.size()));
    renewals = decoder->renewals();
    return samples;
}

TEST(FreeFormatDecoderTest, ReplacingItsDecoderChangesTheSamplesOnlyByRounding) {
    // The sound contains silence, where a decoder can be replaced.
    const Data& data = encoded(44100, 2, "-t --nores --freeformat -b 400");
    int renewals = 0;
    const Samples one = decodeWith(data, FreeFormatDecoder::usualPatience, renewals);
    EXPECT_EQ(renewals, 0);
    const Samples several = decodeWith(data, 100, renewals);
    EXPECT_GT(renewals, 1);
    ASSERT_EQ(several.size(), one.size());
    for (std::size_t i = 0; i < one.size(); ++i) { // the rounding may differ
        ASSERT_NEAR(several[i], one[i], 1) << i;
    }
}

TEST(FreeFormatDecoderTest, ReplacesItsDecoderRepeatedlyInAStreamOfUndecodableFrames) {
    Data frame{0xFF, 0xFB, 0x00, 0x64};
    frame.resize(800, 0xFE); // the frame states more spectral values than a frame can have
    Data data;
    for (int i = 0; i < 200; ++i) {
        data = data + frame;
    }
    int renewals = 0;
    EXPECT_EQ(decodeWith(data, 1000, renewals).size(), 200U * 2304);
    // The n-th frame of a decoder adds n to a sum. When the sum reaches the patience (1000 here),
    // the decoder is replaced. So a decoder decodes about 45 frames: 1 + 2 + ... + 45 = 1035.
    EXPECT_GE(renewals, 3);
    EXPECT_LE(renewals, 5);
}

} // namespace
} // namespace sonarith::mp3
