// SPDX-License-Identifier: GPL-3.0-or-later
#include <QPushButton>

#include "ui/tree_fixture.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TreeKeyDragTest : public TreeFixture {
  protected:
    TreeKeyDragTest() {
        dragOnMove();
        widget().setFocus();
        tree.setSelectedItem(first).passOver();
        QCoreApplication::processEvents();
        before = rowOf(first);
    }
    void takeUp() {
        key(Qt::Key_X, Qt::ControlModifier);
        EXPECT_THAT(log, ElementsAre("down left one.wav"));
        EXPECT_TRUE(isMarked());
        log.clear();
    }
    QImage rowOf(const NodeRef& node) {
        return widget().viewport()->grab(widget().visualRect(indexOf(node))).toImage();
    }
    /// Whether the row of `first` differs from `before`, the image of this row without a drag. In
    /// that image the row is the current row, which is painted differently from other rows. So the
    /// row is made current for the comparison.
    bool isMarked() {
        const QPersistentModelIndex current = widget().currentIndex();
        goTo(first);
        const bool marked = rowOf(first) != before;
        widget().setCurrentIndex(current);
        return marked;
    }
    void goTo(const NodeRef& node) { widget().setCurrentIndex(indexOf(node)); }

    QImage before;
};

TEST_F(TreeKeyDragTest, ControlXPicksUpTheCurrentNodeAndReturnDropsItAtTheCurrentRow) {
    takeUp();
    EXPECT_FALSE(isDragCursorShown()) << "a drag by keys must not change the pointer";
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    EXPECT_EQ(widget().currentIndex(), indexOf(mp3));
    EXPECT_THAT(log, IsEmpty()) << "arrow keys must cause no event";
    EXPECT_TRUE(isMarked());
    key(Qt::Key_Return);
    // The events are those of a pointer that leaves the dragged node's row and then moves twice
    // over the group "MP3 Files".
    EXPECT_THAT(log,
                ElementsAre("over one.wav", "over MP3 Files", "over MP3 Files", "drop MP3 Files"));
    EXPECT_FALSE(isMarked());
    log.clear();
    key(Qt::Key_Return);
    EXPECT_THAT(log, ElementsAre("down left MP3 Files", "up left MP3 Files"));
}

TEST_F(TreeKeyDragTest, ControlVCausesOneDragOverEventForAnItemOrACollectionAndThenADrop) {
    for (const NodeRef& target : {second, collection}) {
        goTo(first);
        takeUp();
        goTo(target);
        key(Qt::Key_V, Qt::ControlModifier);
        EXPECT_THAT(
            log, ElementsAre("over one.wav", "over " + target->text(), "drop " + target->text()));
        EXPECT_FALSE(isMarked());
        log.clear();
    }
}

TEST_F(TreeKeyDragTest, EscapeCancelsTheDragByKeys) {
    takeUp();
    key(Qt::Key_Down);
    key(Qt::Key_Escape);
    EXPECT_FALSE(isMarked());
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeKeyDragTest, ControlXClicksANodeThatCannotBeDragged) {
    tree.onMouseMove = [this](MouseButtons b, NodeRef node) {
        note("move", b, node);
    };
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_THAT(log, ElementsAre("down left one.wav", "move left one.wav", "up left one.wav"));
    EXPECT_FALSE(isMarked());
    log.clear();
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeKeyDragTest, ControlXClosesTheEditorThatTheMouseDownHandlerOpenedAndStartsADrag) {
    editOnPress();
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(tree.editedNode(), nullptr);
    EXPECT_TRUE(widget().hasFocus());
    goTo(mp3);
    key(Qt::Key_Return);
    EXPECT_EQ(log.back(), "drop MP3 Files");
}

TEST_F(TreeKeyDragTest, ADragByKeysIgnoresTheMouseAndAllUnrelatedKeys) {
    QPushButton button(&window);
    button.show();
    takeUp();
    for (const Qt::Key pressed : {Qt::Key_Space, Qt::Key_F2, Qt::Key_O, Qt::Key_Tab}) {
        key(pressed);
    }
    key(Qt::Key_X, Qt::ControlModifier);
    pressAt(second);
    moveTo(mp3);
    releaseAt(mp3);
    pressAt(second, Qt::RightButton);
    releaseAt(second, Qt::RightButton);
    QTest::mouseDClick(widget().viewport(), Qt::LeftButton, {}, placeOf(second));
    releaseAt(second);
    EXPECT_THAT(log, IsEmpty());
    EXPECT_TRUE(widget().hasFocus());
    EXPECT_EQ(widget().currentIndex(), indexOf(first));
    EXPECT_TRUE(isMarked());
}

TEST_F(TreeKeyDragTest, TheLeftAndRightKeysCollapseAndExpandAGroupDuringADragByKeys) {
    takeUp();
    goTo(mp3);
    goTo(wav);
    key(Qt::Key_Left);
    EXPECT_FALSE(widget().isExpanded(indexOf(wav)));
    key(Qt::Key_Right);
    EXPECT_TRUE(widget().isExpanded(indexOf(wav)));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeKeyDragTest, ADragByKeysEndsWhenTheFocusChangesAndWhenADialogOpens) {
    QPushButton button(&window);
    button.show();
    takeUp();
    button.setFocus();
    widget().setFocus();
    EXPECT_FALSE(isMarked());
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(log, IsEmpty());
    takeUp();
    runDialogAnd([] {});
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeKeyDragTest, ADragByKeysDropsNothingIfTheDragOverHandlerCancelsIt) {
    tree.onDragOver = [&](NodeRef node) {
        note("over", {}, node);
        key(Qt::Key_Escape);
    };
    takeUp();
    goTo(mp3);
    key(Qt::Key_Return);
    EXPECT_THAT(log, ElementsAre("over one.wav"));
    EXPECT_FALSE(isMarked());
}

TEST_F(TreeKeyDragTest, WithoutACurrentRowNothingIsDragged) {
    tree.clear();
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_THAT(log, IsEmpty());
}

} // namespace
} // namespace sonarith
