// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes long MP3 files, alternating with `mpg123 -w`, the decoding library's own tool, on the
// same files. Prints the median time of Sonarith's decoder divided by the tool's, and how much this
// process's memory grows. Limits on two cores: a ratio of at most 0.6 for files that are decoded in
// segments and of at most 1.05 for files that are decoded in one pass, and at most 48 MB of memory
// growth. Also decodes files that are designed to slow a decoder down: the time must grow only in
// proportion to the size of the file. Needs lame and mpg123.
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/mp3/decode_job.h"
#include "platform/linux/mp3/mpg123_control.h"
#include "result_limits.h"
#include "statistics.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

namespace {

using namespace sonarith;
using namespace sonarith::mp3;
using bench::median;
namespace fs = std::filesystem;

constexpr int longMinutes = 30;
constexpr int rounds = 5;
constexpr long growthLimit = 48 * 1024; // KB

/// Writes a minute of sound that is of average difficulty for an encoder: chords, and noise whose
/// volume changes.
bool writeMinute(const fs::path& path) {
    constexpr int rate = 44100;
    std::mt19937 random(1);
    std::vector<std::int16_t> samples;
    for (int i = 0; i < 60 * rate; ++i) {
        const double second = static_cast<double>(i) / rate;
        const double chord = std::sin(1380 * second) + std::sin(1740 * second) * 0.7 +
                             std::sin(2070 * second * (1 + std::floor(second)) / 8);
        for (int channel = 0; channel < 2; ++channel) {
            const double noise = static_cast<double>(random()) / 4294967296.0 - 0.5;
            samples.push_back(static_cast<std::int16_t>(
                4000 * chord + 12000 * noise * (1 + std::sin(3 * second + channel))));
        }
    }
    return test::writeWav(path, {rate, 2}, samples);
}

/// Encodes a minute of sound and writes the encoded bytes `minutes` times.
bool writeLong(const fs::path& minute, const fs::path& path, const std::string& options,
               int minutes) {
    const std::string encoded = path.string() + ".part";
    return test::encodeMp3(minute, "-t " + options, encoded) &&
           test::writeRepeated(path, test::readBytes(encoded), minutes);
}

/// Runs the tool with which Sonarith's decoder is compared. Ends the benchmark if the tool fails.
void runTool(std::vector<std::string> words) {
    if (!test::runProgram(std::move(words))) {
        std::fprintf(stderr, "the tool failed: is mpg123 installed?\n");
        std::exit(1);
    }
}

DecodeResult decode(const fs::path& mp3, const fs::path& wav) {
    const DecodeJob job(
        {mp3, wav, divisionForThisMachine()}, [](const DecodeResult&) {},
        std::make_shared<sound::PendingSaves>());
    while (!job.awaitEnd(std::chrono::seconds(1))) {
    }
    return job.result();
}

double secondsOf(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Reads a value in KB from this process's status file: "VmRSS" is the memory that is used now,
/// "VmHWM" is the peak.
long statusKilobytes(const std::string& name) {
    std::ifstream in("/proc/self/status");
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with(name + ":")) {
            return std::stol(line.substr(name.size() + 1));
        }
    }
    return -1;
}

void forgetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5"; // proc(5): resets the peak to the current value
}

void compare(const std::string& name, const fs::path& mp3, double limit, bench::Limits& limits) {
    const fs::path theirs = mp3.string() + ".tool.wav";
    const fs::path ours = mp3.string() + ".ours.wav";
    std::vector<double> tool;
    std::vector<double> control;
    forgetPeak();
    const long before = statusKilobytes("VmRSS");
    DecodeResult result;
    bool completed = true;
    for (int i = 0; i < rounds; ++i) {
        tool.push_back(secondsOf([&] { runTool({"mpg123", "-q", "-w", theirs, mp3}); }));
        control.push_back(secondsOf([&] { result = decode(mp3, ours); }));
        completed = completed && result.outcome == DecodeOutcome::completed;
    }
    const double ratio = median(control) / median(tool);
    const long growth = statusKilobytes("VmHWM") - before;
    std::printf("%-14s %-10s tool %6.3f s  ours %6.3f s  ratio %.3f (limit %.2f)  memory +%ld KB "
                "(limit %ld KB)\n",
                name.c_str(), result.method == DecodeMethod::segments ? "segments" : "sequential",
                median(tool), median(control), ratio, limit, growth, growthLimit);
    limits.check(("decoding, divided by the tool's: " + name).c_str(), ratio, limit);
    limits.check(("growth of the memory, in KB: " + name).c_str(), static_cast<double>(growth),
                 growthLimit);
    limits.require(("all decodings are complete: " + name).c_str(), completed);
    fs::remove(theirs);
    fs::remove(ours);
}

/// Decodes a file of three minutes many times with the tool and with Sonarith's decoder, and
/// compares the total times.
void compareMany(const fs::path& mp3, bench::Limits& limits) {
    constexpr int files = 200;
    const fs::path wav = mp3.string() + ".wav";
    double tool = 0;
    double control = 0;
    bool completed = true;
    for (int i = 0; i < files; ++i) {
        tool += secondsOf([&] { runTool({"mpg123", "-q", "-w", wav, mp3}); });
        fs::remove(wav);
        control += secondsOf(
            [&] { completed = decode(mp3, wav).outcome == DecodeOutcome::completed && completed; });
        fs::remove(wav);
    }
    std::printf("%d decodings of a file of 3 minutes: tool %.1f s  ours %.1f s  ratio %.3f (limit "
                "1)\n",
                files, tool, control, control / tool);
    limits.check("many decodings, divided by the tool's", control / tool, 1);
    limits.require("all of the many decodings are complete", completed);
}

/// Decodes a file that is designed to slow a decoder down, and a file of the same kind with half
/// the size. If the time is proportional to the size, the ratio of the two times is near 2.
void compareHalves(const char* name, const fs::path& folder, const std::vector<std::uint8_t>& unit,
                   bench::Limits& limits) {
    constexpr int bytes = 40 * 1024 * 1024;
    const fs::path half = folder / "half.mp3";
    const fs::path whole = folder / "whole.mp3";
    const fs::path wav = folder / "hostile.wav";
    const int units = bytes / static_cast<int>(unit.size());
    if (!test::writeRepeated(half, unit, units / 2) || !test::writeRepeated(whole, unit, units)) {
        std::exit(1);
    }
    std::vector<double> halves;
    std::vector<double> wholes;
    for (int i = 0; i < 3; ++i) {
        halves.push_back(secondsOf([&] { decode(half, wav); }));
        wholes.push_back(secondsOf([&] { decode(whole, wav); }));
    }
    const double ratio = median(wholes) / median(halves);
    std::printf("%-28s 20 MB %6.2f s  40 MB %6.2f s  ratio %.2f (limit 2.5)\n", name,
                median(halves), median(wholes), ratio);
    limits.check(name, ratio, 2.5);
    fs::remove(half);
    fs::remove(whole);
    fs::remove(wav);
}

std::vector<std::uint8_t> bytesOf(std::initializer_list<std::uint8_t> head, std::size_t size,
                                  std::uint8_t filler) {
    std::vector<std::uint8_t> bytes(head);
    bytes.resize(size, filler);
    return bytes;
}

} // namespace

int main() {
    const fakes::TempFolder folder;
    const fs::path minute = folder / "minute.wav";
    if (!writeMinute(minute)) {
        return 1;
    }
    struct Kind {
        const char* name;
        const char* options;
        double limit;
    };
    constexpr double segmentsLimit = 0.6;
    constexpr double sequentialLimit = 1.05;
    bench::Limits limits;
    for (const Kind& kind :
         {Kind{"CBR 192", "-b 192", segmentsLimit}, Kind{"VBR 2", "-V 2", segmentsLimit},
          Kind{"free format", "--freeformat -b 400", sequentialLimit}}) {
        const fs::path mp3 = folder / "long.mp3";
        if (!writeLong(minute, mp3, kind.options, longMinutes)) {
            std::fprintf(stderr, "no MP3 could be made: is lame installed?\n");
            return 1;
        }
        compare(kind.name, mp3, kind.limit, limits);
    }
    const fs::path shortMp3 = folder / "short.mp3";
    if (!writeLong(minute, shortMp3, "-b 192", 3)) {
        return 1;
    }
    compareMany(shortMp3, limits);
    // The header of a frame of 480 bytes (160 kbit/s at 48000 Hz), repeated: each frame contains
    // only further headers, and the library rejects the frame.
    compareHalves("headers at every fourth byte", folder.path(),
                  bytesOf({0xFF, 0xFB, 0xA4, 0x64}, 4, 0), limits);
    // The header of a frame of 417 bytes, repeated: 417 bytes after a header there is no header.
    compareHalves("headers without frames", folder.path(), bytesOf({0xFF, 0xFB, 0x90, 0x64}, 4, 0),
                  limits);
    compareHalves("broken frames, free format", folder.path(),
                  bytesOf({0xFF, 0xFB, 0x00, 0x64}, 400, 0xFE), limits);
    return limits.exitCode();
}
