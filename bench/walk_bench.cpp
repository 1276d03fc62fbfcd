// SPDX-License-Identifier: GPL-3.0-or-later
// Measures a search of 100,000 files in 5,000 folders, and compares it with `find -iname` on the
// same tree in the same run, with warm caches. Measures three variants: only the walk through the
// folders, on this thread; the same walk on another thread, as in the program; and the whole search
// engine with its lists. There are no windows, and a yield handles no events.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "finder/search_engine.h"
#include "forms/frm_search.h"
#include "music_tree.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/linux_directory_walk.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/linux/paths/patient_directories.h"
#include "platform/linux/paths/patient_file_system.h"
#include "platform/silent_notices.h"
#include "platform/text/unicode.h"
#include "result_limits.h"
#include "statistics.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"

namespace {

using namespace sonarith;
using bench::linesOf;
using bench::median;
using bench::millisecondsOf;
using bench::runFind;

constexpr int rounds = 15;
constexpr double limit = 1.2;

/// An event loop that handles no events, so that only the search is measured.
class NoLoop final : public EventLoop {
  public:
    void yield() override {}
    void waitWhile(const std::function<bool()>&) override {}
    [[nodiscard]] Time now() const override { return {}; }
    [[nodiscard]] double secondsSinceMidnight() const override { return 0; }
    [[nodiscard]] std::unique_ptr<Wakeup> every(Duration, std::function<void()>) override {
        return nullptr;
    }
    [[noreturn]] void endProgram() override { std::abort(); }
};

/// Walks through all folders, depth first, without the search engine. Returns the number of WAV
/// files.
int walkAlone(Directories& directories, const std::string& root) {
    const auto walk = directories.startWalk();
    std::vector<std::string> waiting{root + "\\"};
    int count = 0;
    while (!waiting.empty()) {
        const std::string folder = waiting.back();
        waiting.pop_back();
        FindRecord entry;
        const FindHandle handle = walk->FindFirst(folder + "*.*", entry);
        while (walk->FindNext(handle, entry)) {
            if ((entry.attributes & file_attribute::directory) == 0) {
                count += entry.name.ends_with(".wav") ? 1 : 0;
            } else if (!entry.name.starts_with('.')) {
                waiting.push_back(lowerCase(folder + entry.name + "\\"));
            }
        }
        walk->FindClose(handle);
    }
    return count;
}

} // namespace

int main() {
    // The engine finds no file below a folder with a dot in its name. The name of a TempFolder
    // contains no dot.
    const fakes::TempFolder tree;
    const fakes::TempFolder output;
    bench::makeMusicTree(tree.path());
    const std::string list = (output / "found").string();

    test::FakeSettingsStore store;
    DriveTable drives(store);
    MountInfo mounts;
    PathMap paths(drives, mounts);
    LinuxFileSystem directFiles(paths, tree.path().string());
    LinuxDirectories direct(paths, directFiles);
    const SharedPaths shared{.letters = std::make_shared<LetterStore>(store),
                             .home = {},
                             .programFolder = tree.path().string()};
    waiting::WorkerThreads threads;
    PlainWaiting waiting;
    SilentNotices notices;
    PatientPaths patient({[shared] { return std::make_shared<LinuxMachineFiles>(shared); }, [] {},
                          placesOfThisMachine()},
                         {threads, waiting, notices});
    PatientFileSystem files(patient);
    PatientDirectories directories(patient, files);
    FrmSearch finder(files, directories);
    finder.load();
    NoLoop loop;
    SearchEngine engine(finder, directories, loop);
    const std::string root = paths.toLogic(tree.path().string());
    if (!finder.Dir1.setPath(root).ok()) {
        std::fprintf(stderr, "cannot select the folder of the test tree\n");
        return EXIT_FAILURE;
    }

    std::vector<double> findMs;
    std::vector<double> directMs;
    std::vector<double> walkMs;
    std::vector<double> engineMs;
    int walked = 0;
    for (int round = 0; round <= rounds; ++round) {
        const double find = millisecondsOf([&] { runFind(tree.path().string(), list); });
        const double directWalk = millisecondsOf([&] { walked = walkAlone(direct, root); });
        const double walk = millisecondsOf([&] { walked = walkAlone(directories, root); });
        const double search = millisecondsOf([&] {
            finder.lstdirs.clear();
            finder.List1.clear();
            engine.SearchFiles();
        });
        if (round > 0) { // the first round warms the caches
            findMs.push_back(find);
            directMs.push_back(directWalk);
            walkMs.push_back(walk);
            engineMs.push_back(search);
        }
    }
    const int wanted = bench::treeWavs;
    if (linesOf(list) != wanted || walked != wanted || finder.lstfiles.listCount() != wanted) {
        std::fprintf(
            stderr,
            "WAV files: %d found by find, %d by the walk, %d by the engine; the tree has %d\n",
            linesOf(list), walked, finder.lstfiles.listCount(), wanted);
        return EXIT_FAILURE;
    }
    const double base = median(findMs);
    std::printf("%d files in %d folders, median of %d rounds\n", bench::treeFiles,
                bench::treeFolders, rounds);
    std::printf("find -iname        %8.1f ms\n", base);
    std::printf("walk, this thread  %8.1f ms   ratio %.2f\n", median(directMs),
                median(directMs) / base);
    std::printf("walk, other thread %8.1f ms   ratio %.2f (limit %.2f)\n", median(walkMs),
                median(walkMs) / base, limit);
    std::printf("search engine      %8.1f ms   ratio %.2f (limit %.2f)\n", median(engineMs),
                median(engineMs) / base, limit);
    bench::Limits limits;
    limits.check("walk, other thread, divided by find", median(walkMs) / base, limit);
    limits.check("search engine, divided by find", median(engineMs) / base, limit);
    return limits.exitCode();
}
