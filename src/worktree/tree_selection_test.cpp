// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/tree_selection.h"

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct TreeSelectionTest : test::WorkTreeWorld {
    inline static const std::string t1 = "Track  1 - 00:03:05";
    inline static const std::string t12 = "Track 12 - 00:03:05";
    inline static const std::string wav = "c:\\music\\a.wav";

    std::vector<std::string> popups;
    Connection connection;
    static constexpr MouseButtons right = {.left = false, .right = true};

    TreeSelectionTest() {
        disc({t1, t12});
        finder.files[destination]["wav"] = {wav};
        tree.showfiles();
        connection = form.popupRequested.connect(
            [this](const MenuItem& menu) { popups.push_back(menu.name()); });
    }
};

TEST_F(TreeSelectionTest, APressSelectsAndHighlightsTheNodeUnderThePointer) {
    press(node(t1));
    EXPECT_EQ(drag.DragNode, node(t1));
    EXPECT_EQ(view.selectedItem(), node(t1));
    EXPECT_EQ(view.dropHighlight(), node(t1));
    EXPECT_THAT(popups, IsEmpty());
}

TEST_F(TreeSelectionTest, APressStartsLabelEditingAndYields) {
    const int before = loop.yieldCount();
    press(node(wav));
    EXPECT_EQ(view.editedNode(), node(wav));
    EXPECT_EQ(loop.yieldCount() - before, 1);
}

TEST_F(TreeSelectionTest, APressYieldsEvenIfTheNodeRefusesEditing) {
    const int before = loop.yieldCount();
    press(node(t1));
    EXPECT_EQ(view.editedNode(), nullptr);
    EXPECT_EQ(loop.yieldCount() - before, 1);
}

TEST_F(TreeSelectionTest, APressOutsideTheNodesClearsDragNodeAndKeepsTheSelection) {
    press(node(t1));
    const int before = loop.yieldCount();
    press(nullptr);
    EXPECT_EQ(drag.DragNode, nullptr);
    EXPECT_EQ(view.selectedItem(), node(t1));
    EXPECT_EQ(view.dropHighlight(), node(t1));
    EXPECT_EQ(loop.yieldCount(), before);
    press(nullptr, right);
    EXPECT_THAT(popups, IsEmpty());
}

TEST_F(TreeSelectionTest, ARightPressSelectsTheNodeAndOpensThePopupButNoEditor) {
    press(node(t1));
    const int before = loop.yieldCount();
    press(node(wav), right);
    EXPECT_THAT(popups, ElementsAre("mnupopup"));
    EXPECT_EQ(drag.DragNode, node(wav));
    EXPECT_EQ(view.selectedItem(), node(wav));
    EXPECT_EQ(view.dropHighlight(), node(t1));
    EXPECT_EQ(view.editedNode(), nullptr);
    EXPECT_EQ(loop.yieldCount(), before);
}

TEST_F(TreeSelectionTest, APressOfBothButtonsOpensThePopup) {
    press(node(t1), {.left = true, .right = true});
    EXPECT_THAT(popups, ElementsAre("mnupopup"));
}

TEST_F(TreeSelectionTest, APressedNodeIsAlreadySelectedWhenThePopupOpens) {
    NodeRef selectedThen;
    const Connection looking =
        form.popupRequested.connect([&](const MenuItem&) { selectedThen = view.selectedItem(); });
    press(node(wav), right);
    EXPECT_EQ(selectedThen, node(wav));
}

TEST_F(TreeSelectionTest, ADisabledPopupDoesNotOpenButTheNodeIsSelected) {
    form.Disablem();
    press(node(wav), right);
    EXPECT_THAT(popups, IsEmpty());
    EXPECT_EQ(view.selectedItem(), node(wav));
    form.Enablem();
    press(node(wav), right);
    EXPECT_THAT(popups, ElementsAre("mnupopup"));
}

TEST_F(TreeSelectionTest, APressHighlightsThePressedNodeEvenIfTheLabelEditGuardIsNotEmpty) {
    drag.LabelEditGuard = "x";
    press(node(t1));
    EXPECT_EQ(view.dropHighlight(), node(t1));
}

TEST_F(TreeSelectionTest, AReleaseShowsTheNextActionForANodeOfAnyKind) {
    for (const std::string& text :
         std::vector<std::string>{t1, wav, "Selected Tracks", "CD Tracks", "WAV Files Folder"}) {
        click(text);
        // The text is shown even if the node has no action.
        EXPECT_EQ(form.Label3.caption(), "Next Action:  Process  " + text);
    }
}

TEST_F(TreeSelectionTest, AReleaseWithNothingSelectedChangesNothing) {
    form.Label3.setCaption("as it was");
    process.currentTrack = 5;
    release(nullptr);
    EXPECT_EQ(form.Label3.caption(), "as it was");
    EXPECT_EQ(process.currentTrack, 5);
    EXPECT_EQ(view.selectedItem(), nullptr);
}

TEST_F(TreeSelectionTest,
       AReleaseShowsTheNextActionForTheSelectedNodeThenSelectsTheHighlightedNode) {
    press(node(wav), right);
    view.setDropHighlight(node(t12)).passOver();
    release(node(wav), right);
    EXPECT_EQ(form.Label3.caption(), "Next Action:  Process  " + wav);
    EXPECT_EQ(view.selectedItem(), node(t12));
    EXPECT_EQ(process.currentTrack, 12);
}

TEST_F(TreeSelectionTest, AReleaseWithoutAHighlightKeepsTheSelection) {
    press(node(wav), right);
    ASSERT_EQ(view.dropHighlight(), nullptr);
    release(node(wav), right);
    EXPECT_EQ(view.selectedItem(), node(wav));
    EXPECT_EQ(form.Label3.caption(), "Next Action:  Process  " + wav);
}

TEST_F(TreeSelectionTest, AClickOnATrackMakesItTheCurrentTrackUntilAnotherTrackIsClicked) {
    click(t1);
    EXPECT_EQ(process.currentTrack, 1);
    click(t12);
    EXPECT_EQ(process.currentTrack, 12);
    click("CD Tracks");
    EXPECT_EQ(process.currentTrack, 12);
}

TEST_F(TreeSelectionTest,
       TheCurrentTrackIsReadFromAnyTextThatBeginsWithTrackAndABlankIgnoringCase) {
    const NodeRef group = node("Available Tracks");
    addItem(view, group, "p a", "TRACK 07.mp3").passOver();
    click("TRACK 07.mp3");
    EXPECT_EQ(process.currentTrack, 7);
    // Only two characters of the number are read.
    addItem(view, group, "p e", "Track 123.wav").passOver();
    click("Track 123.wav");
    EXPECT_EQ(process.currentTrack, 12);
    addItem(view, group, "p b", "track of mine.mp3").passOver();
    click("track of mine.mp3");
    EXPECT_EQ(process.currentTrack, 0);
    process.currentTrack = 3;
    addItem(view, group, "p c", "Track_08").passOver();
    click("Track_08");
    EXPECT_EQ(process.currentTrack, 3);
    addItem(view, group, "p d", "Track ").passOver();
    click("Track ");
    EXPECT_EQ(process.currentTrack, 0);
}

TEST_F(TreeSelectionTest, ADoubleClickMovesTheTrackAndHasTheEffectsOfASingleClickToo) {
    doubleClick(t12);
    EXPECT_EQ(form.Label3.caption(), "Next Action:  Process  " + t12);
    EXPECT_EQ(process.currentTrack, 12);
    EXPECT_THAT(lines(form.lstRecord), ElementsAre(t12));
}

TEST_F(TreeSelectionTest, ADoubleClickWithNothingSelectedMovesNothing) {
    doubleClick(NodeRef());
    EXPECT_THAT(lines(form.lstTracks), ElementsAre(t1, t12));
}

TEST_F(TreeSelectionTest, ANodeRemovedInsideTheYieldOfAPressIsNotSelected) {
    loop.atYield(1, [this] { view.remove(node("CD Tracks")).passOver(); });
    form.Label3.setCaption("as it was");
    press(node(t1));
    release(nullptr);
    EXPECT_EQ(view.selectedItem(), nullptr);
    EXPECT_EQ(form.Label3.caption(), "as it was");
    EXPECT_TRUE(drag.DragNode->removed());
    run(view.onDoubleClick);
    EXPECT_THAT(lines(form.lstTracks), ElementsAre(t1, t12));
}

TEST_F(TreeSelectionTest, APressOnARemovedNodeKeepsTheSelection) {
    const NodeRef gone = node(wav);
    press(node(t1));
    view.remove(gone).passOver();
    press(gone);
    EXPECT_EQ(view.selectedItem(), node(t1));
    EXPECT_EQ(drag.DragNode, gone);
}

} // namespace
} // namespace sonarith
