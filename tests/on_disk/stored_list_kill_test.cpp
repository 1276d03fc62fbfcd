// SPDX-License-Identifier: GPL-3.0-or-later
// For each system call of a change to the playlist: a child process changes the playlist in a real
// settings file and is killed at this call. The file must then contain the old or the new list.
#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "on_disk/editor_over.h"
#include "platform/qt/ini_settings_store.h"
#include "support/killed_at_call.h"
#include "support/temp_folder.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using test::KillOutcome;
using testing::AnyOf;

using Editor = test::EditorOver;
using Lines = std::vector<std::string>;

struct Change {
    const char* name;
    void (*make)(Editor& editor);
    Lines after;
};

class StoredListTest : public testing::TestWithParam<Change> {
  protected:
    static QString text(const fs::path& path) { return QString::fromStdString(path.string()); }
    static Lines storedIn(const fs::path& folder) {
        test::FakeFileSystem files;
        IniSettingsStore store(text(folder));
        return Editor(files, store).lines();
    }
    inline static const Lines before{"c:\\a.mp3", "c:\\b.mp3", "c:\\c.mp3"};
};

TEST_P(StoredListTest, AKillAtAnyCallLeavesTheOldOrTheNewList) {
    const fakes::TempFolder original;
    {
        IniSettingsStore store(text(original.path()));
        const StoreTransaction oneStep(store);
        store.SaveSetting(applicationName, playlistSection, "HowMany", "3");
        for (std::size_t i = 0; i < before.size(); ++i) {
            store.SaveSetting(applicationName, playlistSection, std::to_string(i + 1), before[i]);
        }
    }
    int leftBefore = 0;
    int leftAfter = 0;
    int call = 0;
    for (KillOutcome outcome = KillOutcome::killed; outcome == KillOutcome::killed; ++call) {
        const fakes::TempFolder folder;
        fs::copy(original.path(), folder.path());
        test::FakeFileSystem files;
        std::unique_ptr<IniSettingsStore> store;
        std::unique_ptr<Editor> editor;
        outcome = test::killAtCall(
            call,
            [&] {
                store = std::make_unique<IniSettingsStore>(text(folder.path()));
                editor = std::make_unique<Editor>(files, *store);
            },
            [&] { GetParam().make(*editor); });
        ASSERT_NE(outcome, KillOutcome::failed) << "call " << call;
        const Lines left = storedIn(folder.path());
        ASSERT_THAT(left, AnyOf(before, GetParam().after)) << "call " << call;
        ++(left == before ? leftBefore : leftAfter);
    }
    EXPECT_GT(leftBefore, 5) << "more than five kills must precede the replacement of the file";
    // The last run, in which the child is not killed, counts as well.
    EXPECT_GT(leftAfter, 1) << "a kill must follow the replacement of the file";
}

INSTANTIATE_TEST_SUITE_P(Changes, StoredListTest,
                         testing::Values(Change{"DelistingByTheButton",
                                                [](Editor& editor) {
                                                    editor.form.List2.setListIndex(1).passOver();
                                                    editor.form.Command6.click();
                                                },
                                                {"c:\\a.mp3", "c:\\c.mp3"}},
                                         Change{"DelistingOfADeletedFile",
                                                [](Editor& editor) {
                                                    editor.form.List2.setListIndex(0).passOver();
                                                    editor.entries.CompactPlayList().passOver();
                                                },
                                                {"c:\\b.mp3", "c:\\c.mp3"}},
                                         Change{
                                             "Adding",
                                             [](Editor& editor) {
                                                 editor.form.Text5.setText("c:\\d.mp3");
                                                 editor.form.Command20.click();
                                             },
                                             {"c:\\a.mp3", "c:\\b.mp3", "c:\\c.mp3", "c:\\d.mp3"}}),
                         [](const auto& change) { return std::string(change.param.name); });

} // namespace
} // namespace sonarith
