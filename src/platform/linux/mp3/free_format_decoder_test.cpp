// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/free_format_decoder.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::encoded;
using fixture::Heard;
using fixture::operator+;

TEST(FreeFormatDecoderTest, DecodesToTheSamplesOfTheLibrarysOwnTool) {
    for (const char* options :
         {"--freeformat -b 400", "-t --freeformat -b 400", "-t --freeformat -b 37 --resample 32"}) {
        const Data& data = encoded(44100, 2, options);
        const Heard ours = fixture::sequentially(data);
        const Heard tools = fixture::byTool(data);
        EXPECT_EQ(ours.format, tools.format) << options;
        EXPECT_GT(ours.samples.size(), 4U * 32000 * 2 - 1) << options;
        EXPECT_EQ(fixture::difference(ours.samples, tools.samples), std::nullopt) << options;
    }
}

TEST(FreeFormatDecoderTest, DecodesBehindJunk) {
    const Data& data = encoded(44100, 2, "-t --freeformat -b 400");
    EXPECT_EQ(fixture::difference(fixture::sequentially(fixture::junk(4096) + data).samples,
                                  fixture::sequentially(data).samples),
              std::nullopt);
}

TEST(FreeFormatDecoderTest, DropsFramesOfAnotherFormat) {
    const Heard heard = fixture::sequentially(encoded(44100, 2, "-t --freeformat -b 400") +
                                              encoded(48000, 2, "-t -b 128"));
    EXPECT_EQ(heard.format, (PcmFormat{44100, 2}));
    EXPECT_GT(heard.count.loss.framesDropped, 100);
    EXPECT_LE(heard.samples.size(), 156U * 2304);
}

TEST(FreeFormatDecoderTest, EndsWithAFailureWhereReadingFails) {
    const fakes::TempFolder folder;
    fixture::writeFile(folder / "a", encoded(44100, 2, "-t --freeformat -b 400"));
    const std::atomic<bool> stop = false;
    const auto source = FileSource::open(folder / "a", stop);
    const auto reader = openPcmReader(*source.value());
    ASSERT_TRUE(reader.ok() && reader.value());
    std::filesystem::resize_file(folder / "a", 60'000);
    while (!reader.value()->next().empty()) {
    }
    EXPECT_TRUE(reader.value()->failure());
}

} // namespace
} // namespace sonarith::mp3
