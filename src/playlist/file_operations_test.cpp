// SPDX-License-Identifier: GPL-3.0-or-later
// Tests renaming; file_deletion_test.cpp tests deleting.
#include "playlist/file_operations.h"

#include <gmock/gmock.h>

#include <optional>

#include "support/playlist_world.h"

namespace sonarith {
namespace {

using test::FakeFileSystem;
using test::ShownBox;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class FileRenameTest : public test::PlaylistWorld {
  protected:
    const std::string target = "c:\\music\\new.mp3";

    void rename(const std::string& path, const std::optional<std::string>& choice) {
        editor.Text5.setText(path);
        dialog.choices = {choice};
        editor.Command2.click();
    }
    [[nodiscard]] bool triedToRename() const {
        return testing::Matches(Contains(StartsWith("rename ")))(disk.log);
    }
    static ShownBox question(const std::string& title) {
        return {"The filename you picked already exists. Do you want to overwrite the existing "
                "file?",
                BoxIcon::warning, BoxButtons::yesNoCancel, title};
    }
};

TEST_F(FileRenameTest, RenamesTheFileAndTheShownEntryButNotTheStoredEntry) {
    addMp3(pathA, "Title A");
    open({pathB, pathA});
    rename(pathA, target);
    EXPECT_TRUE(disk.fileExists(target));
    EXPECT_FALSE(disk.fileExists(pathA));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathB, target));
    EXPECT_EQ(editor.Text5.text(), target);
    EXPECT_THAT(store.writes, IsEmpty());
    EXPECT_THAT(boxes.shown, IsEmpty());
    // The store has the old name until an entry is delisted, so the next load of the window shows
    // the old name again.
    editor.unload();
    editor.load();
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathB, pathA));
}

TEST_F(FileRenameTest, DelistingAnotherEntryStoresTheNewName) {
    addMp3(pathA, "Title A");
    open({pathA, pathB});
    rename(pathA, target);
    select(1);
    editor.Command6.click();
    EXPECT_THAT(inStore(), ElementsAre(target));
}

TEST_F(FileRenameTest, AddsAnEntryIfTheFileHasNone) {
    addMp3(pathA, "Title A");
    open({pathB});
    rename(pathA, target);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathB, target));
    EXPECT_THAT(inStore(), ElementsAre(pathB, target));
    EXPECT_EQ(editor.Text5.text(), "");
}

TEST_F(FileRenameTest, ShowsTheDialogWithTheEditedPathAndItsBaseName) {
    open({});
    rename("  " + pathA + " ", std::nullopt);
    ASSERT_EQ(dialog.savings.size(), 1U);
    EXPECT_EQ(dialog.savings[0].initialFolder, pathA);
    EXPECT_EQ(dialog.savings[0].fileName, "a");
    EXPECT_THAT(dialog.opened, IsEmpty());
}

TEST_F(FileRenameTest,
       ReplacesTheFirstEntryThatMatchesTheOldPathAndLaterEntriesThatMatchTheNewPath) {
    addMp3(pathA, "Title A");
    open({pathA, pathA, "c:\\music\\n*.mp3"});
    rename(pathA, target);
    // The entries are used as patterns. The first entry matches the old path. The remaining entries
    // are compared with the new path: the third entry matches it, the second does not.
    EXPECT_THAT(lines(editor.List2), ElementsAre(target, pathA, target));
}

TEST_F(FileRenameTest, ABlankBeforeThePathPreventsAMatchSoAnEntryIsAdded) {
    addMp3(pathA, "Title A");
    open({pathA});
    rename(" " + pathA, target);
    EXPECT_TRUE(disk.fileExists(target));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, target));
    EXPECT_THAT(inStore(), ElementsAre(pathA, target));
}

TEST_F(FileRenameTest, ABlankPathOrACancelledDialogOrAnEmptyNameChangesNothing) {
    addMp3(pathA, "Title A");
    open({pathA});
    for (const char* nothing : {"", "  "}) {
        rename(nothing, target);
    }
    EXPECT_THAT(dialog.savings, IsEmpty());
    rename(pathA, std::nullopt);
    rename(pathA, "");
    EXPECT_EQ(dialog.savings.size(), 2U);
    EXPECT_FALSE(triedToRename());
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_EQ(editor.Text5.text(), pathA);
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(FileRenameTest, DoesNothingForAFileNameOfFewerThanFourCharacters) {
    open({});
    rename("mp3", target);
    EXPECT_THAT(dialog.savings, IsEmpty());
    EXPECT_FALSE(triedToRename());
}

TEST_F(FileRenameTest, AsksAboutAnExistingTargetAndNeverOverwritesThatFile) {
    for (const BoxAnswer answer : {BoxAnswer::yes, BoxAnswer::no, BoxAnswer::cancel}) {
        addMp3(pathA, "Title A");
        addMp3(pathB, "Title B");
        const auto before = disk.content(pathB);
        open({pathA, pathB});
        boxes.shown.clear();
        boxes.answers = {answer};
        disk.log.clear();
        rename(pathA, pathB);
        EXPECT_THAT(boxes.shown, ElementsAre(question(pathB)));
        EXPECT_EQ(triedToRename(), answer == BoxAnswer::yes);
        EXPECT_EQ(disk.content(pathB), before);
        EXPECT_TRUE(disk.fileExists(pathA));
        EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathB));
        EXPECT_EQ(editor.Text5.text(), pathA);
        EXPECT_THAT(store.writes, IsEmpty());
        editor.unload();
    }
}

TEST_F(FileRenameTest, DoesNotAskAboutATargetWhoseDateCannotBeRead) {
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    disk.failWith(FakeFileSystem::Operation::fileDate, pathB, ErrorNumber::permissionDenied);
    open({pathA});
    rename(pathA, pathB);
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_TRUE(triedToRename());
    EXPECT_TRUE(disk.fileExists(pathA));
}

TEST_F(FileRenameTest, ARenameThatFailsChangesNothing) {
    addMp3(pathA, "Title A");
    open({pathA});
    rename(pathA, "c:\\nowhere\\new.mp3");
    disk.failWith(FakeFileSystem::Operation::rename, pathA, ErrorNumber::permissionDenied);
    rename(pathA, target);
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA));
    EXPECT_EQ(editor.Text5.text(), pathA);
    EXPECT_THAT(boxes.shown, IsEmpty());
    rename("c:\\music\\gone.mp3", target);
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(FileRenameTest, TheDialogKeepsTheBaseNameAfterACancelledRename) {
    addMp3(pathA, "Title A");
    open({});
    rename(pathA, std::nullopt);
    // The user also cancels the dialog that cmdHdr1 shows. The edited file is read nevertheless,
    // because the dialog's FileName is not empty.
    editor.cmdHdr1.click();
    EXPECT_EQ(dialog.opened.at(0).fileName, "a");
    EXPECT_EQ(editor.Text4(2).text(), "Title A");
}

TEST_F(FileRenameTest, AfterARenameTheNextDialogShowsTheNewPath) {
    addMp3(pathA, "Title A");
    open({});
    rename(pathA, target);
    editor.cmdHdr1.click();
    EXPECT_EQ(dialog.opened.at(0).fileName, target);
}

TEST_F(FileRenameTest, IfTheEditedPathChangesDuringTheQuestionTheNewlyEditedFileIsRenamed) {
    addMp3(pathA, "Title A");
    addMp3(pathB, "Title B");
    addMp3(pathC, "Title C");
    open({pathA, pathB});
    boxes.answers = {BoxAnswer::yes};
    boxes.whileUp = [&](const ShownBox&) {
        EXPECT_TRUE(disk.removeFile(pathC).ok());
        editor.Text5.setText(pathB);
    };
    rename(pathA, pathC);
    EXPECT_TRUE(disk.fileExists(pathA));
    EXPECT_FALSE(disk.fileExists(pathB));
    EXPECT_TRUE(disk.fileExists(pathC));
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA, pathC));
}

TEST_F(FileRenameTest, ARenameEndsIfItsDialogFails) {
    addMp3(pathA, "Title A");
    open({pathA});
    dialog.failure = Error{ErrorNumber::badFileName, "Bad file name or number"};
    rename(pathA, target);
    EXPECT_EQ(dialog.savings.size(), 1U);
    EXPECT_FALSE(triedToRename());
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_THAT(lines(editor.List2), ElementsAre(pathA));
    EXPECT_EQ(editor.Text5.text(), pathA);
}

// At its end, a rename clicks the button "Add to PlayList", which adds the new path unless an entry
// matches it. Entries are wildcard patterns: "[live]" matches only one character, so the renamed
// entry does not match its own path. The path is added a second time.
TEST_F(FileRenameTest, ATargetWithABracketGetsASecondEntry) {
    const std::string bracketed = "c:\\music\\a [live].mp3";
    addMp3(pathA, "Title A");
    open({pathA, pathB});
    rename(pathA, bracketed);
    EXPECT_THAT(lines(editor.List2), ElementsAre(bracketed, pathB, bracketed));
    EXPECT_THAT(inStore(), ElementsAre(pathA, pathB, bracketed));
    EXPECT_EQ(editor.Text5.text(), "");
}

// As a pattern, an entry with "[live]" does not match its own path. So a rename of its file leaves
// the entry unchanged and adds an entry for the new path.
TEST_F(FileRenameTest, AnEntryWithABracketIsNotReplaced) {
    const std::string bracketed = "c:\\music\\a [live].mp3";
    addMp3(bracketed, "Title A");
    open({bracketed});
    rename(bracketed, target);
    EXPECT_TRUE(disk.fileExists(target));
    EXPECT_THAT(lines(editor.List2), ElementsAre(bracketed, target));
    EXPECT_THAT(inStore(), ElementsAre(bracketed, target));
}

} // namespace
} // namespace sonarith
