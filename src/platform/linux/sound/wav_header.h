// SPDX-License-Identifier: GPL-3.0-or-later
// The header of a WAV file of 16-bit samples, in both forms. It writes nothing: the samples behind
// it come from the sound card in order, or from many threads at once.
#pragma once

#include <cstdint>
#include <vector>

namespace sonarith::sound {

/// Plain WAV holds up to 4 GiB and is read by everything; RF64 (EBU Tech 3306) is for more.
enum class WavForm { plain, rf64 };

struct WavFormat {
    int rate = 44100;
    int channels = 2;
};

/// The plain form's header: RIFF, "fmt " of 16 bytes, "data".
inline constexpr std::int64_t wavHeaderBytes = 44;
/// The most sample bytes of the plain form: its sizes are 32-bit, and the outer one counts the
/// header but for its first 8 bytes.
inline constexpr std::int64_t maxWavSampleBytes = 0xFFFFFFFF - (wavHeaderBytes - 8);

/// For `sampleBytes` bytes of samples; of any number it has the same length.
[[nodiscard]] std::vector<std::uint8_t> wavHeader(WavForm form, const WavFormat& format,
                                                  std::int64_t sampleBytes);

} // namespace sonarith::sound
