// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/entry_clicks.h"

#include <gmock/gmock.h>

#include <chrono>

#include "support/must_run.h"
#include "support/playlist_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class EntryClicksTest : public test::PlaylistWorld {
  protected:
    /// Ticks the check box "Click on a file to add it to the Files List".
    void tickCheck11() { ASSERT_TRUE(editor.Check11.setValue(1).ok()); }
    /// Whether the work tree contains a node with this text.
    [[nodiscard]] bool inTree(const std::string& text) {
        const TreeView& tree = mainForm.TreeView1;
        for (int i = 1; i <= tree.count(); ++i) {
            if (tree.node(i)->text() == text) {
                return true;
            }
        }
        return false;
    }
};

// --- the click -------------------------------------------------------------------------------

TEST_F(EntryClicksTest, MakesTheClickedFileTheEditedFileAndReadsIt) {
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    open({pathA, pathB});
    choose(1);
    EXPECT_EQ(editor.Text5.text(), pathB);
    EXPECT_EQ(editor.Text4(2).text(), "Title B");
    EXPECT_EQ(editor.List1.listCount(), 12);
    choose(0);
    EXPECT_EQ(editor.Text5.text(), pathA);
    EXPECT_EQ(editor.Text4(2).text(), "Title A");
    EXPECT_THAT(lines(mainForm.List2), IsEmpty());
}

TEST_F(EntryClicksTest, TheEditedPathIsTheEntryWithoutTheBlanksAroundIt) {
    addMp3(pathA, "Title A");
    open({"  " + pathA + " "});
    choose(0);
    EXPECT_EQ(editor.Text5.text(), pathA);
    EXPECT_EQ(editor.Text4(2).text(), "Title A");
}

TEST_F(EntryClicksTest, DoesNothingIfTheListIsEmpty) {
    open({});
    editor.Text5.setText("kept");
    tickCheck11();
    run(editor.List2.onClick);
    EXPECT_EQ(editor.Text5.text(), "kept");
    EXPECT_EQ(loop.yieldCount(), 0);
}

TEST_F(EntryClicksTest, AClickOnTheLineOfAMissingEntryShowsTheNoDataMessage) {
    store.put("music", "HowMany", "1");
    editor.load(); // shows the line "Empty", since the store has no entry 1
    choose(0);
    EXPECT_THAT(boxes.texts(), ElementsAre("File contains no data"));
    EXPECT_EQ(editor.Text5.text(), "");
}

// --- adding to the work tree -----------------------------------------------------------------
// "The main list" is mainForm.List2, the main window's list of MP3 files. "The adder" is the
// FileAdder that adds files to the work tree. Each call of the adder waits 300 ms, so the loop's
// clock shows whether the adder was called.

TEST_F(EntryClicksTest, AddsTheFileToTheWorkTreeIfCheck11IsTicked) {
    addMp3(pathA, "Title A");
    open({pathA});
    tickCheck11();
    choose(0);
    EXPECT_THAT(lines(mainForm.List2), ElementsAre(pathA));
    EXPECT_TRUE(inTree(pathA));
}

TEST_F(EntryClicksTest, TheHeaderIsReadBeforeTheFileIsAdded) {
    addMp3(pathA, "Title A");
    open({pathA});
    tickCheck11();
    loop.atYield(1, test::mustRun([&] { EXPECT_THAT(lines(mainForm.List2), IsEmpty()); }));
    bool shown = false;
    loop.after(200ms, [&] {
        shown = editor.List1.listCount() == 12;
        EXPECT_THAT(lines(mainForm.List2), IsEmpty());
    });
    choose(0);
    EXPECT_TRUE(shown);
}

TEST_F(EntryClicksTest, AFileInTheMainListIsNotAdded) {
    addMp3(pathA, "Title A");
    open({pathA});
    mainForm.List2.addItem(pathA);
    tickCheck11();
    const auto before = loop.now();
    choose(0);
    EXPECT_EQ(loop.now(), before);
    EXPECT_FALSE(inTree(pathA));
}

TEST_F(EntryClicksTest, DoesNotAddAFileThatMatchesAPatternInTheMainList) {
    addMp3(pathA, "Title A");
    open({pathA});
    mainForm.List2.addItem("c:\\*.mp3");
    tickCheck11();
    choose(0);
    EXPECT_FALSE(inTree(pathA));
}

TEST_F(EntryClicksTest, ComparesOnlyAsManyLinesOfTheMainListAsThePlaylistHas) {
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    open({pathA});
    mainForm.List2.addItem("other");
    mainForm.List2.addItem("c:\\music\\A.mp3");
    mainForm.List2.addItem(pathA);
    tickCheck11();
    const auto before = loop.now();
    choose(0);
    // The playlist has one line, so only the first line of the main list is compared and the path
    // is not found. Therefore the adder is called.
    EXPECT_GE(loop.now() - before, 300ms);
    EXPECT_TRUE(inTree(pathA));
    // With three lines in the playlist, the path is found in the third line of the main list.
    editor.List2.addItem(pathB);
    editor.List2.addItem(pathC);
    const auto again = loop.now();
    choose(0);
    EXPECT_EQ(loop.now(), again);
}

TEST_F(EntryClicksTest, AddsTheFileEvenIfTheMainListIsShorterThanThePlaylist) {
    addMp3(pathA, "Title A");
    open({pathA, pathB, pathC});
    tickCheck11();
    choose(0);
    EXPECT_TRUE(inTree(pathA));
}

// Without its blanks, the entry is an empty text. ListBox::list() also returns an empty text for a
// line that does not exist, but such a line must not match the entry.
TEST_F(EntryClicksTest, AnEntryOfBlanksMatchesAnEmptyLineOfTheMainListButNothingInAnEmptyMainList) {
    open({"   "});
    tickCheck11();
    const auto before = loop.now();
    choose(0);
    // The main list is empty, so the adder is called; it adds nothing.
    EXPECT_GE(loop.now() - before, 300ms);
    EXPECT_THAT(lines(mainForm.List2), IsEmpty());
    // An empty line of the main list matches the entry.
    mainForm.List2.addItem("");
    const auto again = loop.now();
    choose(0);
    EXPECT_EQ(loop.now(), again);
}

TEST_F(EntryClicksTest, AFileWhoseEntryHasBlanksIsNotAddedUnderThePathWithoutBlanks) {
    // The tag is read from the path without the blanks, but the adder gets the entry with its
    // blanks.
    addMp3(" " + pathA, "Title");
    addMp3(pathA, "Title");
    open({"  " + pathA});
    tickCheck11();
    choose(0);
    EXPECT_EQ(editor.Text4(2).text(), "Title");
    EXPECT_THAT(lines(mainForm.List2), Not(Contains(pathA)));
}

TEST_F(EntryClicksTest, AddsNothingIfCheck11IsNotTicked) {
    addMp3(pathA, "Title A");
    open({pathA});
    choose(0);
    loop.advance(1s);
    EXPECT_FALSE(inTree(pathA));
    EXPECT_THAT(lines(mainForm.List2), IsEmpty());
}

TEST_F(EntryClicksTest, IfAnotherEntryIsClickedDuringTheYieldOnlyThatEntryIsAdded) {
    // The first click yields before it reads Check11. Then it adds the entry that is selected at
    // that time, which is the second entry.
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    open({pathA, pathB});
    loop.atYield(1, [&] {
        choose(1);
        tickCheck11();
    });
    choose(0);
    EXPECT_THAT(lines(mainForm.List2), ElementsAre(pathB));
    EXPECT_EQ(editor.Text5.text(), pathB);
}

// --- playing ---------------------------------------------------------------------------------

TEST_F(EntryClicksTest, PlaysTheSelectedEntry) {
    open({pathA, "  " + pathB + " "});
    select(1);
    editor.Command11.click();
    EXPECT_THAT(mp3.log, ElementsAre("SourceFile " + pathB, "Play"));
}

TEST_F(EntryClicksTest, PlaysAnotherEntryWithoutSendingAStopFirst) {
    open({pathA, pathB});
    select(0);
    editor.Command11.click();
    select(1);
    editor.Command11.click();
    EXPECT_THAT(mp3.log, ElementsAre("SourceFile " + pathA, "Play", "SourceFile " + pathB, "Play"));
    EXPECT_TRUE(editor.Command11.enabled());
    EXPECT_TRUE(editor.Command12.enabled());
}

TEST_F(EntryClicksTest, PlaysAnEmptyPathIfNothingIsSelected) {
    open({pathA});
    editor.Command11.click();
    EXPECT_THAT(mp3.log, ElementsAre("SourceFile ", "Play"));
}

TEST_F(EntryClicksTest, PlaysNothingForAnEmptyList) {
    open({});
    editor.Command11.click();
    EXPECT_THAT(mp3.log, IsEmpty());
}

TEST_F(EntryClicksTest, AFileThatTheMp3ControlRejectsIsNotPlayed) {
    open({pathA});
    select(0);
    mp3.failSource = Error{ErrorNumber::fileNotFound, "File not found"};
    editor.Command11.click();
    EXPECT_THAT(mp3.log, ElementsAre("SourceFile " + pathA));
}

TEST_F(EntryClicksTest, SendsAStopEvenIfNothingPlays) {
    open({});
    editor.Command12.click();
    mp3.failStop = Error{ErrorNumber::deviceUnavailable, ""};
    editor.Command12.click();
    EXPECT_THAT(mp3.log, ElementsAre("Stop", "Stop"));
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(EntryClicksTest, TheEditorHasAnMp3ControlOfItsOwn) {
    const int before = mp3.created;
    open({pathA});
    EXPECT_NE(&*editor.ActiveMP31, &*windows.Form6.ActiveMP31);
    // An unload of the editor ends playback, because it replaces the editor's MP3 control.
    editor.unload();
    EXPECT_EQ(mp3.created, before + 1);
}

} // namespace
} // namespace sonarith
