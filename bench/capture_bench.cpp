// SPDX-License-Identifier: GPL-3.0-or-later
// Measures captures: the memory for 74 minutes compared with one minute, the processor time (limit:
// 3 % of one core), whether every sample is recorded while all cores are busy, and how long
// setMuted() and the commands at the end of a capture take while the disk hangs. No windows are
// used: the benchmark sends device commands to the program's own drive, sound card and recorder.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/disc/image_drive.h"
#include "platform/linux/mci/interpreter.h"
#include "platform/linux/mci/machine_devices.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "result_limits.h"
#include "support/call_judge.h"
#include "support/fake_notices.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using namespace sonarith;

constexpr std::int64_t bytesPerSecond = 44100 * 4;

/// Creates a disc image. If `numbered`, each frame of the first track contains its own number plus
/// 1; otherwise the disc is silent.
fs::path makeDisc(const fs::path& folder, std::int64_t seconds, bool numbered) {
    const fs::path bin = folder / "disc.bin";
    std::ofstream(bin).close();
    if (numbered) {
        std::vector<std::uint32_t> frames(static_cast<std::size_t>(seconds * 44100));
        for (std::size_t i = 0; i < frames.size(); ++i) {
            frames[i] = static_cast<std::uint32_t>(i + 1);
        }
        std::ofstream out(bin, std::ios::binary);
        out.write(reinterpret_cast<const char*>(frames.data()),
                  static_cast<std::streamsize>(frames.size() * sizeof(frames[0])));
    }
    // A second track of two seconds, so that the first track does not end at the end of the disc.
    fs::resize_file(bin, static_cast<std::uintmax_t>((seconds + 2) * bytesPerSecond));
    const fs::path cue = folder / "disc.cue";
    char second[64];
    std::snprintf(second, sizeof second, "    INDEX 01 %02d:%02d:00\n",
                  static_cast<int>(seconds / 60), static_cast<int>(seconds % 60));
    std::ofstream(cue) << "FILE \"disc.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
                       << "  TRACK 02 AUDIO\n"
                       << second;
    return cue;
}

/// A command interpreter with a disc image in its drive. Recordings are in the image's folder.
class Bench {
  public:
    Bench(const fs::path& cue, sound::SoundCard& card, const mci::Clock& clock,
          const sound::RecordingTiming& timing)
        : media_(mci::devicesOf(
              {card, clock, [drive = std::make_shared<disc::ImageDrive>(cue)] { return drive; },
               [folder = cue.parent_path()] { return std::vector{folder}; },
               [folder = cue.parent_path()](const std::string& name) { return folder / name; },
               notices_, nullptr, timing})) {}

    std::string send(const std::string& command) {
        ReplyBuffer reply(64);
        if (const int status = media_.sendString(command, &reply); status != 0) {
            std::fprintf(stderr, "%s: %s\n", command.c_str(), media_.errorString(status).c_str());
            std::exit(1);
        }
        return std::string(reply.bytes().c_str());
    }
    /// Ignores a failure, as the logic does at the end of a capture.
    void sendUnchecked(const std::string& command) { media_.sendString(command); }

    void begin() {
        send("open new type waveaudio alias capture");
        send("set capture samplespersec 44100 channels 2 bitspersample 16 alignment 4 "
             "bytespersec 176400");
        send("open cdaudio alias cd");
        send("set cd time format milliseconds");
        send("record capture overwrite");
        send("play cd");
    }

  private:
    test::FakeNotices notices_;
    mci::Interpreter media_;
};

/// Time limits for the recorder's waits for the disk; on a working disk, no wait reaches them. With
/// the default limits, a save that takes longer than 80 ms would fail and end the benchmark.
constexpr sound::RecordingTiming patient{60s, 60s, 60s};

/// Captures the first track by the commands that the program sends. `tick` lets 100 ms pass, the
/// interval of the program's capture timer. Returns the duration of the save.
std::chrono::duration<double, std::milli>
captureFirstTrack(const fs::path& cue, std::int64_t seconds, sound::SoundCard& card,
                  const mci::Clock& clock, const std::function<void()>& tick) {
    Bench bench(cue, card, clock, patient);
    bench.begin();
    while (std::stoll(bench.send("status cd position")) < seconds * 1000) {
        bench.send("set capture time format bytes");
        bench.send("status capture length");
        tick();
    }
    bench.send("stop capture");
    bench.send("stop cd");
    const auto start = std::chrono::steady_clock::now();
    bench.send("save capture track.wav");
    const auto time = std::chrono::steady_clock::now() - start;
    bench.send("close capture");
    bench.send("close cd");
    return time;
}

/// Runs `work` in a process of its own and returns the resource use reported by the system.
rusage measured(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        std::_Exit(0);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (status != 0) {
        std::fprintf(stderr, "a measured run failed\n");
        std::exit(1);
    }
    return usage;
}

long peakKilobytes(std::int64_t seconds) {
    const fakes::TempFolder folder;
    const fs::path cue = makeDisc(folder.path(), seconds, false);
    return measured([&] {
               sound::SoundCard card;
               sound::SoundCard::Time now{};
               // The benchmark advances the clock, so the disc is read as fast as possible.
               captureFirstTrack(
                   cue, seconds, card, [&] { return now; },
                   [&] {
                       now += 100ms;
                       std::this_thread::yield();
                   });
           })
        .ru_maxrss;
}

double captureInRealTime(const fs::path& cue, std::int64_t seconds) {
    sound::SoundCard card;
    const sound::SoundCardThread thread(card);
    return captureFirstTrack(cue, seconds, card, sound::monotonicNow,
                             [] { std::this_thread::sleep_for(100ms); })
        .count();
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Returns the share of one core that a capture in real time uses, and stores the capture's peak
/// memory in `peakKilobytes`.
double coreShare(std::int64_t seconds, long& peakKilobytes) {
    const fakes::TempFolder folder;
    const fs::path cue = makeDisc(folder.path(), seconds, true);
    const rusage usage = measured([&] { captureInRealTime(cue, seconds); });
    peakKilobytes = usage.ru_maxrss;
    return (secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime)) / static_cast<double>(seconds);
}

/// Captures a track while all cores are busy. Returns the number of frames of the track that are
/// wrong in the WAV file; -1 if the file is too short. `leadMs` and `tailMs` receive the
/// lengths of the parts of the file before and after the track, `saveMs` the duration of the save.
std::int64_t wrongFramesUnderLoad(std::int64_t seconds, double& leadMs, double& tailMs,
                                  double& saveMs) {
    const fakes::TempFolder folder;
    const fs::path cue = makeDisc(folder.path(), seconds, true);
    std::atomic<bool> stop = false;
    std::vector<std::thread> busy;
    for (unsigned i = 0; i < std::thread::hardware_concurrency(); ++i) {
        busy.emplace_back([&] {
            volatile std::uint64_t turns = 0;
            while (!stop) {
                turns = turns + 1;
            }
        });
    }
    saveMs = captureInRealTime(cue, seconds);
    stop = true;
    for (std::thread& thread : busy) {
        thread.join();
    }
    std::ifstream in(folder / "track.wav", std::ios::binary);
    std::vector<std::uint32_t> frames((fs::file_size(folder / "track.wav") - 44) / 4);
    in.seekg(44);
    in.read(reinterpret_cast<char*>(frames.data()),
            static_cast<std::streamsize>(frames.size() * 4));
    std::size_t lead = 0;
    while (lead < frames.size() && frames[lead] == 0) {
        ++lead;
    }
    const auto expected = static_cast<std::size_t>(seconds * 44100);
    if (frames.size() < lead + expected) {
        return -1;
    }
    std::int64_t wrong = 0;
    for (std::size_t i = 0; i < expected; ++i) {
        wrong += frames[lead + i] != i + 1;
    }
    leadMs = static_cast<double>(lead) / 44.1;
    tailMs = static_cast<double>(frames.size() - lead - expected) / 44.1;
    return wrong;
}

/// How long calls take while all writes of samples block, in milliseconds; -1 if the writes could
/// not be made to block.
struct Waits {
    /// The longest of many setMuted() calls, before and after the recording queue is full.
    double mute = 0;
    double cancel = 0; ///< the commands that stop, save and close, together
    bool hung = false; ///< whether a write of samples was held during the measurement
};

Waits waitsForAHangingDisk() {
    const fakes::TempFolder folder;
    const fs::path cue = makeDisc(folder.path(), 60, true);
    Waits waits;
    const auto millisecondsOf = [](const std::function<void()>& step) {
        const auto start = std::chrono::steady_clock::now();
        step();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
            .count();
    };
    const bool judged = test::CallJudge::run(
        {SYS_pwrite64},
        [](const seccomp_data& call) {
            const bool isSamples = call.args[3] > 0; // the offset; the header is at 0
            return isSamples ? test::CallJudge::hold : test::CallJudge::letThrough;
        },
        [&](test::CallJudge& judge) {
            sound::SoundCard card;
            const sound::SoundCardThread thread(card);
            Bench bench(cue, card, sound::monotonicNow, {});
            bench.begin();
            for (int tick = 0; tick < 1300; ++tick) { // 13 s; the queue holds 10 s
                waits.mute = std::max(waits.mute, millisecondsOf([&] {
                                          card.setMuted(sound::Line::compactDisc, true);
                                      }));
                std::this_thread::sleep_for(10ms);
            }
            waits.hung = judge.held() > 0;
            waits.cancel = millisecondsOf([&] {
                for (const char* command : {"stop capture", "stop cd", "save capture track.wav",
                                            "close capture", "close cd"}) {
                    bench.sendUnchecked(command);
                }
            });
        });
    return judged ? waits : Waits{};
}

} // namespace

int main() {
    const long one = peakKilobytes(60);
    const long many = peakKilobytes(74 * 60);
    const double growth = static_cast<double>(many) / static_cast<double>(one);
    std::printf("memory: 74 min %ld KB, 1 min %ld KB, ratio %.3f (limit 1.1)\n", many, one, growth);
    long inRealTime = 0;
    const double share = coreShare(20, inRealTime);
    // The second number is the ratio of the use to the limit: 1.00 is the limit itself.
    std::printf("processor: %.2f %% of one core, %.2f of the limit of 3 %%; memory %ld KB\n",
                share * 100, share / 0.03, inRealTime);
    double leadMs = 0;
    double tailMs = 0;
    double saveMs = 0;
    const std::int64_t wrong = wrongFramesUnderLoad(20, leadMs, tailMs, saveMs);
    std::printf("under load: %lld wrong frames of %d, %.1f ms before the track, %.1f ms after it, "
                "save %.1f ms\n",
                static_cast<long long>(wrong), 20 * 44100, leadMs, tailMs, saveMs);
    const Waits waits = waitsForAHangingDisk();
    std::printf(
        "disk that hangs: longest setMuted() %.2f ms; stop, save and close together %.1f ms "
        "(limit 100 ms)\n",
        waits.mute, waits.cancel);
    bench::Limits limits;
    limits.check("memory for 74 minutes, divided by that for one", growth, 1.1);
    limits.check("share of one core, in percent", share * 100, 3);
    limits.require("the capture under load contains the whole track", wrong >= 0);
    limits.check("wrong frames", static_cast<double>(wrong), 0);
    limits.require("the disk hung", waits.hung);
    limits.check("longest setMuted() beside a hanging disk, in ms", waits.mute, 100);
    limits.check("end of the capture beside a hanging disk, in ms", waits.cancel, 100);
    return limits.exitCode();
}
