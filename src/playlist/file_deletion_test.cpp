// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/file_operations.h"

#include <gmock/gmock.h>

#include "playlist/file_deletion_fixture.h"

namespace sonarith {
namespace {

using test::deletionQuestion;
using test::FakeFileSystem;
using test::FileDeletionTest;
using test::noDataBox;
using test::ShownBox;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(FileDeletionTest, DeletesTheFileAfterAQuestionAndRemovesTheEntryAfterAReport) {
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

TEST_F(FileDeletionTest, DoesNothingForAnEmptyOrBlankPath) {
    openThree();
    for (const char* nothing : {"", "  "}) {
        remove(nothing);
    }
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_THAT(disk.log, IsEmpty());
}

TEST_F(FileDeletionTest, AfterTheAnswerNoOrCancelOnlyTheShownLengthHasChanged) {
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

TEST_F(FileDeletionTest, AnEmptyFileThatCannotBeDeletedIsReportedAsDeletedAndLosesItsEntry) {
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

TEST_F(FileDeletionTest, ThePathOfAnEmptyFileThatCannotBeDeletedStaysInText5IfNoEntryIsRemoved) {
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

TEST_F(FileDeletionTest, AMissingFileIsReportedAsDeletedAndKeepsItsEntry) {
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

TEST_F(FileDeletionTest, AMissingFileThatIsRecreatedDuringTheReportLosesItsEntry) {
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
    // No entry matches and none is selected: the list stays unchanged, the text boxes are cleared.
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB, pathC));
    EXPECT_THAT(store.writes, ElementsAre(test::StoreWrite{"music", "-1", ""}));
    EXPECT_EQ(editor.Text5.text(), "");
    EXPECT_THAT(boxes4(), Each(""));
}

TEST_F(FileDeletionTest, TheSelectedEntryIsRemovedIfNoEntryMatchesThePath) {
    openThree();
    addMp3("c:\\other.mp3", "Other");
    choose(2);
    remove("c:\\other.mp3");
    EXPECT_FALSE(disk.fileExists("c:\\other.mp3"));
    EXPECT_TRUE(disk.fileExists(pathC));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
}

TEST_F(FileDeletionTest, RemovesTheFirstEntryThatMatchesThePath) {
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    // Entries are wildcard patterns: the second and the third entry match pathB.
    open({pathA, "c:\\*b.mp3", pathB});
    select(2);
    remove(pathB);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
}

TEST_F(FileDeletionTest, SelectingTheEntryOfTheDeletedFileRunsTheClickHandler) {
    openThree();
    choose(0);
    remove(pathB);
    // The deletion selects the entry of pathB before it removes the entry. The click handler then
    // tries to read the deleted file and shows noDataBox.
    EXPECT_THAT(boxes.shown, ElementsAre(deletionQuestion, deleted(pathB), noDataBox));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathC));
    EXPECT_EQ(editor.Text5.text(), "");
    EXPECT_THAT(boxes4(), Each(""));
}

TEST_F(FileDeletionTest, TheTextBoxesAndTheEntryAreKeptDuringTheReport) {
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

// Entries are wildcard patterns: "[live]" matches only one character, so the entry does not match
// its own path. If no entry matches, the selected entry is removed.
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
