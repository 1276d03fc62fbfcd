// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/tree_drag_fixture.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// --- starting --------------------------------------------------------------------------------

TEST_F(TreeDragTest, ItemsAndCollectionsAreDraggedAndBecomeTheSelection) {
    for (const std::string& text : {t1, wav, mp3, std::string("CD Tracks")}) {
        SCOPED_TRACE(text);
        observer.drags = 0;
        press(node(text));
        view.setSelectedItem(node("WAV Files")).passOver();
        move({.left = true});
        EXPECT_EQ(observer.drags, 1);
        EXPECT_EQ(view.selectedItem(), node(text));
        EXPECT_EQ(drag.DragLevel, text == "CD Tracks" ? 1 : 3);
    }
}

TEST_F(TreeDragTest, GroupsAreNotDragged) {
    press(node("WAV Files"));
    move({.left = true});
    EXPECT_EQ(observer.drags, 0);
    EXPECT_EQ(drag.DragLevel, 2);
}

TEST_F(TreeDragTest, ADragStartsOnlyIfTheLeftButtonAloneIsDown) {
    press(node(t1));
    for (const MouseButtons down :
         {MouseButtons{}, MouseButtons{.right = true}, MouseButtons{.left = true, .right = true}}) {
        move(down);
    }
    EXPECT_EQ(observer.drags, 0);
    EXPECT_EQ(drag.DragLevel, 0);
}

TEST_F(TreeDragTest, NoDragStartsWhileInDragIsSet) {
    press(node(t1));
    drag.InDrag = true;
    move({.left = true});
    EXPECT_EQ(observer.drags, 0);
}

TEST_F(TreeDragTest, StartingADragDoesNotSetInDrag) {
    press(node(t1));
    move({.left = true});
    EXPECT_FALSE(drag.InDrag);
}

TEST_F(TreeDragTest, AfterAPressOnNoNodeADragMovesNothing) {
    const auto before = outline();
    press(nullptr);
    move({.left = true});
    EXPECT_EQ(observer.drags, 1);
    EXPECT_EQ(drag.DragLevel, 0);
    for (int i = 1; i <= view.count(); ++i) {
        dragOver(view.node(i));
    }
    drop();
    EXPECT_EQ(outline(), before);
}

// --- which nodes accept a drag ---------------------------------------------------------------

struct DragCase {
    std::string dragged;
    std::string target;
    bool isAccepted;
};

struct DragPathTest : TreeDragTest, testing::WithParamInterface<DragCase> {
    static std::vector<DragCase> everyRow() {
        return {{t1, "Selected Tracks", true},
                {t1, t2, true},
                {t1, "Tracker", true},
                {t1, "Available Tracks", false},
                {t1, "WAV Files", false},
                {t1, "MP3 Files", false},
                {t1, wav, false},
                {t1, "track 9", false},
                {wav, "WAV Files", true},
                {wav, "Selected WAV Files", true},
                {wav, "MP3 Files", false},
                {wav, "Selected Tracks", false},
                {wav, mp3, false},
                {wav, "x.ogg", false},
                {mp3, "MP3 Files", true},
                {mp3, "Selected MP3 Files", true},
                {mp3, "WAV Files", false},
                {mp3, "Available Tracks", false},
                // An MP3 file over an MP3 file is refused, unlike a track over a track.
                {mp3, otherMp3, false},
                // A target refuses only nodes whose texts begin with "Track" or end in "wav" or
                // "mp3" (case-sensitive). So no target refuses the next four dragged nodes.
                {"x.WAV", "Available Tracks", true},
                {"x.MP3", "WAV Files", true},
                {"x.ogg", wav, true},
                {"track 9", "MP3 Files", true},
                // The groups for WAV files refuse this node as a track, and the groups for tracks
                // refuse it as a WAV file.
                {"Track.wav", "WAV Files", false},
                {"Track.wav", "Selected Tracks", false},
                {"CD Tracks", "WAV Files Folder", true}};
    }
};

TEST_P(DragPathTest, EachTargetAcceptsOrRefusesTheDraggedNodeAsListed) {
    const DragCase& dragCase = GetParam();
    addGroup(view, node("WAV Files Folder"), "g Selected WAV Files", "Selected WAV Files")
        .passOver();
    for (const char* file : {"x.WAV", "x.MP3", "x.ogg", "Tracker", "track 9", "Track.wav"}) {
        addTo("WAV Files", file);
    }
    beginDrag(dragCase.dragged);
    const NodeRef mark = node("MP3 Files Folder");
    view.setDropHighlight(mark).passOver();
    const int yields = loop.yieldCount();
    dragOver(dragCase.target);
    EXPECT_EQ(loop.yieldCount() > yields, dragCase.isAccepted);
    // If the drag is refused, the highlight is unchanged. If it is accepted, the target (or, if the
    // target is an item, its group) is highlighted, or the move of a track has cleared the
    // highlight.
    EXPECT_EQ(view.dropHighlight() == mark, !dragCase.isAccepted);
}

INSTANTIATE_TEST_SUITE_P(EveryRow, DragPathTest, testing::ValuesIn(DragPathTest::everyRow()));

TEST_F(TreeDragTest, AnOggFileOverAWavFileHighlightsTheGroupOfBoth) {
    const NodeRef odd = addTo("WAV Files", "x.ogg");
    beginDrag(odd);
    dragOver(wav);
    EXPECT_EQ(view.dropHighlight(), node("WAV Files"));
}

TEST_F(TreeDragTest, OverANodeOfTheWrongLevelTheHighlightIsClearedButTheItemMoves) {
    beginDrag(mp3);
    dragOver("CD Tracks");
    EXPECT_EQ(view.dropHighlight(), nullptr);
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(mp3));
    EXPECT_THAT(lines(form.List4), ElementsAre(mp3));
}

TEST_F(TreeDragTest, APointerThatLeavesAllNodesClearsTheHighlightAndMovesTheItemBack) {
    beginDrag(mp3);
    dragOver("Selected MP3 Files");
    dragOver(NodeRef());
    EXPECT_EQ(view.dropHighlight(), nullptr);
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre(otherMp3, mp3));
}

// --- the move of the dragged item before the drop ----------------------------------------------

TEST_F(TreeDragTest, AnAcceptedItemMovesBeforeTheDrop) {
    beginDrag(mp3);
    dragOver("Selected MP3 Files");
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(mp3));
    EXPECT_THAT(lines(form.List4), ElementsAre(mp3));
    EXPECT_THAT(lines(form.List2), ElementsAre(otherMp3));
}

TEST_F(TreeDragTest, ASecondDragEventOverTheItemsNewGroupDoesNothing) {
    beginDrag(mp3);
    dragOver("Selected MP3 Files");
    const int yields = loop.yieldCount();
    dragOver("Selected MP3 Files");
    EXPECT_EQ(loop.yieldCount(), yields);
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(mp3));
}

TEST_F(TreeDragTest, ADragOverBothGroupsMovesTheItemToTheOtherGroupAndBack) {
    beginDrag(mp3);
    dragOver("Selected MP3 Files");
    dragOver("MP3 Files");
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre(otherMp3, mp3));
    EXPECT_THAT(lines(form.List2), ElementsAre(mp3, otherMp3));
    EXPECT_THAT(lines(form.List4), IsEmpty());
}

TEST_F(TreeDragTest, DropTargetIsKeptBetweenDrags) {
    beginDrag(mp3);
    dragOver("Selected MP3 Files");
    drop();
    EXPECT_EQ(drag.DropTarget, node("Selected MP3 Files"));
    // The next drag first passes over the node that DropTarget still refers to. This node has no
    // effect until the pointer has left it.
    beginDrag(otherMp3);
    dragOver("Selected MP3 Files");
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre(otherMp3));
    dragOver("WAV Files");
    dragOver("Selected MP3 Files");
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(mp3, otherMp3));
}

TEST_F(TreeDragTest, ASecondDragEventOverTheSameItemMovesTheTrackBack) {
    beginDrag(t1);
    dragOver(t2);
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(t1));
    EXPECT_EQ(drag.DropTarget, node("Selected Tracks"));
    // The pointer has not left the node of t2. The next event is not ignored, because DropTarget is
    // another node.
    dragOver(t2);
    EXPECT_THAT(childrenOf("Selected Tracks"), IsEmpty());
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t2, t1));
    // The move back has replaced the nodes of "Available Tracks" by new nodes. So the dragged node
    // is removed, and further events move nothing.
    EXPECT_TRUE(drag.DragNode->removed());
    dragOver("Selected Tracks");
    dragOver(t2);
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t2, t1));
    EXPECT_THAT(lines(form.lstTracks), ElementsAre(t2, t1));
    drop();
    EXPECT_THAT(childrenOf("Available Tracks"), ElementsAre(t2, t1));
}

TEST_F(TreeDragTest, AWavsEntryMovesButItsNodeStaysBecauseTheNodesGroupHasNoSibling) {
    beginDrag(wav);
    dragOver("WAV Files");
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_THAT(lines(form.List5), ElementsAre(wav));
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre(wav));
    EXPECT_EQ(drag.DropTarget, nullptr);
}

TEST_F(TreeDragTest, TheEntryWithTheWholePathMovesEvenIfTheNodeShowsOnlyTheFilesName) {
    process.settings.showFullPath = 0;
    view.clear();
    tree.showfiles();
    beginDrag("b.mp3");
    dragOver("Selected MP3 Files");
    EXPECT_THAT(lines(form.List4), ElementsAre(mp3));
    EXPECT_THAT(lines(form.List2), ElementsAre(otherMp3));
}

// --- the drop --------------------------------------------------------------------------------

TEST_F(TreeDragTest, ADropPutsAFileUnderTheHighlightedGroup) {
    beginDrag(mp3);
    dragOver("Selected MP3 Files");
    dragOver("MP3 Files");
    // The file is back in its old group. The drop puts it under the highlighted group instead.
    view.setDropHighlight(node("WAV Files")).passOver();
    drop();
    EXPECT_THAT(childrenOf("WAV Files"), ElementsAre(wav, mp3));
    EXPECT_EQ(view.dropHighlight(), nullptr);
}

TEST_F(TreeDragTest, ADroppedTrackStaysWhereItsMovePutIt) {
    beginDrag(t1);
    dragOver("Selected Tracks");
    EXPECT_EQ(view.dropHighlight(), nullptr);
    drop();
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(t1));
    EXPECT_THAT(lines(form.lstRecord), ElementsAre(t1));
}

TEST_F(TreeDragTest, ADropEndsTheDrag) {
    beginDrag(t1);
    drop();
    EXPECT_EQ(drag.DragNode, nullptr);
    EXPECT_EQ(drag.DragLevel, 0);
}

TEST_F(TreeDragTest, ADropOfANodeOnItselfOrOnNoNodeMovesNothing) {
    const auto before = outline();
    beginDrag(mp3);
    // The press has highlighted the node itself.
    EXPECT_EQ(view.dropHighlight(), node(mp3));
    drop();
    beginDrag(mp3);
    view.setDropHighlight(nullptr).passOver();
    drop();
    EXPECT_EQ(outline(), before);
}

TEST_F(TreeDragTest, ACollectionDroppedOnAnotherCollectionBecomesItsChild) {
    beginDrag("CD Tracks");
    dragOver("WAV Files Folder");
    EXPECT_EQ(view.roots().size(), 3U);
    drop();
    EXPECT_THAT(childrenOf("WAV Files Folder"), ElementsAre("WAV Files", "CD Tracks"));
    EXPECT_EQ(view.roots().size(), 2U);
}

} // namespace
} // namespace sonarith
