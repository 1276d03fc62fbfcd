// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the processor time that the MP3 control and the software sound card need to play an MP3
// file in a process without windows. Limit: 1.3 times the processor time of `mpg123 -o pulse` with
// the same file and the same sound server. Also measures `mpg123 -o alsa`, without a limit. The
// three players play one after the other, in several rounds. Needs lame, mpg123 and pulseaudio.
#include <ctime>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/mp3/mpg123_control.h"
#include "platform/linux/sound/alsa_output.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "result_limits.h"
#include "statistics.h"
#include "support/fake_notices.h"
#include "support/pulse_server.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

namespace {

using namespace sonarith;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr int rounds = 5;
constexpr int secondsOfFile = 60;
/// How long a player plays before its measurement begins.
constexpr auto settling = 2s;
constexpr auto measured = 10s;
constexpr double limit = 1.3;

/// Writes stereo sound of average difficulty for a decoder: a periodic tone, and noise whose volume
/// changes.
bool writeMusic(const fs::path& folder, const fs::path& mp3) {
    std::mt19937 random(1);
    std::vector<std::int16_t> samples;
    for (int i = 0; i < secondsOfFile * 44100; ++i) {
        for (int channel = 0; channel < 2; ++channel) {
            const double noise = static_cast<double>(random()) / 4294967296.0 - 0.5;
            const double swell = static_cast<double>((i + channel * 20'000) % 44100) / 44100;
            samples.push_back(static_cast<std::int16_t>(12'000 * noise * swell + i * 97 % 8000));
        }
    }
    return test::writeWav(folder / "music.wav", {44100, 2}, samples) &&
           test::encodeMp3(folder / "music.wav", "-b 192", mp3);
}

/// A child process that plays until the destructor kills it.
class Player {
  public:
    explicit Player(const std::function<void()>& play) : process_(::fork()) {
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            play();
            std::_Exit(1);
        }
    }
    ~Player() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// Processor time of all threads of the child process up to now.
    [[nodiscard]] double milliseconds() const {
        clockid_t clock{};
        timespec time{};
        if (::clock_getcpuclockid(process_, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
            std::fprintf(stderr, "a player ended before its measurement was complete\n");
            std::exit(1);
        }
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }

  private:
    pid_t process_;
};

void playWithTheControl(const fs::path& mp3) {
    sound::SoundCard card;
    const sound::SoundCardThread thread(card);
    card.setSpeakers(sound::makeOutput("default"));
    test::FakeNotices notices;
    mp3::Mpg123Control control(
        card, sound::monotonicNow, [](const std::string& path) { return fs::path(path); }, notices,
        std::make_shared<sound::PendingSaves>());
    control.setSourceFile(mp3.string()).passOver();
    control.Play().passOver();
    std::this_thread::sleep_for(std::chrono::seconds(secondsOfFile));
}

void playWithMpg123(const fs::path& mp3, const char* output, const std::string& server) {
    ::setenv("PULSE_SERVER", server.c_str(), 1);
    ::execlp("mpg123", "mpg123", "-q", "-o", output, mp3.c_str(), nullptr);
}

/// Whether the last half second that the server received contains sound.
bool isHeard(const fakes::PulseServer& server) {
    const std::vector<sound::StereoFrame> heard = server.played();
    const auto last = heard.size() > 22'050 ? heard.end() - 22'050 : heard.begin();
    return std::any_of(last, heard.end(),
                       [](sound::StereoFrame frame) { return frame != sound::StereoFrame{}; });
}

/// Plays for a while. Returns the milliseconds of processor time for each second of sound.
double cost(const fakes::PulseServer& server, const std::function<void()>& play) {
    const Player player(play);
    std::this_thread::sleep_for(settling);
    const auto began = std::chrono::steady_clock::now();
    const double before = player.milliseconds();
    std::this_thread::sleep_for(measured);
    const double taken = player.milliseconds() - before;
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - began;
    if (!isHeard(server)) {
        std::fprintf(stderr, "a player was silent\n");
        std::exit(1);
    }
    return taken / seconds.count();
}

} // namespace

int main() {
    const fakes::TempFolder folder;
    const fs::path mp3 = folder / "music.mp3";
    fakes::PulseServer server;
    if (!writeMusic(folder.path(), mp3) || !server.start() || !server.listen()) {
        std::fprintf(stderr, "no MP3 or no sound server: are lame and pulseaudio installed?\n");
        return 1;
    }
    std::vector<double> ours;
    std::vector<double> peers;
    std::vector<double> peersByAlsa;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(cost(server, [&] { playWithTheControl(mp3); }));
        peers.push_back(cost(server, [&] { playWithMpg123(mp3, "pulse", server.address()); }));
        peersByAlsa.push_back(cost(server, [&] { playWithMpg123(mp3, "alsa", server.address()); }));
    }
    const double our = bench::median(ours);
    const double peer = bench::median(peers);
    std::printf("processor time for each second of sound: MP3 control %.2f ms, mpg123 -o pulse "
                "%.2f ms, mpg123 -o alsa %.2f ms; ratio of the control to mpg123 -o pulse %.2f "
                "(limit %.1f)\n",
                our, peer, bench::median(peersByAlsa), our / peer, limit);
    bench::Limits limits;
    limits.check("processor time, divided by that of mpg123", our / peer, limit);
    return limits.exitCode();
}
