// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the playlist editor within the whole application: how it is opened and closed, and how it
// adds files to the work tree.
#include "app/application.h"

#include <gmock/gmock.h>

#include "support/application_bench.h"
#include "support/mp3_bytes.h"

namespace sonarith {
namespace {

using test::ApplicationBench;
using test::commonHeader;
using test::Mp3Bytes;
using testing::ElementsAre;

struct PlaylistBench : ApplicationBench {
    const std::string song = "c:\\music\\song.mp3";
    FrmPlayList& editor = windows.frmPlayList;

    PlaylistBench() : ApplicationBench({1000, 1000}) {
        files.addFile(song, Mp3Bytes(48'000).header(1, commonHeader).content);
        store.put("music", "HowMany", "1");
        store.put("music", "1", song);
        application.start();
    }
};

TEST(PlaylistEditor, IsOpenedByAButtonOrAMenuEntryAndShowsTheStoredList) {
    for (const bool byMenu : {false, true}) {
        PlaylistBench bench;
        EXPECT_FALSE(bench.editor.loaded());
        if (byMenu) {
            bench.form.mnuPlaylist.click();
        } else {
            bench.form.C5555555.click();
        }
        EXPECT_TRUE(bench.editor.visible());
        EXPECT_EQ(bench.editor.List2.list(0), bench.song);
        EXPECT_EQ(bench.editor.List2.listCount(), 1);
    }
}

TEST(PlaylistEditor, AddsAClickedFileToTheWorkTreeIfTheCheckBoxIsTicked) {
    PlaylistBench bench;
    bench.form.C5555555.click();
    ASSERT_TRUE(bench.editor.Check11.setValue(1).ok());
    bench.editor.List2.choose(0);
    EXPECT_EQ(bench.editor.List1.listCount(), 12);
    EXPECT_EQ(bench.form.List2.list(0), bench.song);
    bench.select(bench.song);
    EXPECT_EQ(bench.form.TreeView1.selectedItem()->text(), bench.song);
}

TEST(PlaylistEditor, IsClosedAndStopsPlayingWhenAnActionStarts) {
    PlaylistBench bench;
    bench.form.C5555555.click();
    bench.editor.List2.choose(0);
    bench.editor.Command11.click();
    EXPECT_THAT(bench.mp3.log, ElementsAre("SourceFile " + bench.song, "Play"));
    const int controls = bench.mp3.created;
    bench.form.Disablem();
    EXPECT_FALSE(bench.editor.loaded());
    EXPECT_FALSE(bench.editor.visible());
    // The control that played is destroyed and replaced by a new control.
    EXPECT_EQ(bench.mp3.created, controls + 1);
}

TEST(PlaylistEditor, KeepsItsTextsIfItsButtonInTheMainWindowIsClickedAgain) {
    PlaylistBench bench;
    bench.form.C5555555.click();
    bench.editor.Text5.setText(bench.song);
    bench.form.C5555555.click();
    EXPECT_EQ(bench.editor.Text5.text(), bench.song);
    EXPECT_EQ(bench.editor.List2.listCount(), 1);
}

} // namespace
} // namespace sonarith
