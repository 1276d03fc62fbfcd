// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the header of a WAV file of 16-bit samples, as plain WAV or RF64. It writes no file,
// because its callers write the samples in different ways: the sound card's recorder in order, the
// MP3 decoding on many threads at once.
#pragma once

#include <cstdint>
#include <vector>

namespace sonarith::sound {

/// Plain WAV is limited to 4 GiB, and every program reads it; RF64 (EBU Tech 3306) is for larger
/// files.
enum class WavForm { plain, rf64 };

struct WavFormat {
    int rate = 44100;
    int channels = 2;
};

/// The length of the plain form's header: RIFF, a "fmt " chunk of 16 bytes, "data".
inline constexpr std::int64_t wavHeaderBytes = 44;
/// The most sample bytes of the plain form: its sizes have 32 bits, and the size of the RIFF chunk
/// includes the header except its first 8 bytes.
inline constexpr std::int64_t maxWavSampleBytes = 0xFFFFFFFF - (wavHeaderBytes - 8);

/// The header for `sampleBytes` bytes of samples; its length does not depend on this number.
[[nodiscard]] std::vector<std::uint8_t> wavHeader(WavForm form, const WavFormat& format,
                                                  std::int64_t sampleBytes);

} // namespace sonarith::sound
