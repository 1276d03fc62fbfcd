// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the header of a 16-bit WAV, in the plain or the RF64 form. The samples are written
// elsewhere, by many threads; libsndfile cannot be used, because it writes a header only together
// with sequential samples.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

/// The RF64 form's header: 12 bytes for "RF64", its size and "WAVE"; then "ds64" of 8 + 28 bytes,
/// "fmt " of 8 + 16 bytes, and the first 8 bytes of "data".
inline constexpr std::int64_t rf64HeaderBytes = 80;

/// The plain form's header: RIFF, "fmt " of 8 + 16 bytes, "data"; its length is
/// sound::wavHeaderBytes. `sampleBytes` is the size of all samples together.
[[nodiscard]] std::vector<std::uint8_t> plainWavHeader(const PcmFormat& format,
                                                       std::int64_t sampleBytes);
/// The header of the RF64 form (EBU Tech 3306), which is for files of more than 4 GiB. The header's
/// length is rf64HeaderBytes. `sampleBytes` is the size of all samples together.
[[nodiscard]] std::vector<std::uint8_t> rf64Header(const PcmFormat& format,
                                                   std::int64_t sampleBytes);

} // namespace sonarith::mp3
