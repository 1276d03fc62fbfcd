// SPDX-License-Identifier: GPL-3.0-or-later
// Checks a saved recording: the header of the WAV file must match its size, and the file must
// contain the recorded frames.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "platform/linux/sound/sample_source.h"
#include "platform/linux/sound/wav_header.h"
#include "support/file_content.h"
#include "support/sound_matchers.h"
#include "support/wav_samples.h"

namespace sonarith::test {

inline std::vector<std::int16_t> interleaved(const std::vector<sound::StereoFrame>& frames) {
    std::vector<std::int16_t> samples;
    for (const sound::StereoFrame& frame : frames) {
        samples.push_back(frame.left);
        samples.push_back(frame.right);
    }
    return samples;
}

/// The 32-bit number at `offset` of a file's content.
inline std::int64_t numberAt(const std::string& content, std::size_t offset) {
    std::uint32_t number = 0;
    std::memcpy(&number, content.data() + offset, sizeof number);
    return number;
}

/// Expects that the file contains the header of a plain WAV file (WavForm::plain) and then exactly
/// `frames`, in stereo.
inline void expectPlainWav(const std::filesystem::path& path,
                           const std::vector<sound::StereoFrame>& frames) {
    const std::string content = contentOf(path);
    const auto size = static_cast<std::int64_t>(content.size());
    ASSERT_EQ(size, sound::wavHeaderBytes + static_cast<std::int64_t>(frames.size()) * 4) << path;
    EXPECT_EQ(content.substr(0, 4), "RIFF");
    EXPECT_EQ(numberAt(content, 4), size - 8);
    EXPECT_EQ(numberAt(content, 40), size - sound::wavHeaderBytes);
    const std::optional<fakes::WavSamples> wav = fakes::readWav(path);
    ASSERT_TRUE(wav) << path;
    EXPECT_EQ(wav->channels, 2);
    EXPECT_EQ(wav->rate, sound::frameRate);
    EXPECT_THAT(wav->samples, fakes::IsSound(interleaved(frames)));
}

} // namespace sonarith::test
