// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/tree_moves.h"

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct TreeMovesTest : test::WorkTreeWorld {
    inline static const std::string t1 = "Track  1 - 00:03:05";
    inline static const std::string t2 = "Track  2 - 00:04:00";
    inline static const std::string t3 = "Track  3 - 00:05:00";
    inline static const std::string wav = "c:\\music\\a.wav";
    inline static const std::string mp3 = "c:\\music\\b.mp3";
    inline static const std::string otherMp3 = "c:\\music\\c.mp3";

    TreeMovesTest() {
        disc({t1, t2, t3});
        finder.files[destination]["wav"] = {wav};
        finder.files[destination]["mp3"] = {otherMp3, mp3};
        tree.showfiles();
    }
    void expectListsUnchanged() const {
        EXPECT_THAT(lines(form.lstTracks), ElementsAre(t1, t2, t3));
        EXPECT_THAT(lines(form.lstRecord), IsEmpty());
        EXPECT_THAT(lines(form.List1), ElementsAre(wav));
        EXPECT_THAT(lines(form.List5), IsEmpty());
        EXPECT_THAT(lines(form.List2), ElementsAre(mp3, otherMp3));
        EXPECT_THAT(lines(form.List4), IsEmpty());
    }
};

TEST_F(TreeMovesTest, ATrackMovesToTheEndOfSelectedTracksAndToTheTopOfLstRecord) {
    doubleClick(t2);
    doubleClick(t1);
    EXPECT_THAT(lines(form.lstRecord), ElementsAre(t1, t2));
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(t2, t1));
    EXPECT_THAT(lines(form.lstTracks), ElementsAre(t3));
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t3));
}

TEST_F(TreeMovesTest, ATrackMovedToSelectedTracksKeepsItsNodeAndLeavesNoDropHighlight) {
    const NodeRef track = node(t2);
    doubleClick(t2);
    EXPECT_EQ(node(t2), track);
    EXPECT_EQ(track->key(), "p " + t2);
    EXPECT_EQ(view.dropHighlight(), nullptr);
    EXPECT_EQ(view.selectedItem(), track);
    EXPECT_EQ(drag.DropTarget, node("Selected Tracks"));
    EXPECT_EQ(drag.DragNode, track);
}

TEST_F(TreeMovesTest, MovingATrackBackRebuildsAvailableTracksInTheOrderOfLstTracks) {
    doubleClick(t1);
    const NodeRef formerSecond = node(t2);
    doubleClick(t1);
    EXPECT_THAT(lines(form.lstTracks), ElementsAre(t2, t3, t1));
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t2, t3, t1));
    EXPECT_THAT(childrenOf("Selected Tracks"), IsEmpty());
    EXPECT_TRUE(formerSecond->removed());
    for (const std::string& line : {t1, t2, t3}) {
        EXPECT_EQ(node(line)->key(), "p name" + line);
        EXPECT_EQ(node(line)->image(), 3);
        EXPECT_EQ(node(line)->selectedImage(), 6);
    }
    EXPECT_EQ(drag.DropTarget, node("Available Tracks"));
    EXPECT_EQ(view.dropHighlight(), nullptr);
}

TEST_F(TreeMovesTest, TheRebuildOfAvailableTracksClearsTheSelection) {
    doubleClick(t1);
    doubleClick(t1);
    EXPECT_EQ(view.selectedItem(), nullptr);
    EXPECT_TRUE(drag.DragNode->removed());
}

TEST_F(TreeMovesTest, ATrackCanMoveBackAndForthRepeatedly) {
    for (int i = 0; i < 20; ++i) {
        doubleClick(t2);
        ASSERT_THAT(childrenOf("Selected Tracks"), ElementsAre(t2));
        doubleClick(t2);
        ASSERT_THAT(childrenOf("Available Tracks"), ElementsAre(t1, t3, t2));
        ASSERT_EQ(lines(form.lstTracks), childrenOf("Available Tracks"));
    }
    EXPECT_EQ(view.count(), 14);
}

TEST_F(TreeMovesTest, MovingATrackBackYieldsAfterEachRebuiltNodeAndOnceAtTheEnd) {
    doubleClick(t1);
    press(node(t1));
    const int before = loop.yieldCount();
    moves.moveSelected();
    EXPECT_EQ(loop.yieldCount() - before, 3 + 1);
}

TEST_F(TreeMovesTest, TheRebuildOfAvailableTracksAlsoRemovesTheFileNodesOfThatGroup) {
    finder.files[destination]["wav"] = {wav, "c:\\music\\new.wav"};
    tree.showfiles();
    ASSERT_THAT(childrenOf("Available Tracks"), Contains("c:\\music\\new.wav"));
    // After a second showfiles() a double click would not move t1's node under "Selected Tracks"
    // (next test), so the test itself moves this node and fills the lists.
    view.setParent(node(t1), node("Selected Tracks")).passOver();
    fill(form.lstTracks, {t2, t3});
    fill(form.lstRecord, {t1});
    doubleClick(t1);
    EXPECT_EQ(node("c:\\music\\new.wav"), nullptr);
    EXPECT_THAT(lines(form.List1), Contains("c:\\music\\new.wav"));
}

TEST_F(TreeMovesTest, AfterARefreshATrackMovesUnderTheNodeThatNowHasTheOldIndexOfSelectedTracks) {
    tree.showfiles();
    ASSERT_EQ(view.node(2)->text(), "WAV Files");
    doubleClick(t1);
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre(wav, t1));
    EXPECT_THAT(lines(form.lstRecord), ElementsAre(t1));
    EXPECT_THAT(childrenOf("Selected Tracks"), IsEmpty());
}

TEST_F(TreeMovesTest, TheEntryOfAWavMovesButItsNodeStays) {
    const auto before = outline();
    doubleClick(wav);
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_THAT(lines(form.List5), ElementsAre(wav));
    EXPECT_EQ(drag.DropTarget, nullptr);
    doubleClick(wav);
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_THAT(lines(form.List5), ElementsAre(wav));
}

TEST_F(TreeMovesTest, AnMp3MovesToTheGroupBeforeItsOwnAndBack) {
    doubleClick(mp3);
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(mp3));
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre(otherMp3));
    EXPECT_THAT(lines(form.List4), ElementsAre(mp3));
    // The double click also clears the list of available files (ListMoves::selectMp3).
    EXPECT_THAT(lines(form.List2), IsEmpty());
    EXPECT_EQ(drag.DropTarget, node("Selected MP3 Files"));
    doubleClick(mp3);
    EXPECT_THAT(childrenOf("Selected MP3 Files"), IsEmpty());
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre(otherMp3, mp3));
    EXPECT_THAT(lines(form.List2), ElementsAre(mp3));
    EXPECT_THAT(lines(form.List4), IsEmpty());
}

TEST_F(TreeMovesTest, TheNodeOfAFileWithBracketsInItsNameMoves) {
    // As a pattern, this name would match only "c:\music\x.mp3".
    const std::string odd = "c:\\music\\[x].mp3";
    addItem(view, node("MP3 Files"), "p odd", odd).passOver();
    doubleClick(odd);
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(odd));
}

TEST_F(TreeMovesTest, TheGroupWavFilesMovesUnderTheCollectionBeforeItsOwn) {
    doubleClick("WAV Files");
    EXPECT_THAT(childrenOf("CD Tracks"),
                ElementsAre("Selected Tracks", "Available Tracks", "WAV Files"));
    EXPECT_THAT(childrenOf("WAV Files Folder"), IsEmpty());
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre(wav));
    expectListsUnchanged();
}

TEST_F(TreeMovesTest, TheGroupMp3FilesMovesUnderWavFilesFolder) {
    doubleClick("MP3 Files");
    EXPECT_THAT(childrenOf("WAV Files Folder"), ElementsAre("WAV Files", "MP3 Files"));
    expectListsUnchanged();
}

TEST_F(TreeMovesTest, TheGroupSelectedMp3FilesStaysBecauseNoCollectionFollowsItsOwn) {
    const auto before = outline();
    doubleClick("Selected MP3 Files");
    EXPECT_EQ(outline(), before);
    expectListsUnchanged();
}

TEST_F(TreeMovesTest, NeitherTheTrackGroupsNorTheCollectionsMove) {
    const auto before = outline();
    for (const char* text : {"Selected Tracks", "Available Tracks", "CD Tracks", "WAV Files Folder",
                             "MP3 Files Folder"}) {
        doubleClick(text);
    }
    EXPECT_EQ(outline(), before);
    expectListsUnchanged();
}

TEST_F(TreeMovesTest, WithoutFullPathsTheNodeMovesAndTheListGetsTheBareName) {
    process.settings.showFullPath = 0;
    view.clear();
    tree.showfiles();
    doubleClick("b.mp3");
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre("b.mp3"));
    EXPECT_THAT(lines(form.List4), ElementsAre("b.mp3"));
}

TEST_F(TreeMovesTest, NothingMovesIfNothingIsSelected) {
    drag.DragNode = node(t1);
    const int before = loop.yieldCount();
    moves.moveSelected();
    EXPECT_EQ(loop.yieldCount(), before);
    expectListsUnchanged();
}

TEST_F(TreeMovesTest, ADoubleClickOutsideTheNodesMovesOnlyTheEntryOfASelectedWav) {
    click(wav);
    const auto before = outline();
    doubleClick(NodeRef());
    EXPECT_EQ(outline(), before);
    EXPECT_EQ(view.selectedItem(), node(wav));
    EXPECT_THAT(lines(form.List5), ElementsAre(wav));
}

TEST_F(TreeMovesTest, MoveSelectedMovesDragNodeAndTheEntryOfTheSelectedNode) {
    view.setSelectedItem(node(t1)).passOver();
    drag.DragNode = node(t3);
    moves.moveSelected();
    EXPECT_THAT(lines(form.lstRecord), ElementsAre(t1));
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(t3));
    EXPECT_EQ(view.selectedItem(), node(t3));
}

TEST_F(TreeMovesTest, MoveSelectedEndsWithAYieldEvenIfTheSelectedNodeStays) {
    const auto yieldsOf = [this](const std::string& text) {
        press(node(text));
        const int before = loop.yieldCount();
        moves.moveSelected();
        return loop.yieldCount() - before;
    };
    EXPECT_EQ(yieldsOf("CD Tracks"), 1);
    EXPECT_EQ(yieldsOf(t1), 1);
    EXPECT_EQ(yieldsOf(mp3), 2); // the removal of the entry from List2 yields, too
}

// --- the move step of a drag -------------------------------------------------------------------

TEST_F(TreeMovesTest, MoveDraggedNodeMovesDragNodeAndTheEntryThatItsArgumentNames) {
    press(node(mp3));
    moves.MoveDraggedNode(otherMp3);
    EXPECT_THAT(lines(form.List4), ElementsAre(otherMp3));
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(mp3));
}

TEST_F(TreeMovesTest, ADraggedMp3LeavesTheOtherMp3EntriesInTheirList) {
    press(node(mp3));
    moves.MoveDraggedNode(mp3);
    EXPECT_THAT(lines(form.List2), ElementsAre(otherMp3));
    EXPECT_THAT(lines(form.List4), ElementsAre(mp3));
}

TEST_F(TreeMovesTest, ADragThatMovesATrackBackRebuildsAvailableTracks) {
    press(node(t1));
    moves.MoveDraggedNode(t1);
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(t1));
    moves.MoveDraggedNode(t1);
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t2, t3, t1));
    EXPECT_EQ(node(t2)->key(), "p name" + t2);
}

TEST_F(TreeMovesTest, MoveDraggedNodeWithAnEmptyTextMovesNothingAndDoesNotYield) {
    press(node(mp3));
    const auto before = outline();
    const int yields = loop.yieldCount();
    moves.MoveDraggedNode("");
    EXPECT_EQ(outline(), before);
    EXPECT_EQ(loop.yieldCount(), yields);
    expectListsUnchanged();
}

// --- events inside the yields ----------------------------------------------------------------

TEST_F(TreeMovesTest, APressInAYieldBeforeTheNodeMovesDeterminesWhichNodeMoves) {
    press(node(mp3));
    loop.atYield(1, [this] { press(node(otherMp3)); });
    moves.moveSelected();
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(otherMp3));
    EXPECT_THAT(lines(form.List4), ElementsAre(mp3));
}

TEST_F(TreeMovesTest, ATreeThatIsEmptiedInAYieldStaysEmptyButTheListEntryMoves) {
    for (int yield = 1; yield <= 6; ++yield) {
        view.clear();
        disc({t1, t2, t3});
        tree.showfiles();
        doubleClick(t1);
        press(node(t1));
        bool ran = false;
        loop.atYield(yield, [&] {
            ran = true;
            view.clear();
        });
        moves.moveSelected();
        loop.yield();
        loop.yield();
        EXPECT_TRUE(ran) << "yield " << yield;
        EXPECT_EQ(view.count(), 0) << "yield " << yield;
        EXPECT_THAT(lines(form.lstTracks), ElementsAre(t2, t3, t1)) << "yield " << yield;
    }
}

TEST_F(TreeMovesTest, TracksRemovedFromLstTracksInAYieldOfTheRebuildGetNoNodes) {
    doubleClick(t1);
    press(node(t1));
    loop.atYield(1, [this] { form.lstTracks.clear(); });
    moves.moveSelected();
    // The node of t2 was added before the first yield.
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t2));
}

TEST_F(TreeMovesTest, ADoubleClickInAYieldOfTheRebuildFinishesBeforeTheRebuildContinues) {
    doubleClick(t1);
    press(node(t1));
    loop.atYield(1, [this] { doubleClick(t2); });
    moves.moveSelected();
    EXPECT_THAT(lines(form.lstRecord), ElementsAre(t2));
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(t2));
    // t2 was removed from the list after its node had been added. t3 then moved to t2's index in
    // the list and was skipped.
    EXPECT_THAT(lines(form.lstTracks), ElementsAre(t3, t1));
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t1));
}

TEST_F(TreeMovesTest, ARefreshInsideAYieldLeavesACompleteTree) {
    doubleClick(mp3);
    press(node(mp3));
    loop.atYield(1, [this] { tree.showfiles(); });
    moves.moveSelected();
    EXPECT_EQ(view.roots().size(), 3U);
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre(otherMp3, mp3));
}

TEST_F(TreeMovesTest, TheRebuildOfAvailableTracksRemovesAHundredThousandFileNodes) {
    constexpr int count = 100'000;
    std::vector<std::string> many;
    for (int i = 0; i < count; ++i) {
        many.push_back("c:\\music\\" + std::to_string(i) + ".wav");
    }
    finder.files[destination]["wav"] = many;
    // The constructor has built the tree once. This second build adds the new files under the group
    // that it has added last, "Available Tracks" (reason: WorkTree::showfiles).
    tree.showfiles();
    ASSERT_GT(node("Available Tracks")->children().size(), 100'000U);
    view.setParent(node(t1), node("Selected Tracks")).passOver();
    fill(form.lstRecord, {t1});
    fill(form.lstTracks, {t2, t3});
    // A removal in quadratic time would make this test very slow.
    doubleClick(t1);
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t2, t3, t1));
}

} // namespace
} // namespace sonarith
