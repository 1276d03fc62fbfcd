// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/file_operations.h"

#include <gmock/gmock.h>

#include <chrono>

#include "support/playlist_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::FakeFileSystem;
using test::ShownBox;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const ShownBox deletionQuestion{"Are you sure you want to delete this file?", BoxIcon::warning,
                                BoxButtons::yesNoCancel, "Delete File"};
const ShownBox noDataBox{"File contains no data"};

class FileDeletionTest : public test::PlaylistWorld {
  protected:
    /// Opens the window with three files, each of which has an entry.
    void openThree() {
        addMp3(pathA, "Title A");
        addMp3(pathB, "Title B");
        addMp3(pathC, "Title C");
        open({pathA, pathB, pathC});
    }
    void remove(const std::string& path, BoxAnswer answer = BoxAnswer::yes) {
        editor.Text5.setText(path);
        boxes.answers = {answer};
        editor.Command10.click();
    }
    /// The number of yields during the deletion of an entry.
    int yieldsOfADeletion() {
        editor.unload();
        openThree();
        choose(0);
        const int before = loop.yieldCount();
        remove(pathA);
        return loop.yieldCount() - before;
    }
    static ShownBox deleted(const std::string& path) { return {path + " has been Deleted"}; }
};

TEST_F(FileDeletionTest, AsksDeletesReportsAndRemovesTheEntry) {
    openThree();
    choose(1);
    remove(pathB);
    EXPECT_FALSE(disk.fileExists(pathB));
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, deleted(pathB)));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathC));
    EXPECT_THAT(inStore(), ElementsAre(pathA, pathC));
    EXPECT_EQ(store.fileWrites, 1);
    EXPECT_EQ(editor.Text5.text(), "");
    EXPECT_THAT(boxes4(), Each(""));
    EXPECT_THAT(lines(editor.List1), IsEmpty());
}

TEST_F(FileDeletionTest, DoesNothingForBlanks) {
    openThree();
    for (const char* nothing : {"", "  "}) {
        remove(nothing);
    }
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_THAT(disk.log, IsEmpty());
}

TEST_F(FileDeletionTest, TheAnswersNoAndCancelOnlyShowTheLength) {
    for (const BoxAnswer answer : {BoxAnswer::no, BoxAnswer::cancel}) {
        openThree();
        choose(0);
        EXPECT_EQ(editor.Text4(8).text(), "48000 bytes");
        remove(pathA, answer);
        EXPECT_EQ(editor.Text4(8).text(), "48000");
        EXPECT_TRUE(disk.fileExists(pathA));
        EXPECT_EQ(editor.Text5.text(), pathA);
        EXPECT_EQ(editor.List1.listCount(), 12);
        EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB, pathC));
        EXPECT_THAT(store.writes, IsEmpty());
        editor.unload();
    }
}

TEST_F(FileDeletionTest, AnEmptyFileIsDeletedWithoutAQuestionAndKeepsItsEntry) {
    openThree();
    choose(1);
    disk.addFile(pathB, "");
    const int yields = loop.yieldCount();
    remove(pathB);
    EXPECT_THAT(boxes.shown, ElementsAre(noDataBox));
    EXPECT_FALSE(disk.fileExists(pathB));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB, pathC));
    EXPECT_EQ(editor.Text5.text(), pathB);
    EXPECT_EQ(editor.Text4(8).text(), "0");
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_GT(loop.yieldCount(), yields + 1);
}

TEST_F(FileDeletionTest, AnEmptyFileThatCannotBeDeletedIsReportedAsDeletedAndDelisted) {
    openThree();
    choose(1);
    disk.addFile(pathB, "");
    disk.failWith(FakeFileSystem::Operation::removeFile, pathB, ErrorNumber::permissionDenied);
    remove(pathB);
    EXPECT_THAT(boxes.shown, ElementsAre(noDataBox, deleted(pathB)));
    EXPECT_TRUE(disk.fileExists(pathB));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathC));
    EXPECT_EQ(editor.Text5.text(), "");
    EXPECT_THAT(boxes4(), Each(""));
}

TEST_F(FileDeletionTest, AfterAFailedDeletionAFailedCompactionEndsTheProcedure) {
    openThree();
    disk.addFile("c:\\other.mp3", "");
    disk.failWith(FakeFileSystem::Operation::removeFile, "c:\\other.mp3",
                  ErrorNumber::permissionDenied);
    remove("c:\\other.mp3");
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB, pathC));
    EXPECT_EQ(editor.Text5.text(), "c:\\other.mp3");
    EXPECT_EQ(editor.Text4(8).text(), "0");
    EXPECT_EQ(store.held("music", "-1"), "");
}

TEST_F(FileDeletionTest, AMissingFileIsReportedAsDeletedAndTheProcedureEnds) {
    openThree();
    choose(1);
    EXPECT_TRUE(disk.removeFile(pathB).ok());
    disk.log.clear();
    remove(pathB);
    EXPECT_THAT(boxes.shown, ElementsAre(deleted(pathB)));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB, pathC));
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_EQ(editor.Text5.text(), pathB);
    EXPECT_EQ(editor.Text4(8).text(), "48000 bytes");
    EXPECT_THAT(disk.log, IsEmpty());
}

TEST_F(FileDeletionTest, AFileRecreatedDuringTheReportIsDelisted) {
    openThree();
    choose(1);
    EXPECT_TRUE(disk.removeFile(pathB).ok());
    boxes.whileUp = [&](const ShownBox&) {
        addMp3(pathB, "again");
    };
    remove(pathB);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathC));
    EXPECT_TRUE(disk.fileExists(pathB));
}

TEST_F(FileDeletionTest, AFailedDeletionIsReportedLikeASuccessfulDeletion) {
    openThree();
    choose(1);
    for (const auto operation :
         {FakeFileSystem::Operation::touchForWriting, FakeFileSystem::Operation::removeFile}) {
        disk.failWith(operation, pathB, ErrorNumber::permissionDenied);
    }
    remove(pathB);
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, deleted(pathB)));
    EXPECT_TRUE(disk.fileExists(pathB));
    EXPECT_THAT(inStore(), ElementsAre(pathA, pathC));
    EXPECT_EQ(editor.Text5.text(), "");
}

TEST_F(FileDeletionTest, BlanksAroundThePathMatterForTheEntryOnly) {
    openThree();
    remove("  " + pathB + " ");
    EXPECT_FALSE(disk.fileExists(pathB));
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, deleted(pathB)));
    // No entry matches and none is selected: the list stays unchanged, the boxes are cleared.
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB, pathC));
    EXPECT_THAT(store.writes, ElementsAre(test::StoreWrite{"music", "-1", ""}));
    EXPECT_EQ(editor.Text5.text(), "");
    EXPECT_THAT(boxes4(), Each(""));
}

TEST_F(FileDeletionTest, TheSelectedEntryIsRemovedIfNoEntryMatches) {
    openThree();
    addMp3("c:\\other.mp3", "Other");
    choose(2);
    remove("c:\\other.mp3");
    EXPECT_FALSE(disk.fileExists("c:\\other.mp3"));
    EXPECT_TRUE(disk.fileExists(pathC));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
}

TEST_F(FileDeletionTest, SelectsTheFirstEntryThatMatches) {
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    open({pathA, "c:\\*b.mp3", pathB});
    select(2);
    remove(pathB);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
}

TEST_F(FileDeletionTest, SelectingAnotherEntryRunsItsClickHandler) {
    openThree();
    choose(0);
    remove(pathB);
    // The click reads the deleted file.
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, deleted(pathB), noDataBox));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathC));
    EXPECT_EQ(editor.Text5.text(), "");
    EXPECT_THAT(boxes4(), Each(""));
}

TEST_F(FileDeletionTest, ClearsTheBoxesAfterTheReport) {
    openThree();
    choose(1);
    boxes.whileUp = [&](const ShownBox& box) {
        if (box == deleted(pathB)) {
            EXPECT_EQ(editor.Text5.text(), pathB);
            // The length of the file before the deletion.
            EXPECT_EQ(editor.Text4(8).text(), "48000");
            EXPECT_EQ(editor.Text4(2).text(), "Title B");
            EXPECT_EQ(editor.List2.listCount(), 3);
        }
    };
    remove(pathB);
    EXPECT_THAT(boxes.shown, Contains(deleted(pathB)));
}

// --- actions during a deletion ---------------------------------------------------------------

TEST_F(FileDeletionTest, AClickDuringTheDeletionChangesTheEditedFile) {
    openThree();
    choose(0);
    loop.after(100ms, [&] { choose(2); });
    remove(pathA);
    EXPECT_FALSE(disk.fileExists(pathA));
    EXPECT_TRUE(disk.fileExists(pathC));
    // The report names the file that is edited when the report appears. The entry of that file is
    // removed.
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, deleted(pathC)));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
    EXPECT_EQ(editor.Text5.text(), "");
}

TEST_F(FileDeletionTest, AfterAClickInAnyYieldTheListMatchesTheStore) {
    const int yields = yieldsOfADeletion();
    ASSERT_GT(yields, 3);
    for (int yield = 1; yield <= yields; ++yield) {
        SCOPED_TRACE(yield);
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

// The procedure has no guard against reentry: any button may be pressed while it runs.
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
            // The number of yields varies by one. If the yield was not reached, the button is
            // pressed after the deletion.
            while (!pressed) {
                loop.yield();
            }
            EXPECT_EQ(lines(editor.List2), inStore());
            EXPECT_TRUE(disk.fileExists(pathB));
            EXPECT_TRUE(disk.fileExists(pathC));
        }
    }
}

// A rename changes only the list on the screen; the compaction at the end of the deletion stores
// the new name.
TEST_F(FileDeletionTest, ARenameInAnyYieldIsStoredByTheCompaction) {
    const std::string target = "c:\\music\\new.mp3";
    const int yields = yieldsOfADeletion();
    for (int yield = 1; yield < yields; ++yield) {
        SCOPED_TRACE(yield);
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
    // The deletion selects the file's entry, which runs the click handler.
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

TEST_F(FileDeletionTest, TheMessageAboutAnEmptyFileIsShownBeforeItsDeletion) {
    openThree();
    disk.addFile(pathB, "");
    boxes.whileUp = [&](const ShownBox&) {
        EXPECT_TRUE(disk.fileExists(pathB));
        EXPECT_EQ(editor.Text4(8).text(), "0");
    };
    remove(pathB);
    EXPECT_THAT(boxes.shown, ElementsAre(noDataBox));
    EXPECT_FALSE(disk.fileExists(pathB));
}

TEST_F(FileDeletionTest, TheLengthIsReadAgainAfterTheDeletionAndAfterTheReport) {
    openThree();
    choose(1);
    // The file cannot be deleted, and another program changes its length.
    disk.failWith(FakeFileSystem::Operation::removeFile, pathB, ErrorNumber::permissionDenied);
    loop.atYield(1, [&] { disk.addFile(pathB, std::string(200, 'x')); });
    std::vector<std::string> lengths;
    boxes.whileUp = [&](const ShownBox& box) {
        lengths.push_back(editor.Text4(8).text());
        if (box == deleted(pathB)) {
            disk.addFile(pathB, std::string(300, 'x'));
        }
    };
    const auto delisted = editor.List2.listChanged.connect([&](const ListChange&) {
        if (lengths.size() == 2) {
            lengths.push_back(editor.Text4(8).text());
        }
    });
    remove(pathB);
    EXPECT_THAT(lengths, ElementsAre("48000", "200", "300"));
    EXPECT_THAT(boxes4(), Each(""));
}

// An entry with a bracket does not match its own path, so the selected entry is removed instead.
TEST_F(FileDeletionTest, AnEntryWithABracketIsRemovedOnlyIfItIsSelected) {
    const std::string bracketed = "c:\\music\\a [live].mp3";
    addMp3(pathA, "Title A");
    addMp3(bracketed, "Title");
    open({pathA, bracketed});
    choose(1);
    remove(bracketed);
    EXPECT_THAT(inStore(), ElementsAre(pathA));
    addMp3(bracketed, "Title");
    editor.unload();
    open({pathA, bracketed});
    choose(0);
    remove(bracketed);
    EXPECT_FALSE(disk.fileExists(bracketed));
    EXPECT_TRUE(disk.fileExists(pathA));
    EXPECT_THAT(inStore(), ElementsAre(bracketed));
}

} // namespace
} // namespace sonarith
