// SPDX-License-Identifier: GPL-3.0-or-later
// Measures how long "Refresh List" takes for a disc of 99 tracks, with the real command
// interpreter, the real window (off screen) and an empty destination folder. The time that the
// device commands take is subtracted. Limit: 20 ms.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include <QApplication>

#include "app/application.h"
#include "platform/linux/disc/image_drive.h"
#include "platform/linux/mci/interpreter.h"
#include "platform/linux/mci/machine_devices.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "platform/qt/qt_event_loop.h"
#include "result_limits.h"
#include "statistics.h"
#include "support/fake_machine.h"
#include "support/fake_notices.h"
#include "support/temp_folder.h"
#include "ui/main_window_view.h"

namespace {

using namespace sonarith;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// Forwards commands to the interpreter and adds up the time that the interpreter takes for them.
class TimedMedia : public MediaControl {
  public:
    explicit TimedMedia(MediaControl& device) : device_(device) {}
    using MediaControl::sendString;
    int sendString(std::string_view command, ReplyBuffer* reply) override {
        const auto began = Clock::now();
        const int status = device_.sendString(command, reply);
        spent += Clock::now() - began;
        return status;
    }
    [[nodiscard]] std::string errorString(int status) const override {
        return device_.errorString(status);
    }
    Clock::duration spent{};

  private:
    MediaControl& device_;
};

fs::path makeDisc(const fs::path& folder) {
    constexpr int tracks = 99;
    constexpr int secondsEach = 40;
    std::ofstream(folder / "disc.bin").close();
    fs::resize_file(folder / "disc.bin", std::uintmax_t{tracks} * secondsEach * 44100 * 4);
    std::ofstream cue(folder / "disc.cue");
    cue << "FILE \"disc.bin\" BINARY\n";
    for (int i = 0; i < tracks; ++i) {
        char lines[96];
        std::snprintf(lines, sizeof lines, "  TRACK %02d AUDIO\n    INDEX 01 %02d:%02d:00\n", i + 1,
                      i * secondsEach / 60, i * secondsEach % 60);
        cue << lines;
    }
    return folder / "disc.cue";
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication qt(argc, argv);
    const fakes::TempFolder folder;
    const auto drive = std::make_shared<disc::ImageDrive>(makeDisc(folder.path()));

    sound::SoundCard card;
    test::FakeNotices notices;
    mci::Interpreter interpreter(
        mci::devicesOf({card, sound::monotonicNow, [&] { return drive; },
                        [&] { return std::vector<fs::path>{folder.path()}; },
                        [](const std::string&) { return fs::path(); }, notices}));
    TimedMedia media(interpreter);
    QtEventLoop loop;
    test::FakeMachine machine;
    machine.directories.addFolder("c:\\");
    Application application(machine.platformWith({.loop = &loop, .media = &media}));
    Form1& form = application.windows().Form1;
    const MainWindowView window(form);
    application.start();

    std::vector<double> milliseconds;
    for (int i = 0; i < 21; ++i) {
        media.spent = {};
        const auto began = Clock::now();
        form.mnuRefreshlist.click();
        const auto beyond = Clock::now() - began - media.spent;
        milliseconds.push_back(std::chrono::duration<double, std::milli>(beyond).count());
    }
    const double median = bench::median(milliseconds);
    std::printf("refresh of 99 tracks, without the time of the device commands: median %.2f ms, "
                "%.2f of the limit of 20 ms\n",
                median, median / 20);
    bench::Limits limits;
    limits.check("refresh of 99 tracks, in ms", median, 20);
    limits.require("the list shows 99 tracks", form.lstTracks.listCount() == 99);
    return limits.exitCode();
}
