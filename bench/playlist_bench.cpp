// SPDX-License-Identifier: GPL-3.0-or-later
// The playlist editor's logic over the machine's files and the settings file: loading a list of
// 10,000 entries and delisting one of them (limits 300 ms each, and 12 times the time for 1,000),
// and a click on an entry beyond the file's own reads (limit 5 ms) for a short and a long file.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <QString>

#include "on_disk/editor_over.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/qt/ini_settings_store.h"
#include "statistics.h"
#include "support/mp3_bytes.h"
#include "support/temp_folder.h"

namespace {

using namespace sonarith;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int rounds = 11;

template <typename Step>
double timeOf(Step step) {
    const auto begin = Clock::now();
    step();
    return Milliseconds(Clock::now() - begin).count();
}

struct ListCosts {
    double loadMs = 0;
    double delistMs = 0;
};

ListCosts measureList(int entries) {
    std::vector<double> load;
    std::vector<double> delist;
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
        load.push_back(timeOf([&] { editor.form.load(); }));
        editor.form.List2.setListIndex(entries / 2).passOver();
        delist.push_back(timeOf([&] { editor.form.Command6.click(); }));
    }
    return {bench::median(load), bench::median(delist)};
}

/// Of the click, without the time of reading what it reads.
double measureClick(std::uintmax_t bytes) {
    const fakes::TempFolder folder;
    std::ofstream(folder / "mounts") << "1 0 8:1 / / rw - ext4 /dev/a rw\n2 1 8:2 / "
                                     << folder.path().string() << " rw - ext4 /dev/b rw\n";
    const std::filesystem::path file = folder / "a.mp3";
    std::ofstream(file, std::ios::binary)
        << test::Mp3Bytes(48'000).header(1, test::commonHeader).content;
    std::filesystem::resize_file(file, bytes);
    test::FakeSettingsStore store;
    DriveTable drives(store);
    MountInfo mounts((folder / "mounts").string());
    PathMap paths(drives, mounts);
    LinuxFileSystem files(paths, folder.path().string());
    test::EditorOver editor(files, store);
    std::vector<double> taken;
    for (int round = 0; round < rounds; ++round) {
        editor.form.Text5.setText("d:\\a.mp3");
        const double click = timeOf([&] { editor.form.cmdHdr2.click(); });
        const double reads = timeOf([&] {
            std::vector<char> read(5303); // head and tail
            std::ifstream in(file, std::ios::binary);
            in.read(read.data(), static_cast<std::streamsize>(read.size()));
        });
        taken.push_back(click - reads);
    }
    if (editor.form.List1.listCount() != 12) {
        std::fprintf(stderr, "the file was not read\n");
    }
    return bench::median(taken);
}

} // namespace

int main() {
    const ListCosts few = measureList(1'000);
    const ListCosts many = measureList(10'000);
    std::printf(
        "load:   %.1f ms for 1,000, %.1f ms for 10,000 (limit 300), ratio %.1f (limit 12)\n",
        few.loadMs, many.loadMs, many.loadMs / few.loadMs);
    std::printf(
        "delist: %.1f ms for 1,000, %.1f ms for 10,000 (limit 300), ratio %.1f (limit 12)\n",
        few.delistMs, many.delistMs, many.delistMs / few.delistMs);
    std::printf("click:  %.2f ms for 100 KB, %.2f ms for 200 MB (limit 5)\n", measureClick(100'000),
                measureClick(200'000'000));
    return 0;
}
