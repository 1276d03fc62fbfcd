// SPDX-License-Identifier: GPL-3.0-or-later
// MP3 streams for tests, made by the LAME encoder from a fixed sound or written by hand, and the
// roads over them as functions. Only tests include this.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include "platform/linux/late/sndfile.h"
#include "platform/linux/mp3/frame_sequence.h"
#include "platform/linux/mp3/mp3_index.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/mp3/segment_decoder.h"
#include "platform/linux/mp3/wav_header.h"
#include "support/temp_folder.h"

namespace sonarith::mp3::fixture {

using Data = std::vector<std::uint8_t>;
using Samples = std::vector<std::int16_t>;

inline Data operator+(Data first, const Data& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

inline Data text(const std::string& letters) {
    return {letters.begin(), letters.end()};
}

inline Data part(const Data& data, std::size_t begin, std::size_t end) {
    return {data.begin() + static_cast<std::ptrdiff_t>(begin),
            data.begin() + static_cast<std::ptrdiff_t>(std::min(end, data.size()))};
}

inline Data junk(std::size_t bytes, unsigned seed = 1) {
    std::mt19937 random(seed);
    Data data(bytes);
    std::generate(data.begin(), data.end(), [&] { return static_cast<std::uint8_t>(random()); });
    return data;
}

inline void writeFile(const std::filesystem::path& path, const Data& data) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data.data()),
               static_cast<std::streamsize>(data.size()));
}

inline Data readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Runs a program and waits for it; a failure of it fails the test.
inline void run(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    const int error =
        ::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ);
    if (error == 0) {
        ::waitpid(child, &status, 0);
    }
    EXPECT_TRUE(error == 0 && status == 0) << words[0] << " is missing or failed";
}

/// Noise that swells, pure tones, clicks, silence, and noise again.
inline Samples sound(int rate, int channels, double seconds) {
    std::mt19937 random(7);
    const auto frames = static_cast<int>(rate * seconds);
    Samples samples;
    for (int i = 0; i < frames; ++i) {
        const double at = static_cast<double>(i) / frames;
        for (int channel = 0; channel < channels; ++channel) {
            const double noise = static_cast<double>(random()) / 4294967296.0 - 0.5;
            const double tone = std::sin(i * (0.02 + 0.05 * channel + at * 0.3));
            double value = at < 0.4 ? noise * at : at < 0.6 ? tone * 0.7 : at < 0.75 ? 0 : noise;
            if (i % 5000 == 17 && at < 0.6) {
                value = 0.95;
            }
            samples.push_back(static_cast<std::int16_t>(value * 32000));
        }
    }
    return samples;
}

/// What the encoder makes of the sound; each is made once in a process.
inline const Data& encoded(int rate, int channels, const std::string& options, double seconds = 4) {
    static std::map<std::string, Data> made;
    const std::string key = std::to_string(rate) + " " + std::to_string(channels) + " " + options +
                            " " + std::to_string(seconds);
    Data& data = made[key];
    if (data.empty()) {
        const fakes::TempFolder folder;
        const Samples samples = sound(rate, channels, seconds);
        const auto bytes = static_cast<std::int64_t>(samples.size() * 2);
        Data wav = plainWavHeader({rate, channels}, bytes);
        wav.resize(wav.size() + static_cast<std::size_t>(bytes));
        std::memcpy(&wav[44], samples.data(), static_cast<std::size_t>(bytes));
        writeFile(folder / "in.wav", wav);
        std::vector<std::string> words{"lame", "--quiet"};
        std::istringstream in(options);
        words.insert(words.end(), std::istream_iterator<std::string>(in), {});
        words.push_back((folder / "in.wav").string());
        words.push_back((folder / "out.mp3").string());
        run(words);
        data = readFile(folder / "out.mp3");
        EXPECT_FALSE(data.empty());
    }
    return data;
}

/// The stream that most tests take: 128 kbit/s, with an information frame; 155 frames.
inline const Data& ordinary() {
    return encoded(44100, 2, "-b 128");
}

/// Frames of Layer I, 448 kbit/s and 44100 Hz stereo, with noise in them.
inline Data layer1(int frames) {
    Data data;
    std::mt19937 random(3);
    for (int i = 0; i < frames; ++i) {
        const Data header{0xFF, 0xFF, 0xE0, 0x00};
        Data frame = header + Data(32, 0x33); // four bits for each sample of each subband
        while (frame.size() < 484) {
            frame.push_back(static_cast<std::uint8_t>(random() & 0x77));
        }
        data = data + frame;
    }
    return data;
}

/// Frames of Layer II, 192 kbit/s and 44100 Hz stereo, with noise in the lowest subband.
inline Data layer2(int frames) {
    Data data;
    for (int i = 0; i < frames; ++i) {
        const Data header{0xFF, 0xFD, 0xA0, 0x00, 0x11};
        data = data + header + Data(21, 0) + junk(600, static_cast<unsigned>(i));
    }
    return data;
}

inline std::vector<NumberedFrame> framesOf(const Data& data) {
    const MemorySource source(data);
    FrameSequence frames(source);
    std::vector<NumberedFrame> found;
    while (const auto frame = frames.next()) {
        found.push_back(*frame);
    }
    return found;
}

/// All of a stream's sound, and what was said about it.
struct Heard {
    PcmFormat format{0, 0};
    Samples samples;
    DecodeCount count;
    bool broken = false; ///< the segments refused it
};

inline Heard sequentially(const Data& data) {
    const MemorySource source(data);
    const Result<std::unique_ptr<PcmReader>> reader = openPcmReader(source);
    Heard heard;
    EXPECT_TRUE(reader.ok());
    if (reader.ok() && reader.value()) {
        heard.format = reader.value()->format();
        for (auto part = reader.value()->next(); !part.empty(); part = reader.value()->next()) {
            heard.samples.insert(heard.samples.end(), part.begin(), part.end());
        }
        heard.count = reader.value()->count();
    }
    return heard;
}

/// The same with a fresh decoder for each segment. Precondition: Layer III, no free format.
inline Heard inSegments(const Data& data, std::int64_t framesPerSegment) {
    const MemorySource source(data);
    const FrameSequence frames(source);
    Heard heard;
    if (!frames.format()) {
        return heard;
    }
    heard.format = {frames.format()->rate, frames.format()->channels};
    SegmentIndex index(frames, framesPerSegment);
    while (const std::optional<Segment> segment = index.next()) {
        const Result<SegmentEnd> end = decodeSegment(
            source, *frames.format(), frames.trim(), *segment,
            [&](std::int64_t, std::int64_t first, std::span<const std::int16_t> samples) {
                EXPECT_EQ(static_cast<std::size_t>(first * heard.format.channels),
                          heard.samples.size());
                heard.samples.insert(heard.samples.end(), samples.begin(), samples.end());
                return Result<bool>(true);
            });
        EXPECT_TRUE(end.ok());
        if (end.value() == SegmentEnd::broken) {
            heard.broken = true;
            break;
        }
    }
    heard.count = index.count();
    return heard;
}

inline Heard readWav(const std::filesystem::path& path) {
    Heard heard;
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    EXPECT_NE(file, nullptr) << path;
    if (file != nullptr) {
        EXPECT_EQ(info.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_16);
        heard.format = {info.samplerate, info.channels};
        heard.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
        EXPECT_EQ(sf_readf_short(file, heard.samples.data(), info.frames), info.frames);
        sf_close(file);
    }
    return heard;
}

/// What the decoding library's own tool makes of it.
inline Heard byTool(const Data& data) {
    const fakes::TempFolder folder;
    writeFile(folder / "in.mp3", data);
    run({"mpg123", "-q", "-w", (folder / "out.wav").string(), (folder / "in.mp3").string()});
    return readWav(folder / "out.wav");
}

/// The first sample in which they differ; empty if they are the same.
inline std::optional<std::size_t> difference(const Samples& first, const Samples& second) {
    const auto [a, b] = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
    return a == first.end() && b == second.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(a - first.begin()));
}

/// A path that nothing changes.
inline std::filesystem::path asItIs(const std::string& path) {
    return path;
}

} // namespace sonarith::mp3::fixture
