// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_widget.h"

#include <QApplication>
#include <QMenu>

#include "ui/popup_place.h"
#include "ui/tree_fixture.h"

namespace sonarith {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using TreeWidgetTest = TreeFixture;

// Mouse.

TEST_F(TreeWidgetTest, AClickIsReportedAsAPressAndAReleaseOnTheNode) {
    pressAt(first);
    releaseAt(first);
    EXPECT_THAT(log, ElementsAre("down left one.wav", "up left one.wav"));
}

TEST_F(TreeWidgetTest, AClickBelowAllNodesIsReportedWithoutANode) {
    QTest::mouseClick(widget().viewport(), Qt::LeftButton, {}, QPoint(50, 290));
    EXPECT_THAT(log, ElementsAre("down left nothing", "up left nothing"));
}

TEST_F(TreeWidgetTest, AClickSelectsNothingIfNoHandlerSelectsTheNode) {
    pressAt(first);
    releaseAt(first);
    EXPECT_FALSE(widget().selectionModel()->hasSelection());
}

TEST_F(TreeWidgetTest, AClickOnTheBranchIndicatorExpandsOrCollapsesTheNodeAndIsNotReported) {
    const QRect row = widget().visualRect(indexOf(wav));
    const QPoint sign(row.left() - 8, row.center().y());
    QTest::mouseClick(widget().viewport(), Qt::LeftButton, {}, sign);
    EXPECT_FALSE(widget().isExpanded(indexOf(wav)));
    QTest::mouseClick(widget().viewport(), Qt::LeftButton, {}, sign);
    EXPECT_TRUE(widget().isExpanded(indexOf(wav)));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeWidgetTest, TheReleaseIsReportedEvenIfThePressOpenedAMenu) {
    QMenu menu(&window);
    menu.addAction(QStringLiteral("Exit"));
    tree.onMouseDown = [&](MouseButtons, NodeRef) {
        menu.popup(PopupPlace::current());
    };
    pressAt(first, Qt::RightButton);
    ASSERT_TRUE(menu.isVisible());
    EXPECT_EQ(menu.pos(), widget().viewport()->mapToGlobal(placeOf(first)));
    const QPoint at = menu.mapFromGlobal(widget().viewport()->mapToGlobal(placeOf(first)));
    QTest::mouseRelease(&menu, Qt::RightButton, {}, at);
    EXPECT_THAT(log, ElementsAre("up right one.wav"));
}

TEST_F(TreeWidgetTest, AReleaseWithoutAPressOnTheTreeIsNotReported) {
    QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeWidgetTest, ADoubleClickIsReportedAfterThePressAndReleaseOfItsFirstClick) {
    const QPoint at = widget().viewport()->mapTo(&window, placeOf(first));
    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, at);
    EXPECT_THAT(log,
                ElementsAre("down left one.wav", "up left one.wav", "double", "up left one.wav"));
}

TEST_F(TreeWidgetTest, ADoubleClickIsReportedEvenIfItsFirstPressOpenedTheEditor) {
    editOnPress();
    bool editorWasOpen = false;
    tree.onMouseUp = [&](MouseButtons, NodeRef node) {
        note("up", {}, node);
        editorWasOpen = editorWasOpen || editor();
    };
    const QPoint at = widget().viewport()->mapTo(&window, placeOf(first));
    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, at);
    EXPECT_TRUE(editorWasOpen);
    EXPECT_THAT(log, ElementsAre("up one.wav", "double", "up one.wav"));
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(tree.editedNode(), nullptr);
}

TEST_F(TreeWidgetTest, AClickInTheEditorAfterTheDoubleClickIntervalIsHandledByTheEditor) {
    editOnPress();
    pressAt(first);
    releaseAt(first);
    ASSERT_NE(editor(), nullptr);
    // This click is too late to complete a double click: the release above has advanced QTest's
    // timestamps by the double-click interval, and the last argument advances them by 600 ms.
    QTest::mouseClick(editor(), Qt::LeftButton, {}, QPoint(30, 5), 600);
    EXPECT_NE(editor(), nullptr);
    EXPECT_THAT(log, ElementsAre("up left one.wav"));
}

TEST_F(TreeWidgetTest, ADoubleClickOnAnExpandedCollectionCollapsesIt) {
    const QPoint at = widget().viewport()->mapTo(&window, placeOf(collection));
    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, at);
    EXPECT_FALSE(widget().isExpanded(indexOf(collection)));
    EXPECT_THAT(log, Contains("double"));
}

// Keys.

TEST_F(TreeWidgetTest, ArrowKeysSelectNothingAndTheReturnAndSpaceKeysClickTheCurrentRow) {
    tree.setSelectedItem(wav).passOver();
    key(Qt::Key_Down);
    EXPECT_EQ(widget().currentIndex(), indexOf(first));
    EXPECT_EQ(tree.selectedItem(), wav);
    EXPECT_EQ(widget().selectionModel()->selectedIndexes(), QModelIndexList{indexOf(wav)});
    key(Qt::Key_Return);
    key(Qt::Key_Down);
    key(Qt::Key_Space);
    EXPECT_THAT(log, ElementsAre("down left one.wav", "up left one.wav", "down left two.wav",
                                 "up left two.wav"));
}

TEST_F(TreeWidgetTest, ControlReturnIsADoubleClickEvenIfItsFirstClickOpensTheEditor) {
    tree.setSelectedItem(first).passOver();
    editOnPress();
    key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_THAT(log, ElementsAre("up left one.wav", "double", "up left one.wav"));
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(TreeWidgetTest, F2ClicksTheCurrentNodeAndOpensTheEditor) {
    tree.setSelectedItem(wav).passOver();
    editOnPress();
    key(Qt::Key_Down);
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(tree.editedNode(), first);
    EXPECT_EQ(editor()->selectedText(), "one.wav");
    EXPECT_THAT(log, ElementsAre("up left one.wav"));
}

TEST_F(TreeWidgetTest, TheMenuKeyIsReportedAsARightClickOnTheCurrentNode) {
    tree.setSelectedItem(second).passOver();
    QPoint place;
    tree.onMouseDown = [&](MouseButtons b, NodeRef node) {
        note("down", b, node);
        place = PopupPlace::current();
    };
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(1, 1),
                              widget().viewport()->mapToGlobal(QPoint(1, 1)));
    QCoreApplication::sendEvent(widget().viewport(), &menuKey);
    EXPECT_THAT(log, ElementsAre("down right two.wav", "up right two.wav"));
    EXPECT_EQ(place, widget().viewport()->mapToGlobal(placeOf(second)));
}

TEST_F(TreeWidgetTest, AContextMenuEventCausedByTheMouseIsNotReported) {
    QContextMenuEvent byMouse(QContextMenuEvent::Mouse, placeOf(first),
                              widget().viewport()->mapToGlobal(placeOf(first)));
    QCoreApplication::sendEvent(widget().viewport(), &byMouse);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(TreeWidgetTest, ASelectionByAScreenReaderIsReportedAsAClick) {
    widget().selectionModel()->select(indexOf(second), QItemSelectionModel::Select);
    QCoreApplication::processEvents();
    EXPECT_THAT(log, ElementsAre("down left two.wav", "up left two.wav"));
    EXPECT_FALSE(widget().selectionModel()->hasSelection())
        << "the widget must show the selection of its control, which is empty";
}

} // namespace
} // namespace sonarith
