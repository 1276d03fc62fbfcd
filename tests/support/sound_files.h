// SPDX-License-Identifier: GPL-3.0-or-later
// Creates sound files for tests and benchmarks: WAV files with given samples, MP3 files that LAME
// encodes from WAV files, and long files that repeat a short file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/sound/wav_header.h"

namespace sonarith::test {

/// Runs a program (found through PATH) and waits for it; returns whether it succeeded.
[[nodiscard]] inline bool runProgram(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    if (::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) {
        return false;
    }
    ::waitpid(child, &status, 0);
    return status == 0;
}

[[nodiscard]] inline bool writeBytes(const std::filesystem::path& path,
                                     std::span<const std::uint8_t> data) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(data.data()),
              static_cast<std::streamsize>(data.size()));
    return static_cast<bool>(out.flush());
}

[[nodiscard]] inline std::vector<std::uint8_t> readBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Writes a WAV file. `samples` are interleaved.
[[nodiscard]] inline bool writeWav(const std::filesystem::path& path,
                                   const sound::WavFormat& format,
                                   std::span<const std::int16_t> samples) {
    const auto bytes = static_cast<std::int64_t>(samples.size_bytes());
    std::vector<std::uint8_t> data = sound::wavHeader(sound::WavForm::plain, format, bytes);
    const auto* begin = reinterpret_cast<const std::uint8_t*>(samples.data());
    data.insert(data.end(), begin, begin + bytes);
    return writeBytes(path, data);
}

/// Encodes a WAV file. `options` are LAME's options, separated by blanks.
[[nodiscard]] inline bool encodeMp3(const std::filesystem::path& wav, const std::string& options,
                                    const std::filesystem::path& mp3) {
    std::vector<std::string> words{"lame", "--quiet"};
    std::istringstream in(options);
    words.insert(words.end(), std::istream_iterator<std::string>(in), {});
    words.push_back(wav.string());
    words.push_back(mp3.string());
    return runProgram(std::move(words));
}

/// Writes `times` copies of `data`, one after the other, to a file. If `data` is an MP3 file, it
/// must have no information frame (LAME's option "-t" omits this frame).
[[nodiscard]] inline bool writeRepeated(const std::filesystem::path& path,
                                        std::span<const std::uint8_t> data, int times) {
    std::ofstream out(path, std::ios::binary);
    for (int i = 0; i < times; ++i) {
        out.write(reinterpret_cast<const char*>(data.data()),
                  static_cast<std::streamsize>(data.size()));
    }
    return static_cast<bool>(out.flush());
}

} // namespace sonarith::test
