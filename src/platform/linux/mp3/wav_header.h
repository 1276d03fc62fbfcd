// SPDX-License-Identifier: GPL-3.0-or-later
// The header of a 16-bit WAV whose samples are written elsewhere, in the plain and in the RF64
// form. libsndfile writes a header only together with sequential samples, and these are written by
// many threads.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

/// RIFF, "ds64" of 28 bytes, "fmt " of 16 bytes, "data".
inline constexpr std::int64_t rf64HeaderBytes = 80;

/// Plain form (RIFF, "fmt " of 16 bytes, "data"): sound::wavHeaderBytes.
[[nodiscard]] std::vector<std::uint8_t> plainWavHeader(const PcmFormat& format,
                                                       std::int64_t sampleBytes);
/// For more than 4 GiB: EBU Tech 3306. Its length is rf64HeaderBytes.
[[nodiscard]] std::vector<std::uint8_t> rf64Header(const PcmFormat& format,
                                                   std::int64_t sampleBytes);

} // namespace sonarith::mp3
