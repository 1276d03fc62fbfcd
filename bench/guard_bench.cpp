// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the processor time that all threads together use for one tick of the disk guard, which
// checks during an action whether the disk is nearly full. The time includes the repainting of the
// list of drives. Limit for the median: 2 ms. The benchmark mounts disks so that there are at least
// ten drives. The settings store and the query of the drives' sizes are real. So is the
// preferences' window, which is open off screen. Also counts how often the store's file is
// replaced: a tick must not replace it; the load step of the preferences' window and the change of
// a check box must each replace it once. Needs the permission to mount.
#include <sys/inotify.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <QApplication>

#include "extraction/extraction.h"
#include "forms/windows.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/linux/system/linux_system_information.h"
#include "platform/qt/ini_settings_store.h"
#include "platform/qt/qt_waiting.h"
#include "result_limits.h"
#include "settings/preferences/preferences.h"
#include "statistics.h"
#include "support/fake_machine.h"
#include "support/small_disk.h"
#include "support/temp_folder.h"
#include "ui/lazy_window.h"
#include "ui/preferences_layout.h"
#include "worktree/add_file.h"

namespace {

using namespace sonarith;
namespace fs = std::filesystem;

constexpr int drivesWanted = 10;
constexpr int ticks = 100;
constexpr double limitMs = 2;

[[noreturn]] void fail(const char* why) {
    std::fprintf(stderr, "%s\n", why);
    std::exit(EXIT_FAILURE);
}

/// Watches a folder and counts how often a file in it is changed.
class Replacements {
  public:
    explicit Replacements(const fs::path& folder) : descriptor_(inotify_init1(IN_NONBLOCK)) {
        if (inotify_add_watch(descriptor_, folder.c_str(), IN_MOVED_TO | IN_MODIFY | IN_DELETE) <
            0) {
            fail("the store's folder cannot be watched");
        }
    }
    ~Replacements() { close(descriptor_); }
    Replacements(const Replacements&) = delete;
    Replacements& operator=(const Replacements&) = delete;

    /// How often the file `name` was replaced, written to or deleted since the previous call.
    [[nodiscard]] int take(const std::string& name) {
        int count = 0;
        alignas(inotify_event) std::array<char, 65536> buffer{};
        for (ssize_t bytes = 0; (bytes = read(descriptor_, buffer.data(), buffer.size())) > 0;) {
            for (const char* at = buffer.data(); at < buffer.data() + bytes;) {
                const auto* event = reinterpret_cast<const inotify_event*>(at);
                count += event->len > 0 && name == event->name ? 1 : 0;
                at += sizeof(inotify_event) + event->len;
            }
        }
        return count;
    }

  private:
    int descriptor_;
};

double processorMs() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

std::vector<fs::path> mountDisks(const fs::path& folder, int count) {
    std::vector<fs::path> disks;
    for (int i = 0; i < count; ++i) {
        disks.push_back(folder / ("disk" + std::to_string(i)));
        fs::create_directory(disks.back());
        if (mount("tmpfs", disks.back().c_str(), "tmpfs", 0, "size=2g") != 0) {
            fail("this user has no permission to mount");
        }
    }
    return disks;
}

void measure(const fs::path& folder, bench::Limits& limits) {
    const std::vector<fs::path> disks = mountDisks(folder, drivesWanted - 1);
    const fs::path storeFolder = folder / "store";
    fs::create_directory(storeFolder);
    IniSettingsStore store(QString::fromStdString(storeFolder.string()));
    // The objects are connected as in the program, but the drive letters have a store of their own:
    // the first reading of the mounts stores letters, which must not count as a replacement.
    test::FakeSettingsStore letters;
    MountInfo mounts;
    DriveTable table(letters);
    PathMap paths(table, mounts);
    waiting::WorkerThreads threads;
    QtWaiting waiting;
    LinuxSystemInformation system(
        threads, waiting, [&] { return paths.drives().drives(); },
        [&](const std::string& path) { return paths.logicPathOf(path); });

    test::FakeMachine machine;
    Platform platform = machine.platformWith({.store = &store, .system = &system});
    ProcessState process;
    Windows windows(platform, process);
    FileAdder adder(platform, process, windows.Form1);
    Extraction extraction(platform, process, windows, adder);
    Preferences preferences(platform, process, windows, extraction.monitor);
    const LazyWindow window(preferencesLayout(windows.FrmPrefs));
    windows.Form1.load();
    windows.Form4.load();

    Replacements replacements(storeFolder);
    constexpr const char* storeName = "Sonarith v2.0.ini";
    LoadSettings(store, machine.files.programFolder(), process.settings);
    windows.FrmPrefs.show();
    QCoreApplication::processEvents();
    const int byLoad = replacements.take(storeName);

    std::vector<double> taken;
    for (int i = 0; i < ticks; ++i) {
        // The free space of every disk changes before each tick, so that the list is repainted.
        for (const fs::path& disk : disks) {
            if (i % 2 == 0) {
                std::ofstream(disk / "filler") << std::string(1'000'000, 'x');
            } else {
                fs::remove(disk / "filler");
            }
        }
        const double before = processorMs();
        windows.Form1.tmrWarning.fire();
        QCoreApplication::processEvents();
        taken.push_back(processorMs() - before);
    }
    const int byTicks = replacements.take(storeName);
    windows.FrmPrefs.Check5.setValue(1).passOver();
    const int byClick = replacements.take(storeName);

    const std::string& lines = windows.FrmPrefs.Text6.text();
    const auto listed = std::count(lines.begin(), lines.end(), '\n');
    if (listed < drivesWanted) {
        std::fprintf(stderr, "%s", lines.c_str());
        fail("not all drives are listed");
    }
    const double typical = bench::median(taken);
    const double worst = *std::max_element(taken.begin(), taken.end());
    std::printf(
        "processor time of a tick with %d drives: median of %d ticks %.3f ms (limit %.0f ms), "
        "longest tick %.3f ms\n",
        static_cast<int>(listed), ticks, typical, limitMs, worst);
    std::printf(
        "replacements of the store's file: %d by the load step (required 1), %d by the ticks "
        "(required 0), %d by the change of a check box (required 1)\n",
        byLoad, byTicks, byClick);
    limits.check("processor time of a tick, in ms", typical, limitMs);
    limits.require("the load step writes the store once", byLoad == 1);
    limits.require("the ticks do not write the store", byTicks == 0);
    limits.require("the check box writes the store once", byClick == 1);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // leaveSharedMounts() must be called before any other thread exists: only the calling thread,
    // and the threads that it creates later, get mounts of their own.
    if (!test::leaveSharedMounts()) {
        fail("this user has no permission to mount");
    }
    const QApplication qt(argc, argv);
    const fakes::TempFolder folder;
    bench::Limits limits;
    measure(folder.path(), limits);
    for (int i = 0; i < drivesWanted - 1; ++i) {
        umount2((folder / ("disk" + std::to_string(i))).c_str(), MNT_DETACH);
    }
    return limits.exitCode();
}
