// SPDX-License-Identifier: GPL-3.0-or-later
// Measures a search of 100,000 files in 5,000 folders with the finder's window open, and compares
// it with `find -iname` and with the same search without the window. The three searches alternate
// in one run, with warm caches. Also measures how long a click on the window waits during a search,
// and how soon "Stop!" ends a search. The window is off screen unless QT_QPA_PLATFORM is set.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

#include "finder/finder.h"
#include "finder/finder_scanner.h"
#include "longest_gap.h"
#include "music_tree.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/linux/paths/patient_directories.h"
#include "platform/linux/paths/patient_file_system.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_waiting.h"
#include "platform/silent_notices.h"
#include "statistics.h"
#include "support/fake_machine.h"
#include "support/temp_folder.h"
#include "ui/finder_layout.h"
#include "ui/form_window.h"
#include "ui/program_style.h"
#include "worktree/work_tree_jobs.h"

namespace {

using namespace sonarith;
using bench::median;
using bench::millisecondsOf;

constexpr int rounds = 9;
constexpr double windowLimit = 1.3;
constexpr double findLimit = 1.5;
constexpr std::chrono::milliseconds untilStop{30};

/// The finder on real folders of this computer, with its parts connected as in the program.
struct RealFinder {
    explicit RealFinder(const std::string& root) : shared(sharedPaths(root)) {}

    SharedPaths sharedPaths(const std::string& root) {
        return {.letters = std::make_shared<LetterStore>(machine.store),
                .home = {},
                .programFolder = root};
    }

    test::FakeMachine machine;
    QtEventLoop loop;
    SharedPaths shared;
    waiting::WorkerThreads threads;
    QtWaiting waiting;
    SilentNotices notices;
    PatientPaths patient{{[this] { return std::make_shared<LinuxMachineFiles>(shared); }, [] {},
                          placesOfThisMachine()},
                         {threads, waiting, notices}};
    PatientFileSystem files{patient};
    PatientDirectories directories{patient, files};
    Platform platform =
        machine.platformWith({.loop = &loop, .files = &files, .directories = &directories});
    ProcessState process;
    Windows windows{platform, process};
    FrmSearch& form = windows.frmsearch;
    FinderScanner scanner{form};
    WorkTreeJobs jobs{platform, process, windows, scanner};
    Finder finder{platform, windows, jobs.adder, jobs.tree};
};

void check(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "%s\n", what);
        std::exit(EXIT_FAILURE);
    }
}

/// Runs complete searches and stores their times.
struct Searches {
    std::vector<double> ms;
    std::vector<double> processorMs; ///< of all threads of this process

    void run(FrmSearch& form) {
        const std::clock_t before = std::clock();
        ms.push_back(millisecondsOf([&] { form.Command1.click(); }));
        processorMs.push_back(1000.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC);
        check(form.lstfiles.listCount() == bench::treeWavs,
              "the search has not found all WAV files");
    }
};

/// Keeps the finder's window open during the lifetime of this object.
struct OpenWindow {
    explicit OpenWindow(FrmSearch& finder) : form(finder), window(finderLayout(finder)) {
        form.setVisible(true);
        while (!window.windowHandle()->isExposed()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCoreApplication::processEvents();
    }
    ~OpenWindow() { form.setVisible(false); }
    OpenWindow(const OpenWindow&) = delete;
    OpenWindow& operator=(const OpenWindow&) = delete;

    FrmSearch& form;
    FormWindow window;
};

/// Runs a search. Returns the longest time in milliseconds in which the event loop handled no
/// event.
double longestGap(FrmSearch& form) {
    const OpenWindow open(form);
    bench::LongestGap gap;
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout,
                     [&] { gap.beat(form.Command1.caption() == stopCaption); });
    heart.start(1);
    Searches().run(form);
    check(gap.beats() > 10, "at most 10 timer events were handled during the search");
    return gap.milliseconds();
}

/// Starts a search and stops it by a click. Returns the milliseconds from the click to the end.
double timeToStop(FrmSearch& form) {
    const OpenWindow open(form);
    auto* button = open.window.findChild<QPushButton*>(QStringLiteral("Command1"));
    check(button != nullptr, "the window has no button Command1");
    std::chrono::steady_clock::time_point pressed;
    QTimer::singleShot(untilStop, button, [&] {
        check(form.Command1.caption() == stopCaption, "the search was over before it was stopped");
        pressed = std::chrono::steady_clock::now();
        button->click();
    });
    form.Command1.click();
    const auto ended = std::chrono::steady_clock::now();
    check(form.lstfiles.listCount() < bench::treeWavs, "the search was not stopped");
    return std::chrono::duration<double, std::milli>(ended - pressed).count();
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication qt(argc, argv);
    QApplication::setStyle(new ProgramStyle);
    // The search finds no file below a folder with a dot in its name. The name of a TempFolder
    // contains no dot.
    const fakes::TempFolder tree;
    const fakes::TempFolder output;
    bench::makeMusicTree(tree.path());
    RealFinder real(tree.path().string());
    FrmSearch& form = real.form;
    form.load();

    std::vector<double> findMs;
    Searches alone;
    Searches inWindow;
    std::vector<double> gapMs;
    std::vector<double> stopMs;
    bench::runFind(tree.path().string(), (output / "found").string()); // warms the caches
    for (int round = 0; round < rounds; ++round) {
        findMs.push_back(millisecondsOf(
            [&] { bench::runFind(tree.path().string(), (output / "found").string()); }));
        alone.run(form);
        {
            const OpenWindow open(form);
            inWindow.run(form);
        }
        gapMs.push_back(longestGap(form));
        stopMs.push_back(timeToStop(form));
    }
    check(bench::linesOf((output / "found").string()) == bench::treeWavs,
          "find has not found all WAV files");
    std::printf("%d files in %d folders, median of %d rounds\n", bench::treeFiles,
                bench::treeFolders, rounds);
    std::printf("find -iname               %8.1f ms\n", median(findMs));
    std::printf("search without a window   %8.1f ms   %.2f times find\n", median(alone.ms),
                median(alone.ms) / median(findMs));
    std::printf(
        "search with the window    %8.1f ms   %.2f times find (limit %.1f), %.2f times the search "
        "without a window (limit %.1f)\n",
        median(inWindow.ms), median(inWindow.ms) / median(findMs), findLimit,
        median(inWindow.ms) / median(alone.ms), windowLimit);
    std::printf(
        "processor time (window)   %8.1f ms   %.2f times the processor time without a window\n",
        median(inWindow.processorMs), median(inWindow.processorMs) / median(alone.processorMs));
    std::printf("from a press on Stop! to the end %.1f ms\n", median(stopMs));
    bench::Limits limits;
    limits.check("search with the window, divided by find", median(inWindow.ms) / median(findMs),
                 findLimit);
    limits.check("search with the window, divided by the search without one",
                 median(inWindow.ms) / median(alone.ms), windowLimit);
    bench::LongestGap::report("searching with the window, median", median(gapMs), limits);
    return limits.exitCode();
}
