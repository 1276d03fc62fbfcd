// SPDX-License-Identifier: GPL-3.0-or-later
// Reads all samples of a 16-bit WAV file with libsndfile. For small files only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/linux/late/sndfile.h"

namespace sonarith::fakes {

struct WavSamples {
    int channels = 0;
    int rate = 0;
    std::vector<std::int16_t> samples; ///< interleaved
};

/// Returns nothing if libsndfile cannot read the file or if its samples do not have 16 bits.
inline std::optional<WavSamples> readWav(const std::filesystem::path& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file) {
        return std::nullopt;
    }
    WavSamples wav{info.channels, info.samplerate, {}};
    wav.samples.resize(static_cast<std::size_t>(info.frames) *
                       static_cast<std::size_t>(info.channels));
    const sf_count_t read = sf_readf_short(file, wav.samples.data(), info.frames);
    sf_close(file);
    if ((info.format & SF_FORMAT_SUBMASK) != SF_FORMAT_PCM_16 || read != info.frames) {
        return std::nullopt;
    }
    return wav;
}

} // namespace sonarith::fakes
