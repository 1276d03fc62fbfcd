// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/list_box_view.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "ui/popup_place.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class ListBoxViewTest : public testing::Test {
  protected:
    ListBoxViewTest() {
        for (const char* line : {"one", "two", "three"}) {
            model.addItem(line);
        }
        model.onClick = [this] {
            log.push_back("click " + model.text());
        };
        model.onMouseDown = [this](MouseButtons buttons) {
            log.emplace_back(buttons.left ? "down left" : "down right");
        };
        view.resize(200, 200);
        parent.resize(220, 220);
        parent.show();
        parent.activateWindow();
        flush();
    }
    /// Waits until the view's model has announced (rowsInserted) all lines that were added.
    void flush() {
        EXPECT_TRUE(QTest::qWaitFor([&] { return rows() == model.listCount(); }));
    }
    int rows() { return view.model()->rowCount(); }
    QPoint placeOf(int row) { return view.visualRect(view.model()->index(row, 0)).center(); }
    void click(int row, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(view.viewport(), button, {}, placeOf(row));
    }
    std::vector<int> selectedRows() {
        std::vector<int> chosen;
        for (const QModelIndex& index : view.selectionModel()->selectedIndexes()) {
            chosen.push_back(index.row());
        }
        return chosen;
    }

    std::vector<std::string> log;
    Form form{"frmsearch"};
    ListBox model{form, "lstfiles"};
    QWidget parent;
    ListBoxView view{model, "Files found", ListBoxView::LineTips::whenCut, &parent};
};

TEST_F(ListBoxViewTest, ShowsTheLinesAndTheCurrentLine) {
    EXPECT_EQ(view.model()->index(1, 0).data().toString(), "two");
    EXPECT_EQ(view.accessibleName(), "Files found");
    EXPECT_TRUE(selectedRows().empty());
    model.setListIndex(2).passOver();
    EXPECT_THAT(selectedRows(), ElementsAre(2));
    model.setListIndex(-1).passOver();
    EXPECT_TRUE(selectedRows().empty());
}

TEST_F(ListBoxViewTest, EveryClickOnALineChoosesTheLineAndThenReportsThePress) {
    click(1);
    click(1);
    EXPECT_THAT(log, ElementsAre("click two", "down left", "click two", "down left"));
}

TEST_F(ListBoxViewTest, TheSecondPressOfADoubleClickChoosesNoLine) {
    click(1);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, placeOf(1));
    EXPECT_THAT(log, ElementsAre("click two", "down left"));
}

TEST_F(ListBoxViewTest, ARightPressChoosesNoLineAndSetsThePositionOfMenus) {
    click(0);
    log.clear();
    QPoint place;
    model.onMouseDown = [&](MouseButtons) {
        log.emplace_back("down");
        place = PopupPlace::current();
    };
    click(2, Qt::RightButton);
    EXPECT_THAT(log, ElementsAre("down"));
    EXPECT_EQ(model.listIndex(), 0);
    EXPECT_EQ(place, view.viewport()->mapToGlobal(placeOf(2)));
}

TEST_F(ListBoxViewTest, TheMenuKeyIsReportedAsARightPress) {
    model.setListIndex(1).passOver();
    log.clear();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(view.viewport(), &key);
    QContextMenuEvent mouse(QContextMenuEvent::Mouse, placeOf(1), QPoint());
    QCoreApplication::sendEvent(view.viewport(), &mouse);
    EXPECT_THAT(log, ElementsAre("down right"));
}

TEST_F(ListBoxViewTest, APressBelowTheLinesChoosesNoLine) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(50, 190));
    EXPECT_THAT(log, ElementsAre("down left"));
    EXPECT_EQ(model.listIndex(), -1);
}

TEST_F(ListBoxViewTest, CursorKeysChooseALineAndSpaceChoosesItAgain) {
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_End);
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Up);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_THAT(log, ElementsAre("click three", "click two", "click two"));
}

TEST_F(ListBoxViewTest, WithoutACurrentLineACursorKeyChoosesTheFirstLine) {
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_THAT(log, ElementsAre("click one"));
}

TEST_F(ListBoxViewTest, TheCopyKeyCopiesTheTextOfTheCurrentLine) {
    model.setListIndex(2).passOver();
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "three");
}

TEST_F(ListBoxViewTest, TheSelectedRowFollowsTheCurrentLineWhenLinesAreAddedOrRemoved) {
    model.setListIndex(1).passOver();
    model.addItem("first", 0).passOver();
    EXPECT_THAT(selectedRows(), ElementsAre(2));
    model.removeItem(0).passOver();
    EXPECT_THAT(selectedRows(), ElementsAre(1));
    model.removeItem(1).passOver();
    EXPECT_TRUE(selectedRows().empty());
    EXPECT_EQ(model.listIndex(), -1);
    model.clear();
    EXPECT_EQ(rows(), 0);
    EXPECT_THAT(log, ElementsAre("click two"));
}

TEST_F(ListBoxViewTest, LinesAddedAtTheEndAreAnnouncedInOneSignal) {
    QSignalSpy announced(view.model(), &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 1000; ++i) {
        model.addItem("line");
    }
    model.removeItem(1002).passOver();
    model.removeItem(0).passOver();
    EXPECT_EQ(rows(), 2);
    flush();
    EXPECT_EQ(announced.count(), 1);
    EXPECT_EQ(rows(), 1001);
}

TEST_F(ListBoxViewTest, TheFirstNewLinesAreAnnouncedAtTheNextEventAndLaterLinesInGroups) {
    QTest::qWait(50);
    model.addItem("four");
    model.addItem("five");
    QCoreApplication::processEvents();
    EXPECT_EQ(rows(), 5);
    // Lines that are added one by one for 100 ms, as by a search, are announced in groups.
    QSignalSpy announced(view.model(), &QAbstractItemModel::rowsInserted);
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 100) {
        model.addItem("line");
        QCoreApplication::processEvents();
    }
    EXPECT_GE(announced.count(), 1);
    EXPECT_LE(announced.count(), time.elapsed() / 30 + 1);
}

TEST_F(ListBoxViewTest, ANewLineThatIsMadeCurrentIsShownAtOnce) {
    model.addItem("four");
    model.setListIndex(3).passOver();
    EXPECT_THAT(selectedRows(), ElementsAre(3));
}

TEST_F(ListBoxViewTest, AClickChoosesTheLineThatTheRowShowsEvenWhileChangesArePending) {
    ListBoxView gathering(model, "Folders", ListBoxView::LineTips::whenCut, &parent,
                          ListBoxView::Gathered::changes);
    gathering.resize(200, 200);
    gathering.show();
    gathering.setFocus();
    const auto rowPlace = [&](int row) {
        return gathering.visualRect(gathering.model()->index(row, 0)).center();
    };
    model.addItem("new", 1).passOver();
    model.setSelected(2, true).passOver();
    ASSERT_EQ(gathering.model()->rowCount(), 3);
    QTest::mouseClick(gathering.viewport(), Qt::LeftButton, {}, rowPlace(1));
    EXPECT_EQ(model.text(), "two");
    EXPECT_EQ(gathering.currentIndex().data().toString(), "two");
    // At a cursor key, the pending changes are announced first. So the key moves from "two" to the
    // line that is now above it, which is "new".
    QTest::keyClick(&gathering, Qt::Key_Up);
    EXPECT_EQ(model.text(), "new");
    EXPECT_EQ(gathering.model()->rowCount(), 4);
    EXPECT_EQ(gathering.currentIndex().data().toString(), "new");
    // After the current line is removed, no row is selected, even while the removal is pending.
    model.removeItem(1).passOver();
    EXPECT_TRUE(gathering.selectionModel()->selectedIndexes().empty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return gathering.model()->rowCount() == 3; }));
    EXPECT_TRUE(gathering.selectionModel()->selectedIndexes().empty());
}

TEST_F(ListBoxViewTest, AChangedTextIsAnnouncedForItsRowOnly) {
    QSignalSpy edited(view.model(), &QAbstractItemModel::dataChanged);
    model.setList(1, "2").passOver();
    ASSERT_EQ(edited.count(), 1);
    EXPECT_EQ(edited[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(view.model()->index(1, 0).data().toString(), "2");
}

TEST_F(ListBoxViewTest, AMarkedLineIsPaintedDifferentlyAndDoesNotBecomeCurrent) {
    const QImage before =
        view.viewport()->grab(view.visualRect(view.model()->index(1, 0))).toImage();
    model.setSelected(1, true).passOver();
    EXPECT_NE(view.viewport()->grab(view.visualRect(view.model()->index(1, 0))).toImage(), before);
    EXPECT_EQ(model.listIndex(), -1);
}

TEST_F(ListBoxViewTest, VisibleLinesKeepTheirPositionsWhenLinesAboveAreAddedOrRemoved) {
    for (int i = 0; i < 1000; ++i) {
        model.addItem("line " + std::to_string(i));
    }
    flush();
    view.verticalScrollBar()->setValue(500);
    const QString top = view.indexAt(QPoint(5, 5)).data().toString();
    model.addItem("new", 0).passOver();
    EXPECT_EQ(view.indexAt(QPoint(5, 5)).data().toString(), top);
    model.removeItem(3).passOver();
    EXPECT_EQ(view.indexAt(QPoint(5, 5)).data().toString(), top);
}

TEST_F(ListBoxViewTest, OnlyAShortenedLineHasItsTextAsToolTip) {
    model.setToolTip("PlayList");
    const std::string longLine = "c:\\" + std::string(300, 'x') + "<b>.mp3";
    model.setList(1, longLine).passOver();
    const auto tipAt = [&](int row) {
        QToolTip::hideText();
        QHelpEvent ask(QEvent::ToolTip, placeOf(row), view.viewport()->mapToGlobal(placeOf(row)));
        QCoreApplication::sendEvent(view.viewport(), &ask);
        return QToolTip::text().toStdString();
    };
    EXPECT_EQ(tipAt(0), "PlayList");
    EXPECT_THAT(tipAt(1), testing::HasSubstr("xxx&lt;b&gt;.mp3"));
}

TEST_F(ListBoxViewTest, AClickHandlerMayClearTheList) {
    model.onClick = [this] {
        model.clear();
    };
    click(1);
    EXPECT_EQ(rows(), 0);
    EXPECT_THAT(log, ElementsAre("down left"));
}

TEST_F(ListBoxViewTest, AScreenReaderReadsTheLinesAndCanClickALineBySelectingIt) {
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), "Files found");
    ASSERT_EQ(list->childCount(), 3);
    QAccessibleInterface* line = list->child(1);
    EXPECT_EQ(line->role(), QAccessible::ListItem);
    EXPECT_EQ(line->text(QAccessible::Name), "two");
    QAccessibleTableInterface* table = list->tableInterface();
    ASSERT_NE(table, nullptr);
    EXPECT_TRUE(table->selectRow(1));
    EXPECT_TRUE(log.empty())
        << "the click must not run inside the screen reader's call, where a yield is not allowed";
    QCoreApplication::processEvents();
    EXPECT_THAT(log, ElementsAre("click two"));
    EXPECT_EQ(model.listIndex(), 1);
    EXPECT_TRUE(line->state().selected);
}

TEST_F(ListBoxViewTest, AMillionLinesCanBeScrolledToTheLast) {
    for (int i = 0; i < 1'000'000; ++i) {
        model.addItem("c:\\music\\" + std::to_string(i) + ".mp3");
    }
    flush();
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(model.listIndex(), 1'000'002);
    EXPECT_EQ(view.indexAt(placeOf(1'000'002)).data().toString(), "c:\\music\\999999.mp3");
    EXPECT_TRUE(view.viewport()->rect().contains(placeOf(1'000'002)));
    // A row far above the visible area has no position.
    EXPECT_FALSE(view.visualRect(view.model()->index(0, 0)).isValid());
}

} // namespace
} // namespace sonarith
