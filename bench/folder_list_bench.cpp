// SPDX-License-Identifier: GPL-3.0-or-later
// Measures how long the list of folders takes to open a folder with 20,000 subfolders: to read,
// sort and paint their names. The view is real (off screen), and the folder is read on another
// thread, as in the program. Limit: 200 ms of processor time of all threads; processor time does
// not depend on the load by other programs. Also measures the elapsed time, the painting of the
// scrolled list, and for comparison the reading of the same folder by the C++ library.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include <QApplication>
#include <QScrollBar>

#include "platform/controls/form.h"
#include "platform/linux/paths/patient_directories.h"
#include "platform/linux/paths/patient_file_system.h"
#include "platform/qt/qt_waiting.h"
#include "platform/silent_notices.h"
#include "result_limits.h"
#include "statistics.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"
#include "ui/folder_list_view.h"

namespace {

using namespace sonarith;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int subfolders = 20'000;
constexpr int rounds = 21;
constexpr double limitMs = 200;

struct Spent {
    double processorMs = 0; ///< of all threads
    double passedMs = 0;
};

double processorMs() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

template <typename Step>
Spent timeOf(Step step) {
    const auto began = Clock::now();
    const double before = processorMs();
    step();
    return {processorMs() - before,
            std::chrono::duration<double, std::milli>(Clock::now() - began).count()};
}

double medianOf(const std::vector<Spent>& all, double Spent::*which) {
    std::vector<double> values;
    for (const Spent& spent : all) {
        values.push_back(spent.*which);
    }
    return bench::median(values);
}

/// Creates the subfolders, not in alphabetical order, with names as long as those of a user's
/// folders.
void makeFolders(const fs::path& parent) {
    for (int i = 0; i < subfolders; ++i) {
        const int mixed = i * 7919 % subfolders;
        fs::create_directory(parent / ("Album " + std::to_string(mixed) + " - Köln Live"));
    }
}

int readAlone(const fs::path& parent) {
    int count = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(parent)) {
        count += entry.is_directory() ? 1 : 0;
    }
    return count;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication qt(argc, argv);
    const fakes::TempFolder tree;
    const fs::path large = tree / "large";
    fs::create_directory(large);
    makeFolders(large);

    test::FakeSettingsStore store;
    const SharedPaths shared{.letters = std::make_shared<LetterStore>(store),
                             .home = {},
                             .programFolder = tree.path().string()};
    waiting::WorkerThreads threads;
    QtWaiting waiting;
    SilentNotices notices;
    PatientPaths paths({[shared] { return std::make_shared<LinuxMachineFiles>(shared); }, [] {},
                        placesOfThisMachine()},
                       {threads, waiting, notices});
    PatientFileSystem files(paths);
    PatientDirectories directories(paths, files);

    Form form("FrmPrefs");
    DirListBox model(form, "Dir2", directories, files);
    QWidget window;
    FolderListView view(model, QStringLiteral("Folder"), &window);
    view.resize(300, 400);
    window.resize(300, 400);
    form.load();
    window.show();
    QCoreApplication::processEvents();
    const std::string small = model.path();

    std::vector<Spent> opened;
    std::vector<Spent> scrolled;
    std::vector<Spent> alone;
    for (int round = 0; round <= rounds; ++round) {
        alone.push_back(timeOf([&] {
            if (readAlone(large) != subfolders) {
                std::exit(EXIT_FAILURE);
            }
        }));
        opened.push_back(timeOf([&] {
            model.setPath(small + "\\large").passOver();
            QCoreApplication::processEvents();
            view.viewport()->repaint();
        }));
        if (view.model()->rowCount() < subfolders) {
            std::fprintf(stderr, "the list has only %d rows\n", view.model()->rowCount());
            return EXIT_FAILURE;
        }
        scrolled.push_back(timeOf([&] {
            view.verticalScrollBar()->setValue(subfolders / 2 + 100 * round);
            view.viewport()->repaint();
        }));
        model.setPath(small).passOver();
        QCoreApplication::processEvents();
    }
    const double open = medianOf(opened, &Spent::processorMs);
    const double peer = medianOf(alone, &Spent::processorMs);
    std::printf(
        "opening a folder with %d subfolders, median of %d rounds: %.1f ms of processor time "
        "(limit %.0f ms), which is %.1f times the %.1f ms that the C++ library needs to read the "
        "folder; %.1f ms elapsed; painting the scrolled list: %.2f ms of processor time\n",
        subfolders, rounds + 1, open, limitMs, open / peer, peer,
        medianOf(opened, &Spent::passedMs), medianOf(scrolled, &Spent::processorMs));
    bench::Limits limits;
    limits.check("opening the folder, in ms", open, limitMs);
    return limits.exitCode();
}
