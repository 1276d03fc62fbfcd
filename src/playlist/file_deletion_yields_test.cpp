// SPDX-License-Identifier: GPL-3.0-or-later
// Tests deletions in whose yields the user acts: clicks an entry, presses a button, edits a text
// box or closes the window. Also tests a deletion while Check11 is ticked.
#include "playlist/file_operations.h"

#include <gmock/gmock.h>

#include <chrono>

#include "playlist/file_deletion_fixture.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::deletionQuestion;
using test::FileDeletionTest;
using test::noDataBox;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(FileDeletionTest, AClickDuringADeletionDelistsTheClickedEntryInstead) {
    openThree();
    choose(0);
    loop.after(100ms, [&] { choose(2); });
    remove(pathA);
    EXPECT_FALSE(disk.fileExists(pathA));
    EXPECT_TRUE(disk.fileExists(pathC));
    // pathC is the edited file when the report appears. So the report names pathC, and the entry of
    // pathC is removed, although the deleted file is pathA.
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, deleted(pathC)));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
    EXPECT_EQ(editor.Text5.text(), "");
}

TEST_F(FileDeletionTest, AfterAClickInAnyYieldTheListMatchesTheStore) {
    const int yields = yieldsOfADeletion();
    ASSERT_GT(yields, 3);
    for (int yield = 1; yield <= yields; ++yield) {
        SCOPED_TRACE("yield " + std::to_string(yield));
        editor.unload();
        openThree();
        choose(0);
        boxes.shown.clear();
        bool clicked = false;
        loop.atYield(yield, [&] {
            choose(2);
            clicked = true;
        });
        remove(pathA);
        EXPECT_TRUE(clicked);
        EXPECT_FALSE(disk.fileExists(pathA));
        EXPECT_TRUE(disk.fileExists(pathB));
        EXPECT_TRUE(disk.fileExists(pathC));
        EXPECT_EQ(lines(editor.List2), inStore());
        EXPECT_EQ(editor.List2.listCount(), 2);
        EXPECT_EQ(editor.Text5.text(), "");
    }
}

// The deletion has no guard against reentry: the user can press any button in its yields.
TEST_F(FileDeletionTest, AfterAnyButtonInAnyYieldTheListMatchesTheStore) {
    const int yields = yieldsOfADeletion();
    ASSERT_GT(yields, 3);
    struct Press {
        const char* name;
        CommandButton FrmPlayList::*button;
    };
    for (const Press& press :
         {Press{"Read header", &FrmPlayList::cmdHdr2}, Press{"...", &FrmPlayList::cmdHdr1},
          Press{"Add", &FrmPlayList::Command20}, Press{"Delist", &FrmPlayList::Command6},
          Press{"Delete", &FrmPlayList::Command10}, Press{"Write tag", &FrmPlayList::cmdTag},
          Press{"Play", &FrmPlayList::Command11}, Press{"Stop", &FrmPlayList::Command12}}) {
        for (int yield = 1; yield <= yields; ++yield) {
            SCOPED_TRACE(std::string(press.name) + " in yield " + std::to_string(yield));
            editor.unload();
            openThree();
            choose(0);
            bool pressed = false;
            loop.atYield(yield, [&] {
                pressed = true;
                boxes.answers = {BoxAnswer::yes};
                (editor.*press.button).click();
            });
            remove(pathA);
            // This deletion may have one yield fewer than yieldsOfADeletion() has counted. If the
            // chosen yield does not occur, the button is pressed after the deletion.
            while (!pressed) {
                loop.yield();
            }
            EXPECT_EQ(lines(editor.List2), inStore());
            EXPECT_TRUE(disk.fileExists(pathB));
            EXPECT_TRUE(disk.fileExists(pathC));
        }
    }
}

// A rename changes an existing entry only on the screen, not in the store. The store matches the
// list after the deletion: near its end, the deletion calls CompactPlayList(), which stores the
// whole list.
TEST_F(FileDeletionTest, AfterARenameDuringTheDeletionTheListMatchesTheStore) {
    const std::string target = "c:\\music\\new.mp3";
    const int yields = yieldsOfADeletion();
    for (int yield = 1; yield < yields; ++yield) {
        SCOPED_TRACE("yield " + std::to_string(yield));
        editor.unload();
        disk.removeFile(target).passOver();
        openThree();
        choose(0);
        loop.atYield(yield, [&] {
            editor.Text5.setText(pathC);
            dialog.choices = {target};
            editor.Command2.click();
        });
        remove(pathA);
        EXPECT_TRUE(disk.fileExists(target));
        EXPECT_EQ(lines(editor.List2), inStore());
        EXPECT_EQ(editor.List2.listCount(), 2);
    }
}

TEST_F(FileDeletionTest, TheDeletedFileIsNotAddedToTheWorkTree) {
    openThree();
    choose(0);
    ASSERT_TRUE(editor.Check11.setValue(1).ok());
    // If Check11 is ticked, a click on an entry adds the entry's file to the work tree. The
    // deletion selects the entry of pathB, which runs the click handler. The file no longer exists,
    // so the handler shows noDataBox and adds nothing.
    remove(pathB);
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, deleted(pathB), noDataBox));
    EXPECT_THAT(lines(mainForm.List2), IsEmpty());
    EXPECT_THAT(inStore(), ElementsAre(pathA, pathC));
}

TEST_F(FileDeletionTest, ClearingTheBoxOfTheLengthDuringTheDeletionPreventsTheDelisting) {
    openThree();
    choose(1);
    loop.after(100ms, [&] {
        editor.Text4(8).setText("  ");
        editor.Text5.setText(pathB);
    });
    remove(pathB);
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, noDataBox));
    EXPECT_FALSE(disk.fileExists(pathB));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB, pathC));
    EXPECT_EQ(editor.Text5.text(), pathB);
}

TEST_F(FileDeletionTest, TheStoreIsCorrectEvenIfTheWindowIsClosedDuringTheDeletion) {
    openThree();
    choose(1);
    loop.after(100ms, [&] { editor.unload(); });
    remove(pathB);
    EXPECT_THAT(inStore(), ElementsAre(pathA, pathC));
    editor.load();
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathC));
}

} // namespace
} // namespace sonarith
