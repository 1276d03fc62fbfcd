// SPDX-License-Identifier: GPL-3.0-or-later
// Measures how long the program's start takes with 10,000 and with 100,000 files in the destination
// folder. Limit: the start with 100,000 files takes at most 12 times as long. At its start the
// program lists these files in the work tree. The directory walk and the window (off screen) are
// real. Also measures the longest time that a click would wait during the search for files. Limit:
// 50 ms.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <QApplication>
#include <QTimer>

#include "app/application.h"
#include "longest_gap.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/linux_directory_walk.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "platform/qt/qt_event_loop.h"
#include "support/fake_machine.h"
#include "support/temp_folder.h"
#include "ui/main_window_view.h"

namespace {

using namespace sonarith;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct Measured {
    double startMs = 0;
    double longestGapMs = 0;
    int beats = 0; ///< timer events during the search
    int files = 0;
};

/// Creates files, half of them WAV and half MP3, twenty in each folder.
void makeFiles(const fs::path& destination, int count) {
    for (int i = 0; i < count; ++i) {
        const fs::path folder = destination / ("album" + std::to_string(i / 20));
        if (i % 20 == 0) {
            fs::create_directories(folder);
        }
        std::ofstream(folder / ("t" + std::to_string(i) + (i % 2 == 0 ? ".wav" : ".mp3")));
    }
}

Measured startWith(const fs::path& folder, int argc, char** argv) {
    QApplication qt(argc, argv);
    QtEventLoop loop;
    test::FakeSettingsStore store;
    MountInfo mounts;
    DriveTable letters(store);
    PathMap paths(letters, mounts);
    LinuxFileSystem files(paths, folder.string());
    LinuxDirectories directories(paths, files);
    store.put("Settings", "DecodePath", paths.toLogic((folder / "files").string()));
    store.put("Settings", "show full path", "0");
    test::FakeMachine machine;
    Application application(machine.platformWith(
        {.loop = &loop, .store = &store, .files = &files, .directories = &directories}));
    Form1& form = application.windows().Form1;
    const MainWindowView window(form);

    Measured measured;
    bench::LongestGap gap;
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout, [&] {
        // Only gaps during the search count: after the search, the tree is built in one step, in
        // which no events are handled.
        const bool searching =
            application.windows().frmsearch.loaded() && form.List2.listCount() == 0;
        measured.beats += searching ? 1 : 0;
        gap.beat(searching);
    });
    heart.start(1);
    const auto began = Clock::now();
    application.start();
    measured.startMs = Milliseconds(Clock::now() - began).count();
    measured.longestGapMs = gap.milliseconds();
    measured.files = form.List1.listCount() + form.List2.listCount();
    return measured;
}

/// Runs startWith() in a child process, since an application can start only once per process.
Measured measure(int count, int argc, char** argv) {
    const fakes::TempFolder folder;
    makeFiles(folder / "files", count);
    int ends[2];
    Measured measured;
    if (pipe(ends) != 0) {
        std::exit(1);
    }
    if (const pid_t child = fork(); child == 0) {
        const Measured mine = startWith(folder.path(), argc, argv);
        std::_Exit(write(ends[1], &mine, sizeof mine) == sizeof mine ? 0 : 1);
    } else {
        close(ends[1]);
        if (read(ends[0], &measured, sizeof measured) != sizeof measured) {
            std::exit(1);
        }
        close(ends[0]);
        waitpid(child, nullptr, 0);
    }
    if (measured.files != count) {
        std::fprintf(stderr, "%d of %d files were found\n", measured.files, count);
        std::exit(1);
    }
    return measured;
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const Measured few = measure(10'000, argc, argv);
    const Measured many = measure(100'000, argc, argv);
    std::printf("program start: %.0f ms with 10,000 files, %.0f ms with 100,000 files, ratio %.1f "
                "(limit 12)\n",
                few.startMs, many.startMs, many.startMs / few.startMs);
    bench::Limits limits;
    limits.require("the loop handled timer events during the search", many.beats > 10);
    limits.check("ratio of the starts", many.startMs / few.startMs, 12);
    bench::LongestGap::report("searching", many.longestGapMs, limits);
    return limits.exitCode();
}
