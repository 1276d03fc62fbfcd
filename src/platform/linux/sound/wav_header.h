// SPDX-License-Identifier: GPL-3.0-or-later
// The header of a WAV file of 16-bit samples, in both forms. It writes nothing: the samples after
// it are written in order by the sound card's recorder, or by many threads at once.
#pragma once

#include <cstdint>
#include <vector>

namespace sonarith::sound {

/// Plain WAV holds up to 4 GiB and every program reads it; RF64 (EBU Tech 3306) is for more.
enum class WavForm { plain, rf64 };

struct WavFormat {
    int rate = 44100;
    int channels = 2;
};

/// The plain form's header: RIFF, "fmt " of 16 bytes, "data".
inline constexpr std::int64_t wavHeaderBytes = 44;
/// The most sample bytes of the plain form: its sizes are 32-bit, and the outer one includes the
/// header except its first 8 bytes.
inline constexpr std::int64_t maxWavSampleBytes = 0xFFFFFFFF - (wavHeaderBytes - 8);

/// For `sampleBytes` bytes of samples; its length does not depend on their number.
[[nodiscard]] std::vector<std::uint8_t> wavHeader(WavForm form, const WavFormat& format,
                                                  std::int64_t sampleBytes);

} // namespace sonarith::sound
