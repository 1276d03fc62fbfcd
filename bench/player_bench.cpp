// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the CD player on the software sound card and its thread, without windows and without a
// sound device. It measures the time from a click on `play` to the first sample at the card's
// output in three cases: before the click, the player was switched on, stopped or paused. It also
// measures the difference between the position that the device reports and the position of the
// sound at the output.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
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
#include "platform/linux/sound/sound_card_thread.h"
#include "result_limits.h"
#include "statistics.h"
#include "support/player_on_card.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using namespace sonarith;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int trackSeconds = 20;
constexpr int tracks = 3;
constexpr int rounds = 25;
// Milliseconds, for each single measurement.
constexpr double limitOfStart = 60;
constexpr double limitOfSkew = 50;

/// Creates a disc image in which each frame contains its number, counted from 1, so that no frame
/// is silent.
fs::path makeNumberedDisc(const fs::path& folder) {
    std::vector<std::uint32_t> frames(static_cast<std::size_t>(tracks * trackSeconds * 44100));
    for (std::size_t i = 0; i < frames.size(); ++i) {
        frames[i] = static_cast<std::uint32_t>(i + 1);
    }
    std::ofstream(folder / "disc.bin", std::ios::binary)
        .write(reinterpret_cast<const char*>(frames.data()),
               static_cast<std::streamsize>(frames.size() * sizeof(frames[0])));
    std::ofstream cue(folder / "disc.cue");
    cue << "FILE \"disc.bin\" BINARY\n";
    for (int track = 1; track <= tracks; ++track) {
        const int start = (track - 1) * trackSeconds;
        char lines[96];
        std::snprintf(lines, sizeof lines, "  TRACK %02d AUDIO\n    INDEX 01 %02d:%02d:00\n", track,
                      start / 60, start % 60);
        cue << lines;
    }
    return folder / "disc.cue";
}

/// The card's output. Stores the number of the latest frame that is not silent, and the time at
/// which the first such frame arrived.
class Output : public sound::SpeakerSink {
  public:
    void play(std::span<const sound::StereoFrame> frames) override {
        const auto newest = std::find_if(frames.rbegin(), frames.rend(), [](const auto& frame) {
            return frame != sound::StereoFrame{};
        });
        if (newest == frames.rend()) {
            return;
        }
        number_ = static_cast<std::uint16_t>(newest->left) +
                  (std::int64_t{static_cast<std::uint16_t>(newest->right)} << 16U);
        sound::SoundCard::Time none{};
        first_.compare_exchange_strong(none, sound::monotonicNow());
    }
    /// The next frame that is not silent counts as the first.
    void expectFirst() { first_ = sound::SoundCard::Time{}; }
    /// The time at which the first frame arrived; zero if none has arrived.
    [[nodiscard]] sound::SoundCard::Time first() const { return first_; }
    [[nodiscard]] double milliseconds() const { return static_cast<double>(number_) / 44.1; }

  private:
    std::atomic<sound::SoundCard::Time> first_{};
    std::atomic<std::int64_t> number_ = 0;
};

/// Runs `click`. Returns the milliseconds until the first frame arrives.
double timeToSound(Output& output, const std::function<void()>& click) {
    output.expectFirst();
    const auto start = sound::monotonicNow();
    click();
    while (output.first() == sound::SoundCard::Time{}) {
        std::this_thread::sleep_for(200us);
        if (sound::monotonicNow() - start > 10s) {
            std::fprintf(stderr, "no sound within 10 s after a click on play\n");
            std::exit(1);
        }
    }
    return Milliseconds(output.first() - start).count();
}

/// Converts a reply "tt:mm:ss:ff" to the position on the disc in milliseconds. The fields are the
/// track, and the minute, second and sector in the track. The player sets its display from the same
/// reply.
double millisecondsOf(const std::string& reply) {
    int track = 0;
    int minute = 0;
    int second = 0;
    int frame = 0;
    if (std::sscanf(reply.c_str(), "%d:%d:%d:%d", &track, &minute, &second, &frame) != 4) {
        std::fprintf(stderr, "no position: %s\n", reply.c_str());
        std::exit(1);
    }
    return ((track - 1) * trackSeconds + minute * 60 + second) * 1000.0 + frame * 1000.0 / 75;
}

std::string positionOf(MediaControl& media) {
    ReplyBuffer reply(30);
    media.sendString("status cd position", &reply);
    return std::string(reply.bytes().c_str());
}

void report(const char* what, const std::vector<double>& values, double limit,
            bench::Limits& limits) {
    const double worst = *std::max_element(values.begin(), values.end());
    std::printf("%s: median %.1f ms, worst %.1f ms of %zu measurements (limit %.0f ms)\n", what,
                bench::median(values), worst, values.size(), limit);
    limits.check(what, worst, limit);
}

} // namespace

int main() {
    const fakes::TempFolder folder;
    const fs::path sheet = makeNumberedDisc(folder.path());
    test::PlayerOnCard world(std::make_shared<disc::ImageDrive>(sheet), sound::monotonicNow);
    const auto output = std::make_shared<Output>();
    world.card.setSpeakers(output);
    const sound::SoundCardThread thread(world.card);
    Form4& form = world.form;

    std::vector<double> switchedOn;
    std::vector<double> stopped;
    std::vector<double> paused;
    std::vector<double> skews;
    for (int round = 0; round < rounds; ++round) {
        world.switchOn();
        switchedOn.push_back(timeToSound(*output, [&] { form.play.click(); }));
        for (int look = 0; look < 8; ++look) {
            // The sleep is no multiple of the length of the card's blocks, so that the queries come
            // at different positions in a block.
            std::this_thread::sleep_for(Milliseconds(31.7 + round));
            const double shown = millisecondsOf(positionOf(world.media));
            skews.push_back(std::abs(shown - output->milliseconds()));
        }
        form.stopbtn.click();
        std::this_thread::sleep_for(100ms);
        stopped.push_back(timeToSound(*output, [&] { form.play.click(); }));
        std::this_thread::sleep_for(100ms);
        form.pause.click();
        std::this_thread::sleep_for(100ms);
        paused.push_back(timeToSound(*output, [&] { form.play.click(); }));
        form.Command6.click();
        std::this_thread::sleep_for(50ms);
    }
    bench::Limits limits;
    report("time from play to the first sample, after power on", switchedOn, limitOfStart, limits);
    report("time from play to the first sample, after a stop", stopped, limitOfStart, limits);
    report("time from play to the first sample, after a pause", paused, limitOfStart, limits);
    report("difference between the reported position and the sound at the output", skews,
           limitOfSkew, limits);
    return limits.exitCode();
}
