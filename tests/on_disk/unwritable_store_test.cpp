// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the playlist if its settings file cannot be written, because the folder is read-only or the
// disk is full: the list stays usable, and the file keeps its content.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "on_disk/editor_over.h"
#include "platform/qt/ini_settings_store.h"
#include "support/fake_notices.h"
#include "support/forked_child.h"
#include "support/small_disk.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;

using UsedEditor = test::EditorOver;
using Paths = std::vector<std::string>;

class UnwritableStoreTest : public testing::Test {
  protected:
    [[nodiscard]] QString place() const { return QString::fromStdString(folder.path().string()); }
    void storeThree() const {
        IniSettingsStore store(place());
        const StoreTransaction oneStep(store);
        store.SaveSetting(applicationName, playlistSection, "HowMany", "3");
        for (std::size_t i = 0; i < before.size(); ++i) {
            store.SaveSetting(applicationName, playlistSection, std::to_string(i + 1), before[i]);
        }
    }
    /// The list that the next run of the program would load.
    [[nodiscard]] Paths stored() const {
        test::FakeFileSystem files;
        IniSettingsStore store(place());
        return UsedEditor(files, store).lines();
    }
    static void removeTheSecondAndAddAnEntry(UsedEditor& editor) {
        editor.form.List2.setListIndex(1).passOver();
        editor.form.Command6.click();
        editor.form.Text5.setText("c:\\d.mp3");
        editor.form.Command20.click();
    }
    /// Changes the list. Returns 0 if the changes are visible in this run and the failed write was
    /// reported; otherwise the number of the check that failed.
    static int changesHold(UsedEditor& editor, const test::FakeNotices& notices) {
        removeTheSecondAndAddAnEntry(editor);
        if (editor.lines() != after) {
            return 1;
        }
        editor.form.unload();
        editor.form.load();
        if (editor.lines() != after) {
            return 2;
        }
        return notices.texts().empty() ? 3 : 0;
    }

    inline static const Paths before{"c:\\a.mp3", "c:\\b.mp3", "c:\\c.mp3"};
    inline static const Paths after{"c:\\a.mp3", "c:\\c.mp3", "c:\\d.mp3"};
    const fakes::TempFolder folder;
};

TEST_F(UnwritableStoreTest, InAReadOnlyFolderTheListIsChangedOnlyForThisRun) {
    storeThree();
    const fs::perms reading = fs::perms::owner_read | fs::perms::owner_exec |
                              fs::perms::group_read | fs::perms::group_exec |
                              fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(folder.path(), reading);
    EXPECT_EQ(test::runUnprivileged([&] {
                  test::FakeFileSystem files;
                  test::FakeNotices notices;
                  IniSettingsStore store(place(), &notices);
                  UsedEditor editor(files, store);
                  return editor.lines() == before ? changesHold(editor, notices) : 4;
              }),
              0);
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_EQ(stored(), before);
}

TEST_F(UnwritableStoreTest, AChangeOnAFullDiskIsStoredByALaterChange) {
    const int answer = test::runInChild([&] {
        if (!test::mountSmallDisk(folder.path().string())) {
            return test::mayNotMount;
        }
        storeThree();
        {
            std::ofstream filler(folder / "filler", std::ios::binary);
            filler << std::string(2 * test::smallDiskBytes, 'x');
        }
        test::FakeFileSystem files;
        test::FakeNotices notices;
        IniSettingsStore store(place(), &notices);
        UsedEditor editor(files, store);
        int failed = changesHold(editor, notices);
        if (failed == 0 && stored() != before) {
            failed = 5;
        }
        fs::remove(folder / "filler");
        editor.form.Text5.setText("c:\\e.mp3");
        editor.form.Command20.click();
        Paths all = after;
        all.emplace_back("c:\\e.mp3");
        return failed != 0 ? failed : stored() == all ? 0 : 6;
    });
    if (answer == test::mayNotMount) {
        GTEST_SKIP() << "this user has no permission to mount a disk";
    }
    EXPECT_EQ(answer, 0);
}

} // namespace
} // namespace sonarith
