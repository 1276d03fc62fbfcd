// SPDX-License-Identifier: GPL-3.0-or-later
// Measures how long a click can wait while a long file is decoded on all cores: the longest time in
// which the real event loop handles no event. Limit: 50 ms. Needs lame.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <vector>

#include <QApplication>

#include "longest_gap.h"
#include "platform/linux/mp3/mpg123_control.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "platform/qt/qt_event_loop.h"
#include "support/fake_notices.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

namespace {

using namespace sonarith;

/// Writes an MP3 file of one hour: one second of noise is encoded, and the result is repeated.
bool writeHour(const std::filesystem::path& folder) {
    std::mt19937 random(1);
    std::vector<std::int16_t> second(2 * 44100);
    for (std::int16_t& sample : second) {
        sample = static_cast<std::int16_t>(random());
    }
    const auto mp3 = folder / "second.mp3";
    return test::writeWav(folder / "second.wav", {44100, 2}, second) &&
           test::encodeMp3(folder / "second.wav", "-t -b 192", mp3) &&
           test::writeRepeated(folder / "hour.mp3", test::readBytes(mp3), 3600);
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const fakes::TempFolder folder;
    if (!writeHour(folder.path())) {
        std::fprintf(stderr, "no MP3 could be made: is lame installed?\n");
        return 1;
    }
    QApplication qt(argc, argv);
    QtEventLoop loop;
    sound::SoundCard card;
    test::FakeNotices notices;
    mp3::Mpg123Control control(
        card, sound::monotonicNow, [&](const std::string& name) { return folder.path() / name; },
        notices, std::make_shared<sound::PendingSaves>());
    bench::LongestGap gap;
    const auto heart = loop.every(std::chrono::milliseconds(1), [&] { gap.beat(); });
    control.setSourceFile("hour.mp3").passOver();
    gap.restart();
    control.DecodeToWav("hour.wav").passOver();
    loop.waitWhile([&] { return control.Busy(); });
    control.Stop().passOver();
    loop.yield();
    bench::Limits limits;
    bench::LongestGap::report("decoding an hour", gap.milliseconds(), limits);
    limits.require("the loop handled timer events", gap.beats() > 0);
    limits.require("the decoding is complete",
                   control.lastResult().outcome == mp3::DecodeOutcome::completed);
    return limits.exitCode();
}
