// SPDX-License-Identifier: GPL-3.0-or-later
// Holds the decoding of long MP3 files against `mpg123 -w`, the decoding library's own tool, on the
// same files in turns: the ratio of the median times, and what the memory grew by. Goals on two
// cores: 0.6 on the road of segments, 1.05 on the sequential one, 48 MB. Needs lame and mpg123.
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>

#include "platform/linux/mp3/decode_job.h"
#include "platform/linux/mp3/mpg123_control.h"
#include "platform/linux/mp3/wav_header.h"
#include "statistics.h"
#include "support/temp_folder.h"

namespace {

using namespace sonarith;
using namespace sonarith::mp3;
using bench::median;
namespace fs = std::filesystem;

constexpr int longMinutes = 30;
constexpr int rounds = 5;

bool run(std::vector<std::string> words) {
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

/// One minute that an encoder finds neither easy nor hopeless: chords under swelling noise.
void writeMinute(const fs::path& path) {
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
    const auto bytes = static_cast<std::int64_t>(samples.size() * sizeof(std::int16_t));
    const std::vector<std::uint8_t> header = plainWavHeader({rate, 2}, bytes);
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(header.data()),
              static_cast<std::streamsize>(header.size()));
    out.write(reinterpret_cast<const char*>(samples.data()), bytes);
}

/// The minute, encoded, as many times as it takes. Without information frames its copies join.
bool writeLong(const fs::path& minute, const fs::path& path, std::vector<std::string> options,
               int minutes) {
    const std::string encoded = path.string() + ".part";
    options.insert(options.begin(), {"lame", "--quiet", "-t"});
    options.insert(options.end(), {minute.string(), encoded});
    if (!run(options)) {
        return false;
    }
    std::ifstream in(encoded, std::ios::binary);
    const std::string data{std::istreambuf_iterator<char>(in), {}};
    std::ofstream out(path, std::ios::binary);
    for (int i = 0; i < minutes; ++i) {
        out << data;
    }
    return static_cast<bool>(out);
}

double secondsOf(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// A line of this process's status, in KB: "VmRSS" is the memory now, "VmHWM" its peak.
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
    std::ofstream("/proc/self/clear_refs") << "5"; // proc(5): resets the peak to what is used now
}

void compare(const std::string& name, const fs::path& mp3, double goal) {
    const fs::path theirs = mp3.string() + ".tool.wav";
    const fs::path ours = mp3.string() + ".ours.wav";
    std::vector<double> tool;
    std::vector<double> control;
    forgetPeak();
    const long before = statusKilobytes("VmRSS");
    DecodeResult result;
    for (int i = 0; i < rounds; ++i) {
        tool.push_back(secondsOf([&] { run({"mpg123", "-q", "-w", theirs, mp3}); }));
        control.push_back(secondsOf([&] {
            DecodeJob job(mp3, ours, divisionForThisMachine());
            while (job.busy()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            result = job.result();
        }));
    }
    std::printf(
        "%-14s %-10s tool %6.3f s  ours %6.3f s  ratio %.3f (goal %.2f)  memory +%ld KB%s\n",
        name.c_str(), result.road == DecodeRoad::segments ? "segments" : "sequential", median(tool),
        median(control), median(control) / median(tool), goal, statusKilobytes("VmHWM") - before,
        result.outcome == DecodeOutcome::completed ? "" : "  FAILED");
    fs::remove(theirs);
    fs::remove(ours);
}

/// Many files of three minutes, one after the other, each against one call of the tool.
void compareMany(const fs::path& mp3) {
    constexpr int files = 200;
    const fs::path wav = mp3.string() + ".wav";
    double tool = 0;
    double control = 0;
    bool completed = true;
    for (int i = 0; i < files; ++i) {
        tool += secondsOf([&] { run({"mpg123", "-q", "-w", wav, mp3}); });
        fs::remove(wav);
        control += secondsOf([&] {
            DecodeJob job(mp3, wav, divisionForThisMachine());
            while (job.busy()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            completed = completed && job.result().outcome == DecodeOutcome::completed;
        });
        fs::remove(wav);
    }
    std::printf("%d files of 3 minutes: tool %.1f s  ours %.1f s  ratio %.3f (goal below 1)%s\n",
                files, tool, control, control / tool, completed ? "" : "  FAILED");
}

} // namespace

int main() {
    const fakes::TempFolder folder;
    const fs::path minute = folder / "minute.wav";
    writeMinute(minute);
    struct Kind {
        const char* name;
        std::vector<std::string> options;
        double goal;
    };
    constexpr double segmentsGoal = 0.6;
    constexpr double sequentialGoal = 1.05;
    for (const Kind& kind :
         {Kind{"CBR 192", {"-b", "192"}, segmentsGoal}, Kind{"VBR 2", {"-V", "2"}, segmentsGoal},
          Kind{"free format", {"--freeformat", "-b", "400"}, sequentialGoal}}) {
        const fs::path mp3 = folder / "long.mp3";
        if (!writeLong(minute, mp3, kind.options, longMinutes)) {
            std::fprintf(stderr, "no MP3 could be made: is lame there?\n");
            return 1;
        }
        compare(kind.name, mp3, kind.goal);
    }
    const fs::path shortMp3 = folder / "short.mp3";
    if (!writeLong(minute, shortMp3, {"-b", "192"}, 3)) {
        return 1;
    }
    compareMany(shortMp3);
    return 0;
}
