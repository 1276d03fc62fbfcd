// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/wav_header.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"
#include "platform/linux/sound/wav_writer.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::operator+;

class WavHeaderTest : public testing::Test {
  protected:
    /// The format that libsndfile reads from a file with this header and `bytes` bytes of samples.
    SF_INFO read(const Data& header, std::size_t bytes) {
        fixture::writeFile(folder / "a.wav", header + Data(bytes, 1));
        SF_INFO info{};
        SNDFILE* file = sf_open((folder / "a.wav").c_str(), SFM_READ, &info);
        EXPECT_NE(file, nullptr);
        sf_close(file);
        return info;
    }
    fakes::TempFolder folder;
};

TEST_F(WavHeaderTest, LibsndfileReadsThePlainHeaderAndTheRf64Header) {
    for (const PcmFormat& format : {PcmFormat{44100, 2}, PcmFormat{8000, 1}, PcmFormat{48000, 2}}) {
        const SF_INFO plain = read(plainWavHeader(format, 4000), 4000);
        EXPECT_EQ(plain.samplerate, format.rate);
        EXPECT_EQ(plain.channels, format.channels);
        EXPECT_EQ(plain.frames, 4000 / 2 / format.channels);
        EXPECT_EQ(plain.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
        const SF_INFO large = read(rf64Header(format, 4000), 4000);
        EXPECT_EQ(large.samplerate, format.rate);
        EXPECT_EQ(large.channels, format.channels);
        EXPECT_EQ(large.frames, 4000 / 2 / format.channels);
        EXPECT_EQ(large.format, SF_FORMAT_RF64 | SF_FORMAT_PCM_16);
    }
}

TEST_F(WavHeaderTest, ThePlainHeaderHasTheExpectedLengthAndCanStateTheLargestSize) {
    const Data header = plainWavHeader({44100, 2}, sound::maxWavSampleBytes);
    EXPECT_EQ(header.size(), static_cast<std::size_t>(sound::wavHeaderBytes));
    EXPECT_EQ(fixture::part(header, 4, 8), Data(4, 0xFF))
        << "the size field must contain the largest possible value";
}

} // namespace
} // namespace sonarith::mp3
