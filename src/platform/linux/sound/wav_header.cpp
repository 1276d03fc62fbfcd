// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wav_header.h"

#include <string_view>
#include <utility>

namespace sonarith::sound {

namespace {

constexpr int sampleWidth = 2; ///< bytes

class HeaderBytes {
  public:
    void sign(std::string_view letters) {
        bytes_.insert(bytes_.end(), letters.begin(), letters.end());
    }
    void number(std::int64_t value, int bytes) { // little endian
        for (int i = 0; i < bytes; ++i) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    }
    void format(const WavFormat& format) {
        constexpr int plainSamples = 1;
        const int frameBytes = format.channels * sampleWidth;
        sign("fmt ");
        number(16, 4);
        number(plainSamples, 2);
        number(format.channels, 2);
        number(format.rate, 4);
        number(static_cast<std::int64_t>(format.rate) * frameBytes, 4);
        number(frameBytes, 2);
        number(8 * sampleWidth, 2);
    }
    [[nodiscard]] std::vector<std::uint8_t> take() { return std::move(bytes_); }

  private:
    std::vector<std::uint8_t> bytes_;
};

constexpr std::int64_t inOtherChunk = 0xFFFFFFFF; ///< the size is in "ds64"

std::vector<std::uint8_t> plainHeader(const WavFormat& format, std::int64_t sampleBytes) {
    constexpr std::int64_t bytesAfterSize = wavHeaderBytes - 8;
    HeaderBytes header;
    header.sign("RIFF");
    header.number(bytesAfterSize + sampleBytes, 4);
    header.sign("WAVE");
    header.format(format);
    header.sign("data");
    header.number(sampleBytes, 4);
    return header.take();
}

std::vector<std::uint8_t> rf64Header(const WavFormat& format, std::int64_t sampleBytes) {
    constexpr std::int64_t bytesAfterSize = 72;
    HeaderBytes header;
    header.sign("RF64");
    header.number(inOtherChunk, 4);
    header.sign("WAVE");
    header.sign("ds64");
    header.number(28, 4);
    header.number(bytesAfterSize + sampleBytes, 8);
    header.number(sampleBytes, 8);
    header.number(sampleBytes / (format.channels * sampleWidth), 8);
    header.number(0, 4); // the number of further sizes
    header.format(format);
    header.sign("data");
    header.number(inOtherChunk, 4);
    return header.take();
}

} // namespace

std::vector<std::uint8_t> wavHeader(WavForm form, const WavFormat& format,
                                    std::int64_t sampleBytes) {
    return form == WavForm::plain ? plainHeader(format, sampleBytes)
                                  : rf64Header(format, sampleBytes);
}

} // namespace sonarith::sound
