// SPDX-License-Identifier: GPL-3.0-or-later
// How long a click would have to wait while a long file is decoded on all cores: the longest time
// without an event of the real loop, against the limit of 50 ms. Needs lame.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <QApplication>
#include <QTimer>

#include "platform/linux/mp3/mpg123_control.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "platform/qt/qt_event_loop.h"
#include "support/temp_folder.h"

namespace {

using namespace sonarith;
using Clock = std::chrono::steady_clock;

/// An hour of one encoded second of noise.
bool writeHour(const std::filesystem::path& folder) {
    const std::string command =
        "head -c 176400 /dev/urandom | lame --quiet -t -r -s 44.1 -b 192 - '" +
        (folder / "second.mp3").string() + "'";
    if (std::system(command.c_str()) != 0) {
        return false;
    }
    std::ifstream in(folder / "second.mp3", std::ios::binary);
    const std::string second{std::istreambuf_iterator<char>(in), {}};
    std::ofstream out(folder / "hour.mp3", std::ios::binary);
    for (int i = 0; i < 3600; ++i) {
        out << second;
    }
    return static_cast<bool>(out);
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const fakes::TempFolder folder;
    if (!writeHour(folder.path())) {
        std::fprintf(stderr, "no MP3 could be made: is lame there?\n");
        return 1;
    }
    QApplication qt(argc, argv);
    QtEventLoop loop;
    sound::SoundCard card;
    mp3::Mpg123Control control(card, sound::monotonicNow,
                               [&](const std::string& name) { return folder.path() / name; });
    double longestMs = 0;
    int beats = 0;
    auto last = Clock::now();
    const auto heart = loop.every(std::chrono::milliseconds(1), [&] {
        longestMs = std::max(
            longestMs, std::chrono::duration<double, std::milli>(Clock::now() - last).count());
        last = Clock::now();
        ++beats;
    });
    control.setSourceFile("hour.mp3").passOver();
    last = Clock::now();
    control.DecodeToWav("hour.wav").passOver();
    loop.waitWhile([&] { return control.Busy(); });
    control.Stop().passOver();
    loop.yield();
    std::printf(
        "decoding an hour: longest time without an event %.1f ms of %d, %.2f of the limit of "
        "50 ms\n",
        longestMs, beats, longestMs / 50);
    return beats > 0 ? 0 : 1;
}
