// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the popup menu of the finder's list of found files.
#include "finder/finder_window.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/finder_world.h"
#include "worktree/tree_nodes.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class FoundFilesTest : public testing::Test, protected test::FinderWorld {
  protected:
    FoundFilesTest() {
        popups_ = windows.frmsearch.popupRequested.connect(
            [this](MenuItem& menu) { opened.push_back(menu.name()); });
    }
    void fillResults(const std::vector<std::string>& paths) {
        finder.lstfiles.clear();
        for (const std::string& path : paths) {
            finder.lstfiles.addItem(path);
        }
    }
    void select(int index) { ASSERT_TRUE(finder.lstfiles.setListIndex(index).ok()); }
    void press(MouseButtons buttons) { run(finder.lstfiles.onMouseDown, buttons); }

    std::vector<std::string> opened;

  private:
    Connection popups_;
};

TEST_F(FoundFilesTest, TheMenuOpensOnlyForARightClickWhileAWavOrMp3IsSelected) {
    fillResults({"c:\\a.wav", "c:\\b.MP3", "c:\\c.txt"});
    press({.right = true});
    EXPECT_THAT(opened, IsEmpty()); // nothing is selected
    select(0);
    press({.left = true});
    EXPECT_THAT(opened, IsEmpty());
    press({.right = true});
    EXPECT_THAT(opened, ElementsAre("mnupopup"));
    select(1);
    press({.right = true});
    EXPECT_THAT(opened, SizeIs(2));
    select(2);
    press({.right = true});
    EXPECT_THAT(opened, SizeIs(2));
}

TEST_F(FoundFilesTest, TwoClicksOnSelectForConversionAddTheFileOnceAndKeepItInTheResults) {
    process.settings.showFullPath = 1;
    NodeRef collection;
    addCollection(form.TreeView1, "f Collection 3", "MP3 Files Folder").storeIn(collection);
    addGroup(form.TreeView1, collection, "g Available MP3 Files", mp3FilesText).passOver();
    files.addFile("c:\\m\\a.mp3", std::string(200, 'x'));
    fillResults({"c:\\m\\a.mp3"});
    select(0);
    finder.mnuSeelectfile.click();
    finder.mnuSeelectfile.click();
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\m\\a.mp3"));
    EXPECT_EQ(form.TreeView1.count(), 3);
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\m\\a.mp3"));
}

TEST_F(FoundFilesTest, AWavOfLessThan100BytesIsAddedOnlyToTheMp3List) {
    files.addFile("c:\\m\\a.wav", "short");
    fillResults({"c:\\m\\a.wav"});
    select(0);
    finder.mnuSeelectfile.click();
    // Cmaddfile2() ignores so short a file. After that, showfiles3() deliberately adds a WAV file
    // to the list of MP3 files.
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\m\\a.wav"));
}

TEST_F(FoundFilesTest, RemoveFileRemovesTheLineAndKeepsTheFile) {
    files.addFile("c:\\a.wav");
    fillResults({"c:\\a.wav", "c:\\b.wav"});
    select(0);
    finder.mnuRemoveFile.click();
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\b.wav"));
    finder.mnuRemoveFile.click(); // nothing is selected now
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\b.wav"));
    EXPECT_TRUE(files.fileExists("c:\\a.wav"));
    select(0);
    window.RemoveSelectedFile();
    EXPECT_THAT(lines(finder.lstfiles), IsEmpty());
}

TEST_F(FoundFilesTest, DeleteAsksForConfirmationAndDoesNothingWithoutAYes) {
    for (const BoxAnswer answer : {BoxAnswer::no, BoxAnswer::cancel}) {
        files.addFile("c:\\a.wav");
        fillResults({"c:\\a.wav"});
        select(0);
        boxes.shown.clear();
        boxes.answers = {answer};
        finder.mnuDelete.click();
        EXPECT_THAT(boxes.shown, ElementsAre(test::ShownBox{
                                     "Are you sure you want to delete this file?", BoxIcon::warning,
                                     BoxButtons::yesNoCancel, "Delete File"}));
        EXPECT_TRUE(files.fileExists("c:\\a.wav"));
        EXPECT_THAT(lines(finder.lstfiles), SizeIs(1));
    }
}

TEST_F(FoundFilesTest, DeleteRemovesFileAndLine) {
    files.addFile("c:\\a.wav");
    fillResults({"c:\\a.wav", "c:\\b.wav"});
    select(0);
    boxes.answers = {BoxAnswer::yes};
    finder.mnuDelete.click();
    EXPECT_FALSE(files.fileExists("c:\\a.wav"));
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\b.wav"));
    EXPECT_THAT(boxes.shown, SizeIs(1));
}

TEST_F(FoundFilesTest, DeleteRemovesTheLineEvenIfTheFileCannotBeDeleted) {
    files.addFile("c:\\a.wav");
    files.failWith(test::FakeFileSystem::Operation::removeFile, "c:\\a.wav",
                   ErrorNumber::permissionDenied);
    fillResults({"c:\\a.wav"});
    select(0);
    boxes.answers = {BoxAnswer::yes};
    // A deletion that fails does not yield, so the first yield comes between the deletion and the
    // removal of the line.
    loop.atYield(1, [this] { EXPECT_THAT(lines(finder.lstfiles), SizeIs(1)); });
    const auto begin = loop.now();
    finder.mnuDelete.click();
    // At its end, the handler of mnuDelete calls showfiles3(). Instead of a path, showfiles3()
    // passes the index of the selected line of the results to Cmaddfile2() (here -1: no line is
    // selected). Cmaddfile2() waits 300 ms and then adds nothing, because no file has this name.
    EXPECT_GE(loop.now() - begin, std::chrono::milliseconds(300));
    EXPECT_TRUE(files.fileExists("c:\\a.wav"));
    EXPECT_THAT(lines(finder.lstfiles), IsEmpty());
    EXPECT_THAT(boxes.shown, SizeIs(1));
}

TEST_F(FoundFilesTest, ClosingTheWindowDuringTheQuestionDeletesNothing) {
    files.addFile("c:\\a.wav");
    fillResults({"c:\\a.wav", "c:\\b.wav"});
    select(0);
    boxes.answers = {BoxAnswer::yes};
    boxes.whileUp = [this](const test::ShownBox&) {
        finder.cmdend.click();
    };
    finder.mnuDelete.click();
    EXPECT_TRUE(files.fileExists("c:\\a.wav"));
    EXPECT_FALSE(finder.visible());
    EXPECT_THAT(lines(finder.lstfiles), IsEmpty());
}

TEST_F(FoundFilesTest, IfTheSelectionChangesDuringTheQuestionTheNewlySelectedFileIsDeleted) {
    files.addFile("c:\\a.wav");
    files.addFile("c:\\b.wav");
    fillResults({"c:\\a.wav", "c:\\b.wav"});
    select(0);
    boxes.answers = {BoxAnswer::yes};
    boxes.whileUp = [this](const test::ShownBox&) {
        select(1);
    };
    finder.mnuDelete.click();
    EXPECT_TRUE(files.fileExists("c:\\a.wav"));
    EXPECT_FALSE(files.fileExists("c:\\b.wav"));
    EXPECT_THAT(lines(finder.lstfiles), ElementsAre("c:\\a.wav"));
}

/// Chooses a menu entry for the only result, and closes the window in the n-th yield. Returns
/// whether there was such a yield. `keepsFile`: whether the file must exist afterwards.
bool closesInYield(int n, MenuItem FrmSearch::*entry, bool keepsFile) {
    test::FinderWorld world;
    const std::string path = "c:\\m\\a.mp3";
    world.files.addFile(path, std::string(200, 'x'));
    world.finder.lstfiles.addItem(path);
    EXPECT_TRUE(world.finder.lstfiles.setListIndex(0).ok());
    world.boxes.answers = {BoxAnswer::yes};
    world.finder.show();
    bool closed = false;
    world.loop.atYield(n, [&] {
        closed = true;
        world.finder.unload();
    });
    (world.finder.*entry).click();
    EXPECT_EQ(world.finder.visible(), !closed);
    EXPECT_EQ(world.files.fileExists(path), keepsFile);
    return closed;
}

TEST_F(FoundFilesTest, TheWindowMayBeClosedWhileAFileIsBeingAddedOrDeleted) {
    int n = 1;
    for (; closesInYield(n, &FrmSearch::mnuSeelectfile, true); ++n) {
    }
    EXPECT_GT(n, 1);
    for (n = 1; closesInYield(n, &FrmSearch::mnuDelete, false); ++n) {
    }
    EXPECT_GT(n, 3);
}

} // namespace
} // namespace sonarith
