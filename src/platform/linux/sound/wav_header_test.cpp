// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wav_header.h"

#include <gmock/gmock.h>

#include <fstream>

#include "platform/linux/late/sndfile.h"
#include "support/temp_folder.h"

namespace sonarith::sound {
namespace {

/// The properties that libsndfile reads from a file with this header and `bytes` bytes of samples.
SF_INFO readBack(const std::vector<std::uint8_t>& header, std::size_t bytes) {
    const fakes::TempFolder folder;
    std::ofstream(folder / "a.wav", std::ios::binary)
        << std::string(header.begin(), header.end()) << std::string(bytes, 1);
    SF_INFO info{};
    SNDFILE* file = sf_open((folder / "a.wav").c_str(), SFM_READ, &info);
    EXPECT_NE(file, nullptr);
    sf_close(file);
    return info;
}

TEST(WavHeader, IsReadByLibsndfileAsPlainWavAndAsRf64) {
    for (const WavFormat& format : {WavFormat{44100, 2}, WavFormat{8000, 1}, WavFormat{48000, 2}}) {
        for (const WavForm form : {WavForm::plain, WavForm::rf64}) {
            const SF_INFO info = readBack(wavHeader(form, format, 4000), 4000);
            EXPECT_EQ(info.samplerate, format.rate);
            EXPECT_EQ(info.channels, format.channels);
            EXPECT_EQ(info.frames, 4000 / 2 / format.channels);
            EXPECT_EQ(info.format,
                      (form == WavForm::plain ? SF_FORMAT_WAV : SF_FORMAT_RF64) | SF_FORMAT_PCM_16);
        }
    }
}

TEST(WavHeader, ContainsTheLargest32BitSizeForTheLongestPlainWav) {
    const std::vector<std::uint8_t> header = wavHeader(WavForm::plain, {}, maxWavSampleBytes);
    ASSERT_EQ(static_cast<std::int64_t>(header.size()), wavHeaderBytes);
    EXPECT_EQ(std::vector(header.begin() + 4, header.begin() + 8),
              std::vector<std::uint8_t>(4, 0xFF))
        << "the size must be the largest that the field can hold";
}

} // namespace
} // namespace sonarith::sound
