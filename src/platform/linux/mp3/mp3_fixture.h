// SPDX-License-Identifier: GPL-3.0-or-later
// Provides MP3 streams for tests, created by the LAME encoder from a fixed sound or written by
// hand, and functions that decode them. Only tests include this.
#pragma once

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/late/sndfile.h"
#include "platform/linux/mp3/frame_sequence.h"
#include "platform/linux/mp3/mp3_index.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/mp3/segment_decoder.h"
#include "platform/linux/mp3/stream_survey.h"
#include "support/sound_files.h"
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
    EXPECT_TRUE(test::writeBytes(path, data));
}

inline Data readFile(const std::filesystem::path& path) {
    return test::readBytes(path);
}

/// A sound of swelling noise, then a rising sine tone in each channel (with clicks in both parts),
/// then silence, and noise again. The sound for each set of arguments is created once per process.
/// The loop is kept simple, since with the sanitizers it takes a third of the time of many tests.
inline const Samples& sound(int rate, int channels, double seconds) {
    static std::map<std::tuple<int, int, double>, Samples> made;
    Samples& samples = made[{rate, channels, seconds}];
    if (!samples.empty()) {
        return samples;
    }
    const auto frames = static_cast<int>(rate * seconds);
    samples.resize(static_cast<std::size_t>(frames) * static_cast<std::size_t>(channels));
    std::int16_t* to = samples.data();
    std::uint32_t random = 7;
    for (int i = 0; i < frames; ++i) {
        const double at = static_cast<double>(i) / frames;
        for (int channel = 0; channel < channels; ++channel) {
            random = random * 1664525 + 1013904223; // Numerical Recipes' generator
            const double noise = random / 4294967296.0 - 0.5;
            double value = 0;
            if (at < 0.4 || at >= 0.75) {
                value = at < 0.4 ? noise * at : noise;
            } else if (at < 0.6) {
                value = std::sin(i * (0.02 + 0.05 * channel + at * 0.3)) * 0.7;
            }
            if (i % 5000 == 17 && at < 0.6) {
                value = 0.95;
            }
            *to++ = static_cast<std::int16_t>(value * 32000);
        }
    }
    return samples;
}

/// The result of sound(), encoded by LAME with `options`. The stream for each set of
/// arguments is created once per process.
inline const Data& encoded(int rate, int channels, const std::string& options, double seconds = 4) {
    static std::map<std::string, Data> made;
    const std::string key = std::to_string(rate) + " " + std::to_string(channels) + " " + options +
                            " " + std::to_string(seconds);
    Data& data = made[key];
    if (data.empty()) {
        const fakes::TempFolder folder;
        EXPECT_TRUE(
            test::writeWav(folder / "in.wav", {rate, channels}, sound(rate, channels, seconds)));
        EXPECT_TRUE(test::encodeMp3(folder / "in.wav", options, folder / "out.mp3"))
            << "lame is missing or failed";
        data = readFile(folder / "out.mp3");
        EXPECT_FALSE(data.empty());
    }
    return data;
}

/// The stream of most tests: an information frame, and 155 frames of sound at 128 kbit/s.
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

/// The frames of the format in which the stream is decoded; none in free format.
inline std::vector<NumberedFrame> framesOf(const Data& data) {
    const MemorySource source(data);
    const std::optional<StreamFormat> format = surveyStream(source).format;
    std::vector<NumberedFrame> found;
    if (format) {
        FrameSequence frames(source, *format);
        while (const auto frame = frames.next()) {
            found.push_back(*frame);
        }
    }
    return found;
}

/// A source with some bytes that cannot be read.
class BadPlaceSource : public ByteSource {
  public:
    BadPlaceSource(const Data& data, std::size_t begin, std::size_t end)
        : memory_(data),
          begin_(static_cast<std::int64_t>(begin)),
          end_(static_cast<std::int64_t>(std::min(end, data.size()))) {}

    [[nodiscard]] std::int64_t size() const override { return memory_.size(); }
    [[nodiscard]] Reading readAt(std::int64_t offset, std::span<std::uint8_t> out) const override {
        const std::int64_t end = offset + static_cast<std::int64_t>(out.size());
        if (end <= begin_ || offset >= end_) {
            return memory_.readAt(offset, out);
        }
        ++failures;
        Reading reading = memory_.readAt(offset, out.first(static_cast<std::size_t>(
                                                     std::max<std::int64_t>(begin_ - offset, 0))));
        reading.failure = Error{ErrorNumber::deviceInputOutput, "bad place"};
        return reading;
    }
    /// The number of reads that reached the unreadable range.
    mutable std::atomic<int> failures = 0;

  private:
    MemorySource memory_;
    std::int64_t begin_;
    std::int64_t end_;
};

/// All of a stream's sound, and the counts of its decoding.
struct DecodedSound {
    PcmFormat format{0, 0};
    Samples samples;
    DecodeCount count;
    bool broken = false; ///< a broken frame ended inSegments() early
    std::optional<Error> failure = std::nullopt;
};

inline DecodedSound sequentially(const ByteSource& source) {
    const Result<std::unique_ptr<PcmReader>> reader = openPcmReader(source, surveyStream(source));
    DecodedSound decoded;
    EXPECT_TRUE(reader.ok());
    if (reader.ok() && reader.value()) {
        decoded.format = reader.value()->format();
        for (auto part = reader.value()->next(); !part.empty(); part = reader.value()->next()) {
            decoded.samples.insert(decoded.samples.end(), part.begin(), part.end());
        }
        decoded.count = reader.value()->count();
        decoded.failure = reader.value()->failure();
    }
    return decoded;
}

inline DecodedSound sequentially(const Data& data) {
    return sequentially(MemorySource(data));
}

/// Decodes `source` with a new decoder for each segment. Precondition: Layer III, no free format.
inline DecodedSound inSegments(const ByteSource& source, std::int64_t framesPerSegment) {
    DecodedSound decoded;
    const std::optional<StreamFormat> format = surveyStream(source).format;
    if (!format) {
        return decoded;
    }
    const FrameSequence frames(source, *format);
    decoded.format = {format->rate, format->channels};
    SegmentIndex index(frames, framesPerSegment);
    while (const std::optional<Segment> segment = index.next()) {
        const SegmentOutcome outcome = decodeSegment(
            source, *format, frames.trim(), *segment,
            [&](std::int64_t, std::int64_t first, std::span<const std::int16_t> samples) {
                EXPECT_EQ(static_cast<std::size_t>(first * decoded.format.channels),
                          decoded.samples.size());
                decoded.samples.insert(decoded.samples.end(), samples.begin(), samples.end());
                return Result<bool>(true);
            });
        EXPECT_FALSE(outcome.failure);
        if (outcome.end != SegmentEnd::complete) {
            decoded.broken = outcome.end == SegmentEnd::broken;
            break;
        }
    }
    decoded.count = index.count();
    decoded.failure = index.failure();
    return decoded;
}

inline DecodedSound inSegments(const Data& data, std::int64_t framesPerSegment) {
    return inSegments(MemorySource(data), framesPerSegment);
}

inline DecodedSound readWav(const std::filesystem::path& path) {
    DecodedSound decoded;
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    EXPECT_NE(file, nullptr) << path;
    if (file != nullptr) {
        EXPECT_EQ(info.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_16);
        decoded.format = {info.samplerate, info.channels};
        decoded.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
        EXPECT_EQ(sf_readf_short(file, decoded.samples.data(), info.frames), info.frames);
        sf_close(file);
    }
    return decoded;
}

/// Decodes `data` by mpg123, the command-line tool of the decoder library.
inline DecodedSound byTool(const Data& data) {
    const fakes::TempFolder folder;
    writeFile(folder / "in.mp3", data);
    EXPECT_TRUE(test::runProgram(
        {"mpg123", "-q", "-w", (folder / "out.wav").string(), (folder / "in.mp3").string()}))
        << "mpg123 is missing or failed";
    return readWav(folder / "out.wav");
}

/// The index of the first sample in which `first` and `second` differ; empty if they are equal.
inline std::optional<std::size_t> difference(const Samples& first, const Samples& second) {
    const auto [a, b] = std::mismatch(first.begin(), first.end(), second.begin(), second.end());
    return a == first.end() && b == second.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(a - first.begin()));
}

/// Returns the path unchanged.
inline std::filesystem::path asItIs(const std::string& path) {
    return path;
}

} // namespace sonarith::mp3::fixture
