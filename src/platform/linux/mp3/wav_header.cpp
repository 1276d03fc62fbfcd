// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/wav_header.h"

#include "platform/linux/sound/wav_header.h"

namespace sonarith::mp3 {

std::vector<std::uint8_t> plainWavHeader(const PcmFormat& format, std::int64_t sampleBytes) {
    return sound::wavHeader(sound::WavForm::plain, {format.rate, format.channels}, sampleBytes);
}

std::vector<std::uint8_t> rf64Header(const PcmFormat& format, std::int64_t sampleBytes) {
    return sound::wavHeader(sound::WavForm::rf64, {format.rate, format.channels}, sampleBytes);
}

} // namespace sonarith::mp3
