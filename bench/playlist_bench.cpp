// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the playlist editor with a list of 10,000 entries. Without a window, but with a real
// settings file: the times to load the list and to delist an entry. Limits for each: 300 ms, and 12
// times the processor time that the same step needs with 1,000 entries. With the window (off
// screen) and with MP3 files on the disk:
// - the time from show() until the list is painted (limit: 300 ms);
// - the processor time of one scroll step (limit: 16 ms, one frame of the screen);
// - the time from a click on an entry until the file's data are painted, without the time to read
//   the file, for a short and a long file (limit: 5 ms);
// - the bytes that a click reads (limit: 8 KiB).
#include <ctime>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QObject>
#include <QScrollBar>
#include <QString>

#include "on_disk/editor_over.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/qt/ini_settings_store.h"
#include "result_limits.h"
#include "statistics.h"
#include "support/mp3_bytes.h"
#include "support/temp_folder.h"
#include "ui/form_window.h"
#include "ui/playlist_layout.h"

namespace {

using namespace sonarith;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int rounds = 11;

/// Runs `step` and returns its processor time in milliseconds. The ratio of two such times does not
/// depend on the load by other programs.
template <typename Step>
double workOf(Step step) {
    const auto now = [] {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    };
    const double begin = now();
    step();
    return now() - begin;
}

template <typename Step>
double timeOf(Step step) {
    const auto begin = Clock::now();
    step();
    return Milliseconds(Clock::now() - begin).count();
}

/// The number of rows that a list had when it was last painted.
class PaintedRows : public QObject {
  public:
    explicit PaintedRows(QAbstractItemView& view) : view_(view) {
        view.viewport()->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            rows_ = view_.model()->rowCount();
        }
        return false;
    }
    /// Handles events until the list is painted with at least `rows` rows. Paintings before the
    /// last call of forget() do not count.
    void await(int rows) const {
        while (rows_ < rows) {
            QCoreApplication::processEvents();
        }
    }
    void forget() { rows_ = 0; }

  private:
    QAbstractItemView& view_;
    int rows_ = 0;
};

/// The bytes that this process has read from files, pipes and sockets; 0 if the system does not
/// count them.
std::uint64_t bytesRead() {
    std::ifstream counts("/proc/self/io");
    std::string name;
    std::uint64_t bytes = 0;
    counts >> name >> bytes;
    return name == "rchar:" ? bytes : 0;
}

struct ListCosts {
    double loadMs = 0;
    double delistMs = 0;
    double loadWorkMs = 0;
    double delistWorkMs = 0;
};

ListCosts measureList(int entries) {
    std::vector<double> load;
    std::vector<double> delist;
    std::vector<double> loadWork;
    std::vector<double> delistWork;
    for (int round = 0; round < rounds; ++round) {
        const fakes::TempFolder folder;
        const QString place = QString::fromStdString(folder.path().string());
        {
            IniSettingsStore store(place);
            const StoreTransaction oneStep(store);
            store.SaveSetting(applicationName, playlistSection, "HowMany", std::to_string(entries));
            for (int i = 1; i <= entries; ++i) {
                store.SaveSetting(applicationName, playlistSection, std::to_string(i),
                                  "c:\\music\\an album\\" + std::to_string(i) + ".mp3");
            }
        }
        IniSettingsStore store(place);
        test::FakeFileSystem files;
        test::EditorOver editor(files, store);
        editor.form.unload();
        load.push_back(timeOf([&] { loadWork.push_back(workOf([&] { editor.form.load(); })); }));
        editor.form.List2.setListIndex(entries / 2).passOver();
        delist.push_back(
            timeOf([&] { delistWork.push_back(workOf([&] { editor.form.Command6.click(); })); }));
    }
    return {bench::median(load), bench::median(delist), bench::median(loadWork),
            bench::median(delistWork)};
}

/// The times are in milliseconds.
struct WindowCosts {
    double open = 0;
    double scroll = 0;
    double slowestScroll = 0;
    double shortClick = 0;
    double longClick = 0;
    std::uint64_t mostBytesOfAClick = 0;
};

constexpr int shownEntries = 10'000;
constexpr std::uintmax_t shortBytes = 100'000;
constexpr std::uintmax_t longBytes = 200'000'000;

void makeMp3(const std::filesystem::path& file, std::uintmax_t bytes) {
    std::ofstream(file, std::ios::binary)
        << test::Mp3Bytes(48'000).header(1, test::commonHeader).content;
    std::filesystem::resize_file(file, bytes);
}

/// The time to read the parts of a file that a click reads: the beginning and the end.
double timeOfReads(const std::filesystem::path& file) {
    return timeOf([&] {
        std::vector<char> read(5303);
        std::ifstream in(file, std::ios::binary);
        in.read(read.data(), 5047);
        in.seekg(-256, std::ios::end);
        in.read(read.data(), 256);
    });
}

WindowCosts measureWindow() {
    const fakes::TempFolder folder;
    std::ofstream(folder / "mounts") << "1 0 8:1 / / rw - ext4 /dev/a rw\n2 1 8:2 / "
                                     << folder.path().string() << " rw - ext4 /dev/b rw\n";
    makeMp3(folder / "1.mp3", shortBytes);
    makeMp3(folder / "2.mp3", longBytes);
    test::FakeSettingsStore store;
    store.put(playlistSection, "HowMany", std::to_string(shownEntries));
    for (int i = 1; i <= shownEntries; ++i) {
        store.put(playlistSection, std::to_string(i), "d:\\" + std::to_string(i) + ".mp3");
    }
    DriveTable drives(store);
    MountInfo mounts((folder / "mounts").string());
    PathMap paths(drives, mounts);
    LinuxFileSystem files(paths, folder.path().string());
    test::EditorOver editor(files, store);
    editor.form.unload();
    // Does what the program's click handler does while the option to add the clicked file to the
    // work tree is off.
    editor.form.List2.onClick = [&form = editor.form] {
        form.Text5.setText(form.List2.text());
        form.cmdHdr2.click();
    };
    FormWindow window(playlistLayout(editor.form));
    auto* list = window.findChild<QAbstractItemView*>(QStringLiteral("List2"));
    auto* header = window.findChild<QAbstractItemView*>(QStringLiteral("List1"));

    PaintedRows paintedList(*list);
    PaintedRows paintedHeader(*header);
    std::vector<double> open;
    for (int round = 0; round < rounds; ++round) {
        paintedList.forget();
        open.push_back(timeOf([&] {
            editor.form.show();
            paintedList.await(shownEntries);
        }));
        if (round + 1 < rounds) {
            editor.form.unload();
            QCoreApplication::processEvents();
        }
    }
    std::vector<double> scroll;
    for (int line = 0; line < shownEntries; line += 37) {
        scroll.push_back(workOf([&] {
            list->verticalScrollBar()->setValue(line);
            list->viewport()->repaint();
        }));
    }
    std::vector<double> clicks[2];
    std::uint64_t mostBytes = 0;
    for (int round = 0; round < 2 * rounds; ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100)); // as between a user's clicks
        const int entry = round % 2;
        paintedHeader.forget();
        const std::uint64_t readBefore = bytesRead();
        const double click = timeOf([&] {
            editor.form.List2.choose(entry);
            paintedHeader.await(12);
        });
        // Includes some hundred bytes that the event loop reads, and those that bytesRead() itself
        // reads from /proc/self/io.
        mostBytes = std::max(mostBytes, bytesRead() - readBefore);
        clicks[entry].push_back(click - timeOfReads(folder / (std::to_string(entry + 1) + ".mp3")));
        const std::uintmax_t bytes = entry == 0 ? shortBytes : longBytes;
        if (editor.form.Text4(8).text() != std::to_string(bytes) + " bytes" ||
            header->model()->rowCount() != 12) {
            std::fprintf(stderr, "the file was not read\n");
            std::exit(EXIT_FAILURE);
        }
    }
    return {bench::median(open),
            bench::median(scroll),
            *std::max_element(scroll.begin(), scroll.end()),
            bench::median(clicks[0]),
            bench::median(clicks[1]),
            mostBytes};
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication qt(argc, argv);
    const ListCosts few = measureList(1'000);
    const ListCosts many = measureList(10'000);
    std::printf("load:   %.1f ms for 1,000 entries, %.1f ms for 10,000 (limit 300 ms); processor "
                "time for 10,000 is %.1f times that for 1,000 (limit 12)\n",
                few.loadMs, many.loadMs, many.loadWorkMs / few.loadWorkMs);
    std::printf("delist: %.1f ms for 1,000 entries, %.1f ms for 10,000 (limit 300 ms); processor "
                "time for 10,000 is %.1f times that for 1,000 (limit 12)\n",
                few.delistMs, many.delistMs, many.delistWorkMs / few.delistWorkMs);
    const WindowCosts window = measureWindow();
    std::printf("window: opened with 10,000 entries in %.1f ms (limit 300 ms); a scroll step takes "
                "%.2f ms, the slowest %.2f ms (limit 16 ms)\n",
                window.open, window.scroll, window.slowestScroll);
    std::printf("click:  %.2f ms for a file of 100 KB, %.2f ms for 200 MB (limit 5 ms); at most "
                "%llu bytes read (limit 8192)\n",
                window.shortClick, window.longClick,
                static_cast<unsigned long long>(window.mostBytesOfAClick));
    bench::Limits limits;
    limits.check("loading 10,000 entries, in ms", many.loadMs, 300);
    limits.check("ratio of the loads", many.loadWorkMs / few.loadWorkMs, 12);
    limits.check("delisting one of 10,000 entries, in ms", many.delistMs, 300);
    limits.check("ratio of the delistings", many.delistWorkMs / few.delistWorkMs, 12);
    limits.check("opening the window, in ms", window.open, 300);
    limits.check("slowest scroll step, in ms", window.slowestScroll, 16);
    limits.check("click on the entry of the short file, in ms", window.shortClick, 5);
    limits.check("click on the entry of the long file, in ms", window.longClick, 5);
    limits.require("the system counts the bytes that are read", window.mostBytesOfAClick > 0);
    limits.check("bytes that a click reads", static_cast<double>(window.mostBytesOfAClick), 8192);
    return limits.exitCode();
}
