// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the header of a 16-bit WAV, in the plain and in the RF64 form. The samples are written
// elsewhere, by many threads; libsndfile cannot be used, because it writes a header only together
// with sequential samples.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

/// The parts of the header: RF64, "ds64" of 28 bytes, "fmt " of 16 bytes, "data".
inline constexpr std::int64_t rf64HeaderBytes = 80;

/// The plain form: RIFF, "fmt " of 16 bytes, "data". Its length is sound::wavHeaderBytes.
[[nodiscard]] std::vector<std::uint8_t> plainWavHeader(const PcmFormat& format,
                                                       std::int64_t sampleBytes);
/// The RF64 form (EBU Tech 3306), for more than 4 GiB. Its length is rf64HeaderBytes.
[[nodiscard]] std::vector<std::uint8_t> rf64Header(const PcmFormat& format,
                                                   std::int64_t sampleBytes);

} // namespace sonarith::mp3
