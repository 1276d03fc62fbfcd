// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/popup_menu.h"

#include <functional>

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string wavFile = "c:\\music\\a.wav";
const std::string mp3File = "c:\\music\\b.mp3";

struct PopupMenuTest : test::WorkTreeWorld {
    PopupMenuTest() {
        disc({"Track  1 - 00:03:05"});
        finder.files[destination]["wav"] = {wavFile};
        finder.files[destination]["mp3"] = {mp3File};
        for (const std::string& path : {wavFile, mp3File}) {
            disk.addFile(path, std::string(200, 'x'));
        }
        tree.showfiles();
    }
    void bareNames() {
        process.settings.showFullPath = 0;
        view.clear();
        tree.showfiles();
    }
    NodeRef addTo(const std::string& group, const std::string& text) {
        return addItem(view, node(group), "p added " + text, text).value();
    }
    /// Opens the popup for the node `at`. Returns which of the popup's entries mnuRemoveDelete,
    /// mnuStart2 and mnuFileRemove are enabled: the letters D, S and R, or "-" for a disabled
    /// entry.
    std::string open(const NodeRef& at) {
        drag.DragNode = at;
        run(form.mnupopup.onOpen);
        return state();
    }
    [[nodiscard]] std::string state() const {
        return std::string(form.mnuRemoveDelete.enabled() ? "D" : "-") +
               (form.mnuStart2.enabled() ? "S" : "-") + (form.mnuFileRemove.enabled() ? "R" : "-");
    }
    void setAll(bool enabled) {
        for (MenuItem* entry : {&form.mnuRemoveDelete, &form.mnuStart2, &form.mnuFileRemove}) {
            entry->setEnabled(enabled);
        }
    }
    void expectFromEitherState(const NodeRef& at, const std::string& expected) {
        for (const bool before : {false, true}) {
            setAll(before);
            EXPECT_EQ(open(at), expected) << at->text();
        }
    }
};

// --- which entries are enabled -----------------------------------------------------------------

TEST_F(PopupMenuTest, AWavCanBeRemovedAndDeletedButNotStarted) {
    expectFromEitherState(node(wavFile), "D-R");
    expectFromEitherState(addTo("WAV Files", "B.WAV"), "D-R");
}

TEST_F(PopupMenuTest, AnMp3CanBeRemovedAndDeletedAndStarted) {
    expectFromEitherState(node(mp3File), "DSR");
    expectFromEitherState(addTo("MP3 Files", "B.Mp3"), "DSR");
}

TEST_F(PopupMenuTest, ATrackCanOnlyBeStarted) {
    expectFromEitherState(node("Track  1 - 00:03:05"), "-S-");
    // Every name that begins with "track" is treated as a track: in mnupopup_Open() the rule for
    // tracks overrides the rule for MP3 files.
    expectFromEitherState(addTo("MP3 Files", "tracking.mp3"), "-S-");
}

TEST_F(PopupMenuTest, AnItemOfAnotherKindDisablesAllThreeEntries) {
    expectFromEitherState(addTo("WAV Files", "notes.txt"), "---");
}

TEST_F(PopupMenuTest, FourGroupsCanBeStarted) {
    for (const char* group :
         {"Available Tracks", "Selected Tracks", "Selected MP3 Files", "MP3 Files"}) {
        expectFromEitherState(node(group), "-S-");
    }
}

TEST_F(PopupMenuTest, ForAGroupOfWavFilesTheEntriesKeepTheirState) {
    open(node(mp3File));
    EXPECT_EQ(open(node("WAV Files")), "DSR");
    open(node(wavFile));
    EXPECT_EQ(open(node("WAV Files")), "D-R");
    open(node("CD Tracks"));
    EXPECT_EQ(open(node("WAV Files")), "---");
}

TEST_F(PopupMenuTest, OnlyMinimizeAndExitAreEnabledForARootNodeOrANullNode) {
    for (const NodeRef& at : {node("CD Tracks"), node("MP3 Files Folder"), NodeRef()}) {
        setAll(true);
        EXPECT_EQ(open(at), "---");
        EXPECT_TRUE(form.mnuMinimize.enabled());
        EXPECT_TRUE(form.mnuExit2.enabled());
    }
}

TEST_F(PopupMenuTest, OpeningStoresTheLevelOfTheNode) {
    open(node("CD Tracks"));
    EXPECT_EQ(drag.DragLevel, 1);
    open(node(wavFile));
    EXPECT_EQ(drag.DragLevel, 3);
    open(nullptr);
    EXPECT_EQ(drag.DragLevel, 0);
}

// --- remove from the list ------------------------------------------------------------------------

TEST_F(PopupMenuTest, RemoveTakesTheFileOutOfTreeAndListButKeepsItOnDisk) {
    press(node(wavFile), {.right = true});
    form.mnuFileRemove.click();
    EXPECT_EQ(node(wavFile), nullptr);
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_TRUE(disk.fileExists(wavFile));
    EXPECT_THAT(disk.log, IsEmpty());
}

TEST_F(PopupMenuTest, RemoveSearchesTheListsInOrderAndStopsAtTheFirstMatch) {
    for (ListBox* list : {&form.List1, &form.List2, &form.List4, &form.List5}) {
        fill(*list, {"x", wavFile, wavFile});
    }
    ListBox* const order[] = {&form.List1, &form.List2, &form.List4, &form.List5};
    for (ListBox* list : order) {
        drag.DragNode =
            addItem(view, node("WAV Files"), "p again " + list->name(), wavFile).value();
        form.mnuFileRemove.click();
        EXPECT_THAT(lines(*list), ElementsAre("x", wavFile)) << list->name();
        drag.DragNode =
            addItem(view, node("WAV Files"), "p twice " + list->name(), wavFile).value();
        form.mnuFileRemove.click();
        EXPECT_THAT(lines(*list), ElementsAre("x")) << list->name();
    }
}

TEST_F(PopupMenuTest, RemoveForANodeWithABareNameKeepsTheFileInItsList) {
    bareNames();
    press(node("b.mp3"), {.right = true});
    form.mnuFileRemove.click();
    EXPECT_EQ(node("b.mp3"), nullptr);
    EXPECT_THAT(lines(form.List2), ElementsAre(mp3File));
}

TEST_F(PopupMenuTest, RemoveIgnoresFilesWithAMixedCaseEndingAndNodesThatAreNotFiles) {
    const NodeRef mixed = addTo("WAV Files", "c.Wav");
    const auto before = outline();
    const int yields = loop.yieldCount();
    for (const NodeRef& at : {mixed, node("WAV Files"), node("Track  1 - 00:03:05"), NodeRef()}) {
        drag.DragNode = at;
        form.mnuFileRemove.click();
    }
    EXPECT_EQ(outline(), before);
    EXPECT_EQ(loop.yieldCount(), yields);
}

TEST_F(PopupMenuTest, RemoveYieldsBeforeItRemovesTheNode) {
    press(node(wavFile), {.right = true});
    const int yields = loop.yieldCount();
    bool nodeExisted = false;
    loop.atYield(1, [&] { nodeExisted = node(wavFile) != nullptr; });
    form.mnuFileRemove.click();
    EXPECT_EQ(loop.yieldCount() - yields, 1);
    EXPECT_TRUE(nodeExisted);
}

TEST_F(PopupMenuTest, OfTwoNodesWithTheSameTextTheFirstIsRemoved) {
    const NodeRef first = node(wavFile);
    drag.DragNode = addItem(view, node("MP3 Files"), "p second", wavFile).value();
    form.mnuFileRemove.click();
    EXPECT_TRUE(first->removed());
    EXPECT_FALSE(drag.DragNode->removed());
}

TEST_F(PopupMenuTest, TheNodesTextIsAPatternForTheListEntries) {
    fill(form.List1, {"x[1].wav", "x1.wav"});
    drag.DragNode = addTo("WAV Files", "x[1].wav");
    form.mnuFileRemove.click();
    EXPECT_EQ(node("x[1].wav"), nullptr);
    EXPECT_THAT(lines(form.List1), ElementsAre("x[1].wav"));
}

// --- remove and delete ---------------------------------------------------------------------------

TEST_F(PopupMenuTest, DeleteRemovesTheNodeAndTheListEntryAndTheFileWithoutAQuestion) {
    press(node(mp3File), {.right = true});
    form.mnuRemoveDelete.click();
    EXPECT_EQ(node(mp3File), nullptr);
    EXPECT_FALSE(disk.fileExists(mp3File));
    EXPECT_THAT(lines(form.List2), IsEmpty());
    EXPECT_TRUE(disk.fileExists(wavFile));
}

TEST_F(PopupMenuTest, DeleteFindsTheListEntryForABareNameUnlikeRemove) {
    bareNames();
    press(node("b.mp3"), {.right = true});
    form.mnuRemoveDelete.click();
    EXPECT_FALSE(disk.fileExists(mp3File));
    EXPECT_THAT(lines(form.List2), IsEmpty());
}

TEST_F(PopupMenuTest, DeleteAcceptsAMixedCaseEndingUnlikeRemove) {
    disk.addFile("c:\\music\\C.Wav", "x");
    fill(form.List1, {"c:\\music\\C.Wav"});
    drag.DragNode = addTo("WAV Files", "c:\\music\\C.Wav");
    form.mnuRemoveDelete.click();
    EXPECT_FALSE(disk.fileExists("c:\\music\\C.Wav"));
    EXPECT_THAT(lines(form.List1), IsEmpty());
}

TEST_F(PopupMenuTest, DeleteIgnoresNodesThatAreNotFiles) {
    const auto before = outline();
    for (const NodeRef& at : {node("WAV Files"), node("Track  1 - 00:03:05"), NodeRef()}) {
        drag.DragNode = at;
        form.mnuRemoveDelete.click();
    }
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(disk.log, IsEmpty());
}

TEST_F(PopupMenuTest, DeleteRemovesNodeAndEntryEvenIfTheFileCannotBeDeleted) {
    disk.failWith(test::FakeFileSystem::Operation::touchForWriting, wavFile,
                  ErrorNumber::permissionDenied);
    press(node(wavFile), {.right = true});
    form.mnuRemoveDelete.click();
    EXPECT_TRUE(disk.fileExists(wavFile));
    EXPECT_EQ(node(wavFile), nullptr);
    EXPECT_THAT(lines(form.List1), IsEmpty());
}

TEST_F(PopupMenuTest, DeleteKeepsAFileThatIsInNoList) {
    form.List1.clear();
    press(node(wavFile), {.right = true});
    form.mnuRemoveDelete.click();
    EXPECT_TRUE(disk.fileExists(wavFile));
    EXPECT_EQ(node(wavFile), nullptr);
    EXPECT_THAT(disk.log, IsEmpty());
}

TEST_F(PopupMenuTest, TheNodesTextIsAPatternForTheFilesToDelete) {
    bareNames();
    for (const char* name : {"c:\\music\\x[1].wav", "c:\\music\\x1.wav"}) {
        disk.addFile(name, "x");
    }
    fill(form.List1, {"c:\\music\\x[1].wav", "c:\\music\\x1.wav"});
    drag.DragNode = addTo("WAV Files", "x[1].wav");
    form.mnuRemoveDelete.click();
    EXPECT_EQ(node("x[1].wav"), nullptr);
    EXPECT_TRUE(disk.fileExists("c:\\music\\x[1].wav"));
    EXPECT_FALSE(disk.fileExists("c:\\music\\x1.wav"));
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\x[1].wav"));
}

TEST_F(PopupMenuTest, OneCommandDeletesOnlyTheFirstOfTwoFilesWithTheSameName) {
    bareNames();
    disk.addFile("c:\\other\\b.mp3", "x");
    fill(form.List4, {"c:\\other\\b.mp3"});
    press(node("b.mp3"), {.right = true});
    form.mnuRemoveDelete.click();
    EXPECT_FALSE(disk.fileExists(mp3File));
    EXPECT_TRUE(disk.fileExists("c:\\other\\b.mp3"));
    EXPECT_THAT(lines(form.List4), ElementsAre("c:\\other\\b.mp3"));
}

TEST_F(PopupMenuTest, TheListEntryIsRemovedEvenIfTheListChangesDuringTheDeletion) {
    press(node(wavFile), {.right = true});
    loop.after(100ms, [this] { putOnTop(form.List1, "c:\\music\\new.wav", form.List7); });
    form.mnuRemoveDelete.click();
    EXPECT_THAT(lines(form.List1), ElementsAre("c:\\music\\new.wav"));
}

TEST_F(PopupMenuTest, AClickOnAnotherNodeDuringADeletionDoesNotRedirectTheDeletion) {
    press(node(wavFile), {.right = true});
    loop.atYield(1, [this] { press(node(mp3File)); });
    form.mnuRemoveDelete.click();
    EXPECT_FALSE(disk.fileExists(wavFile));
    EXPECT_TRUE(disk.fileExists(mp3File));
    EXPECT_NE(node(mp3File), nullptr);
}

/// An event that occurs in one yield of a deletion: in the first yield, before the lists are
/// searched for the file, or in a later yield, after the file has been deleted.
struct EventDuringDeletion {
    const char* what;
    std::function<void(PopupMenuTest&)> event;
    /// Whether the file is deleted even if the event occurs before the search.
    bool fileIsDeletedAtFirstYield;
};

TEST_F(PopupMenuTest, AfterAnEventInsideADeletionTheFilesNodeAndEntryAreGone) {
    const EventDuringDeletion cases[] = {
        {"the tree is emptied", [](PopupMenuTest& t) { t.view.clear(); }, true},
        {"the same command", [](PopupMenuTest& t) { t.form.mnuRemoveDelete.click(); }, true},
        // If one of the next two events occurs in the first yield, it removes the list entry, so
        // the search then finds the file in no list.
        {"the command that keeps the file", [](PopupMenuTest& t) { t.form.mnuFileRemove.click(); },
         false},
        {"the list is emptied", [](PopupMenuTest& t) { t.form.List1.clear(); }, false},
    };
    for (const EventDuringDeletion& meantime : cases) {
        for (int n = 1; n <= 10; ++n) {
            SCOPED_TRACE(meantime.what + std::string(" inside yield ") + std::to_string(n));
            disk.addFile(wavFile, "x");
            view.clear();
            tree.showfiles();
            press(node(wavFile), {.right = true});
            int happened = 0;
            loop.atYield(n, [&] {
                ++happened;
                meantime.event(*this);
            });
            form.mnuRemoveDelete.click();
            EXPECT_EQ(happened, 1);
            EXPECT_EQ(disk.fileExists(wavFile), n == 1 && !meantime.fileIsDeletedAtFirstYield);
            EXPECT_EQ(node(wavFile), nullptr);
            EXPECT_THAT(lines(form.List1), IsEmpty());
            EXPECT_TRUE(disk.fileExists(mp3File));
            EXPECT_THAT(lines(form.List2), ElementsAre(mp3File));
        }
    }
}

TEST_F(PopupMenuTest, ARefreshInAYieldOfADeletionAddsTheNodeAgainExceptInTheFirstYield) {
    for (int n = 1; n <= 10; ++n) {
        SCOPED_TRACE(n);
        disk.addFile(wavFile, "x");
        view.clear();
        tree.showfiles();
        press(node(wavFile), {.right = true});
        loop.atYield(n, [this] { tree.showfiles(); });
        form.mnuRemoveDelete.click();
        EXPECT_FALSE(disk.fileExists(wavFile));
        // The node is removed when the first yield has ended. The fake folder scanner lists the
        // file even after its deletion, so a refresh in a later yield adds the node again.
        EXPECT_EQ(node(wavFile) != nullptr, n > 1);
        EXPECT_THAT(lines(form.List1), IsEmpty());
    }
}

} // namespace
} // namespace sonarith
