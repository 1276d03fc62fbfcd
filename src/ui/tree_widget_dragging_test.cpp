// SPDX-License-Identifier: GPL-3.0-or-later
// Tests dragging nodes with the mouse; tree_widget_key_dragging_test.cpp tests dragging by keys.
#include <QPushButton>
#include <QShortcut>

#include "ui/tree_fixture.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TreeDraggingTest : public TreeFixture {
  protected:
    /// Starts to drag the node `first` and leaves the pointer over the node `second`.
    void beginMouseDrag() {
        dragOnMove();
        pressAt(first);
        moveTo(second);
        EXPECT_TRUE(isDragCursorShown());
        log.clear();
    }
    void sendMove(const QPoint& at, Qt::MouseButtons buttons) {
        QWidget* viewport = widget().viewport();
        QMouseEvent move(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton, buttons,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &move);
    }
    void expectNoDrag() {
        EXPECT_FALSE(isDragCursorShown());
        log.clear();
        moveTo(mp3);
        releaseAt(mp3);
        EXPECT_THAT(log, IsEmpty());
    }
    static constexpr QPoint belowAllNodes{50, 290};
};

TEST_F(TreeDraggingTest, SmallMovementsDuringAClickAreNotReported) {
    pressAt(first);
    movePointer(placeOf(first) + QPoint(2, 1));
    releaseAt(first);
    EXPECT_THAT(log, ElementsAre("down left one.wav", "up left one.wav"));
}

TEST_F(TreeDraggingTest, ADragReportsEachNodeUnderThePointerAndEndsWithADrop) {
    dragOnMove();
    tree.onDragOver = [&](NodeRef node) {
        note("over", {}, node);
        tree.setDropHighlight(node).passOver();
    };
    pressAt(first);
    moveTo(second);
    EXPECT_TRUE(isDragCursorShown());
    EXPECT_EQ(tree.dropHighlight(), second);
    moveTo(mp3);
    EXPECT_EQ(tree.dropHighlight(), mp3);
    movePointer(belowAllNodes);
    releaseAt(mp3);
    EXPECT_THAT(log, ElementsAre("down left one.wav", "over two.wav", "over MP3 Files",
                                 "over nothing", "drop MP3 Files"));
    EXPECT_FALSE(isDragCursorShown());
}

TEST_F(TreeDraggingTest, ADragClosesTheEditorThatThePressOpened) {
    editOnPress();
    dragOnMove();
    pressAt(first);
    ASSERT_NE(editor(), nullptr);
    moveTo(mp3);
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(tree.editedNode(), nullptr);
    releaseAt(mp3);
    EXPECT_THAT(log, ElementsAre("over MP3 Files", "drop MP3 Files"));
}

TEST_F(TreeDraggingTest, ADragContinuesAfterItsHandlerMovesAndRemovesNodes) {
    dragOnMove();
    tree.onDragOver = [&](NodeRef node) {
        note("over", {}, node);
        if (node == mp3) {
            tree.setParent(first, mp3).passOver();
            tree.remove(second).passOver();
        }
    };
    pressAt(first);
    moveTo(second);
    moveTo(mp3);
    QCoreApplication::processEvents();
    moveTo(wav);
    releaseAt(wav);
    EXPECT_THAT(log, ElementsAre("down left one.wav", "over two.wav", "over MP3 Files",
                                 "over WAV Files", "drop WAV Files"));
}

TEST_F(TreeDraggingTest, EscapeEndsADragWithoutADrop) {
    dragOnMove();
    pressAt(first);
    moveTo(second);
    key(Qt::Key_Escape);
    releaseAt(second);
    EXPECT_THAT(log, ElementsAre("down left one.wav", "over two.wav"));
    EXPECT_FALSE(isDragCursorShown());
}

TEST_F(TreeDraggingTest, ADragCannotBeginWithoutAPressedButton) {
    tree.beginDrag();
    EXPECT_FALSE(isDragCursorShown());
}

TEST_F(TreeDraggingTest, EveryMovementOfThePointerOverAGroupOrAnItemIsReported) {
    beginMouseDrag();
    for (const NodeRef& node : {second, mp3}) {
        log.clear();
        moveTo(node);
        movePointer(placeOf(node) + QPoint(1, 0));
        movePointer(placeOf(node) + QPoint(2, 0));
        const std::string over = "over " + node->text();
        EXPECT_THAT(log, ElementsAre(over, over, over));
    }
    releaseAt(mp3);
}

TEST_F(TreeDraggingTest, SeveralMovementsOverACollectionOrOverNoNodeAreReportedOnce) {
    beginMouseDrag();
    for (int i = 0; i < 3; ++i) {
        movePointer(placeOf(collection) + QPoint(i, 0));
    }
    for (int i = 0; i < 3; ++i) {
        movePointer(belowAllNodes + QPoint(i, 0));
    }
    // A pointer outside of the tree is also over no node.
    movePointer(QPoint(-50, 10));
    moveTo(collection);
    moveTo(mp3);
    moveTo(collection);
    EXPECT_THAT(log, ElementsAre("over Folder", "over nothing", "over Folder", "over MP3 Files",
                                 "over Folder"));
    releaseAt(collection);
}

TEST_F(TreeDraggingTest, TheNodeThatADragFirstReachesIsReportedEvenIfThePreviousDragEndedOnIt) {
    dragOnMove();
    for (int i = 0; i < 2; ++i) {
        pressAt(first);
        moveTo(collection);
        releaseAt(collection);
    }
    EXPECT_THAT(log, ElementsAre("down left one.wav", "over Folder", "drop Folder",
                                 "down left one.wav", "over Folder", "drop Folder"));
}

TEST_F(TreeDraggingTest, OtherMouseButtonsAndTheMenuKeyDoNothingDuringADrag) {
    beginMouseDrag();
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        pressAt(mp3, button);
        releaseAt(mp3, button);
        QTest::mouseDClick(widget().viewport(), button, {}, placeOf(mp3));
        releaseAt(mp3, button);
    }
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(widget().viewport(), &byKey);
    EXPECT_THAT(log, IsEmpty());
    EXPECT_TRUE(isDragCursorShown());
    releaseAt(mp3);
    EXPECT_THAT(log, ElementsAre("drop MP3 Files"));
}

TEST_F(TreeDraggingTest, KeysExceptEscapeDoNothingDuringADrag) {
    QPushButton button(&window);
    button.show();
    QShortcut shortcut(Qt::ALT | Qt::Key_S, &window);
    bool activated = false;
    QObject::connect(&shortcut, &QShortcut::activated, [&] { activated = true; });
    tree.setSelectedItem(wav).passOver();
    widget().setFocus();
    beginMouseDrag();
    for (const Qt::Key pressed :
         {Qt::Key_Return, Qt::Key_Space, Qt::Key_F2, Qt::Key_Down, Qt::Key_Tab, Qt::Key_Backtab}) {
        key(pressed);
    }
    key(Qt::Key_Return, Qt::ControlModifier);
    key(Qt::Key_X, Qt::ControlModifier);
    key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_S, Qt::AltModifier);
    EXPECT_THAT(log, IsEmpty());
    EXPECT_FALSE(activated);
    EXPECT_TRUE(widget().hasFocus());
    EXPECT_EQ(widget().currentIndex(), indexOf(wav));
    EXPECT_TRUE(isDragCursorShown());
    releaseAt(mp3);
    key(Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(activated);
}

TEST_F(TreeDraggingTest, ASelectionByAScreenReaderDoesNothingDuringADrag) {
    beginMouseDrag();
    widget().selectionModel()->select(indexOf(second), QItemSelectionModel::Select);
    QCoreApplication::processEvents();
    EXPECT_THAT(log, IsEmpty());
    releaseAt(mp3);
}

TEST_F(TreeDraggingTest, ADialogEndsADragWithoutADrop) {
    beginMouseDrag();
    runDialogAnd([&] {
        EXPECT_FALSE(isDragCursorShown());
        moveTo(mp3);
        releaseAt(mp3);
    });
    EXPECT_THAT(log, IsEmpty());
    expectNoDrag();
    // The next drag works as usual.
    pressAt(first);
    moveTo(mp3);
    releaseAt(mp3);
    EXPECT_THAT(log, ElementsAre("down left one.wav", "over MP3 Files", "drop MP3 Files"));
}

TEST_F(TreeDraggingTest, ADragEndsIfItsHandlerOpensADialog) {
    beginMouseDrag();
    tree.onDragOver = [&](NodeRef) {
        runDialogAnd([&] { releaseAt(mp3); });
    };
    moveTo(mp3);
    tree.onDragOver = nullptr;
    EXPECT_THAT(log, IsEmpty());
    expectNoDrag();
}

TEST_F(TreeDraggingTest, NoLaterReleaseIsReportedAfterADialogReceivedTheReleaseOfAPress) {
    pressAt(first);
    runDialogAnd([&] { releaseAt(first); });
    log.clear();
    QPushButton button(&window);
    button.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeDraggingTest, AfterAPressThatHidesItsWindowNoReleaseIsReported) {
    tree.onMouseDown = [&](MouseButtons, NodeRef) {
        window.hide();
    };
    pressAt(first);
    window.show();
    QPushButton button(&window);
    button.show();
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeDraggingTest, ADragWhoseReleaseWasLostEndsAtTheNextMovementOrPress) {
    beginMouseDrag();
    sendMove(placeOf(mp3), Qt::NoButton);
    EXPECT_THAT(log, IsEmpty());
    expectNoDrag();
    beginMouseDrag();
    // The button is pressed again, although its release was not received.
    pressAt(mp3);
    EXPECT_THAT(log, IsEmpty());
    expectNoDrag();
}

TEST_F(TreeDraggingTest, ADragEndsWhenItsWindowIsHidden) {
    beginMouseDrag();
    window.hide();
    EXPECT_FALSE(isDragCursorShown());
    window.show();
    expectNoDrag();
}

TEST_F(TreeDraggingTest, ADragEndsWhenAnotherWindowBecomesActive) {
    beginMouseDrag();
    QWidget other;
    other.show();
    other.activateWindow();
    QCoreApplication::processEvents();
    ASSERT_FALSE(window.isActiveWindow());
    expectNoDrag();
}

} // namespace
} // namespace sonarith
