// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main_window_view.h"

#include <functional>
#include <set>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

#include "app/resize_layout.h"
#include "platform/qt/dialog_loop.h"
#include "platform/qt/qt_event_loop.h"

namespace sonarith {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class MainWindowViewTest : public testing::Test {
  protected:
    MainWindowViewTest() {
        form.onResize = [this] {
            runResizeLayout(form);
        };
        form.load();
        runResizeLayout(form);
    }
    ~MainWindowViewTest() override {
        while (QWidget* open = QApplication::activePopupWidget()) {
            open->close();
        }
    }
    void show() {
        form.show();
        view.activateWindow();
        QCoreApplication::processEvents();
    }
    QWidget& widget(const char* name) {
        auto* found = view.findChild<QWidget*>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    QRect placeOf(const char* name) { return widget(name).geometry(); }

    QtEventLoop loop;
    ProcessState state;
    Form1 form{loop, state, {}};
    MainWindowView view{form};
};

TEST_F(MainWindowViewTest, TheClientAreaHasItsDesignedSizeBeforeAndAfterTheWindowIsShown) {
    EXPECT_EQ(form.innerWidth(), designWidth);
    EXPECT_EQ(form.innerHeight(), designHeight);
    EXPECT_FALSE(view.isVisible());
    show();
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(widget("client").size(), QSize(266, 366));
    EXPECT_EQ(form.innerHeight(), designHeight);
}

TEST_F(MainWindowViewTest, TheBarsAreAtTheEdgesOfTheWindowAndTheTreeFillsTheRest) {
    show();
    const QRect tool = placeOf("Picture3");
    const QRect activity = placeOf("Picture2");
    const QRect status = placeOf("Picture1");
    const QRect grip = placeOf("Picture5");
    const QRect tree = placeOf("TreeView1");
    EXPECT_EQ(tool.topLeft(), QPoint(0, 0));
    EXPECT_EQ(tool.width(), 266);
    EXPECT_EQ(status.bottom(), 365);
    EXPECT_EQ(activity.bottom() + 1, status.top());
    EXPECT_EQ(grip, QRect(0, tool.height(), 19, activity.top() - tool.height()));
    EXPECT_EQ(tree, QRect(19, tool.height(), 247, activity.top() - tool.height()));
    EXPECT_TRUE(widget("Picture4").isHidden());
    EXPECT_GT(tree.height(), 150);
}

TEST_F(MainWindowViewTest, WithAllBarsHiddenTheTreeHasTheFullHeight) {
    show();
    for (PictureBox* bar : {&form.Picture1, &form.Picture2, &form.Picture3, &form.Picture4}) {
        bar->setVisible(false);
    }
    runResizeLayout(form);
    EXPECT_EQ(placeOf("TreeView1"), QRect(19, 0, 247, 366));
    EXPECT_EQ(placeOf("Picture5"), QRect(0, 0, 19, 366));
    EXPECT_EQ(form.Image3.height(), Twips(366 * 15));
}

TEST_F(MainWindowViewTest, TheCdBarIsBelowTheToolBar) {
    show();
    form.Picture4.setVisible(true);
    runResizeLayout(form);
    EXPECT_EQ(placeOf("Picture4").top(), placeOf("Picture3").height());
    EXPECT_EQ(placeOf("TreeView1").top(), placeOf("Picture4").bottom() + 1);
}

TEST_F(MainWindowViewTest, ALargerWindowEnlargesTheTree) {
    show();
    const QRect before = placeOf("TreeView1");
    view.resize(view.size() + QSize(100, 50));
    QCoreApplication::processEvents();
    EXPECT_EQ(placeOf("TreeView1").size(), before.size() + QSize(100, 50));
    EXPECT_EQ(placeOf("Picture3").width(), 366);
}

TEST_F(MainWindowViewTest, TheWindowCannotBecomeSmallerThanItsBars) {
    show();
    form.Picture4.setVisible(true);
    view.resize(10, 10);
    QCoreApplication::processEvents();
    runResizeLayout(form);
    EXPECT_GT(placeOf("TreeView1").height(), 0);
    EXPECT_GE(placeOf("Picture2").top(), placeOf("TreeView1").bottom());
}

TEST_F(MainWindowViewTest, ControlsThatCanBeVisibleHaveAWidgetWithAnAccessibleName) {
    const char* controls[] = {
        "Picture1", "Picture2", "Picture3",     "Picture4",        "Picture5",  "Picture6",
        "Image3",   "Image4",   "Image5",       "Command5",        "Cmdhelp",   "C5555555",
        "Copt",     "C777",     "Command2",     "CmdSelectAction", "Command11", "Command12",
        "Label5",   "lblCDID",  "lblNumTracks", "Label3",          "Label2",    "ProgressBar1",
        "Status",   "Label33",  "lblStatus",    "TreeView1",       "mnuFile",   "mnupopup"};
    std::set<std::string> names;
    for (const QWidget* child : view.findChildren<QWidget*>()) {
        const std::string name = child->objectName().toStdString();
        names.insert(name);
        // The parts that Qt creates within a widget need no name: screen readers read them as parts
        // of that widget.
        if (!name.empty() && !name.starts_with("qt_")) {
            EXPECT_FALSE(child->accessibleName().isEmpty()) << name;
        }
    }
    for (const char* control : controls) {
        EXPECT_THAT(names, Contains(control));
    }
    EXPECT_EQ(widget("Command5").accessibleName(), "Exit");
    EXPECT_EQ(widget("Image4").accessibleName(), "Destination");
    EXPECT_EQ(widget("lblCDID").accessibleName(), "CD ID:");
}

TEST_F(MainWindowViewTest, TheCancelButtonTheWarningAndTheCdBarAreHiddenAtFirst) {
    show();
    for (const char* name : {"Command2", "Label5", "Command11", "Command12"}) {
        EXPECT_FALSE(widget(name).isVisible()) << name;
    }
    form.Picture4.setVisible(true);
    EXPECT_TRUE(widget("Command11").isVisible());
    EXPECT_FALSE(widget("Label5").isVisible());
}

TEST_F(MainWindowViewTest, ControlsThatAreNeverVisibleHaveNoWidget) {
    for (const char* name : {"cmdStart", "CmdDecoder", "Command8", "Check9", "lstTracks"}) {
        EXPECT_EQ(view.findChild<QWidget*>(name), nullptr) << name;
    }
}

TEST_F(MainWindowViewTest, TheTabKeyReachesEveryButtonAndTheTree) {
    form.Picture4.setVisible(true);
    form.Command2.setVisible(true);
    show();
    widget("TreeView1").setFocus();
    std::set<std::string> reached;
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached.insert(QApplication::focusWidget()->objectName().toStdString());
    }
    EXPECT_THAT(reached, testing::IsSupersetOf({"TreeView1", "Command5", "Cmdhelp", "C5555555",
                                                "Copt", "C777", "Command2", "CmdSelectAction",
                                                "Command11", "Command12"}));
}

TEST_F(MainWindowViewTest, F10OpensTheFirstMenuAndAltWithALetterOpensTheMenuOfTheLetter) {
    show();
    QTest::keyClick(&view, Qt::Key_F10);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(QApplication::activePopupWidget()->objectName(), "mnuFile");
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    QTest::keyClick(&view, Qt::Key_Escape);
    QTest::keyClick(&view, Qt::Key_P, Qt::AltModifier);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(QApplication::activePopupWidget()->objectName(), "mnuPrefs");
}

TEST_F(MainWindowViewTest, F1ClicksTheHelpButtonWhileTheButtonIsEnabled) {
    int calls = 0;
    form.Cmdhelp.onClick = [&] {
        ++calls;
    };
    show();
    QTest::keyClick(&view, Qt::Key_F1);
    EXPECT_EQ(calls, 1);
    form.Disablem();
    QTest::keyClick(&view, Qt::Key_F1);
    EXPECT_EQ(calls, 1);
}

TEST_F(MainWindowViewTest, TheToolTipsOfTheStartAndCancelButtonsNameTheirActions) {
    EXPECT_EQ(widget("CmdSelectAction").toolTip(), "Start the next action");
    EXPECT_EQ(widget("Command2").toolTip(), "Cancel the action that is running");
}

TEST_F(MainWindowViewTest, TheCdIdIsShownInFullAndUsesTheSpaceOfAHiddenWarning) {
    form.lblCDID.setCaption("1234567890");
    form.lblNumTracks.setCaption("12");
    form.Picture4.setVisible(true);
    show();
    const QWidget& identity = widget("lblCDID");
    EXPECT_GE(identity.width(), identity.fontMetrics().horizontalAdvance("1234567890"));
    const int alone = identity.width();
    form.Label5.setVisible(true);
    QCoreApplication::processEvents();
    EXPECT_LT(identity.width(), alone);
}

TEST_F(MainWindowViewTest, TheEndOfALongPathInTheNextActionIsVisible) {
    const std::string path = "Next Action:  Process  c:\\music\\" + std::string(80, 'x');
    form.Label3.setCaption(path + "A.wav");
    show();
    const QImage one = widget("Label3").grab().toImage();
    form.Label3.setCaption(path + "B.wav");
    EXPECT_NE(widget("Label3").grab().toImage(), one) << "the end of the path must be visible";
}

TEST_F(MainWindowViewTest, TheStartButtonHasAMnemonicThatNoMenuUses) {
    show();
    int starts = 0;
    form.CmdSelectAction.onClick = [&] {
        ++starts;
    };
    QTest::keyClick(&view, Qt::Key_S, Qt::AltModifier);
    // The button is shown as pressed for a moment, and then clicks its control.
    EXPECT_TRUE(QTest::qWaitFor([&] { return starts == 1; }));
    EXPECT_EQ(widget("CmdSelectAction").accessibleName(), "Start ");
}

TEST_F(MainWindowViewTest, TheMenuKeyOnANodeCallsTheHandlerOnOpenAndShowsThePopupMenu) {
    show();
    TreeView& tree = form.TreeView1;
    const NodeRef node = tree.add(nullptr, "f", "CD Tracks", 1, 4).value();
    tree.setSelectedItem(node).passOver();
    tree.onMouseDown = [&](MouseButtons buttons, NodeRef at) {
        EXPECT_TRUE(buttons.right);
        EXPECT_EQ(at, node);
        form.popupRequested.emit(form.mnupopup);
    };
    form.mnupopup.onOpen = [&] {
        form.mnuStart2.setEnabled(true);
    };
    auto* viewport = static_cast<QAbstractScrollArea&>(widget("TreeView1")).viewport();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(viewport, &key);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->objectName(), "mnupopup");
    EXPECT_TRUE(menu->actions().constFirst()->isEnabled());
}

TEST_F(MainWindowViewTest, APressOnTheGripIsReportedToTheGripAndNotToTheForm) {
    show();
    int onGrip = 0;
    int onSurface = 0;
    form.Image3.onMouseDown = [&](MouseButtons) {
        ++onGrip;
    };
    form.onMouseDown = [&](MouseButtons) {
        ++onSurface;
    };
    QTest::mouseClick(&widget("Image3"), Qt::LeftButton);
    EXPECT_EQ(onGrip, 1);
    EXPECT_EQ(onSurface, 0);
    // Without a handler, a press on the grip does nothing.
    form.Image3.onMouseDown = nullptr;
    QTest::mouseClick(&widget("Image3"), Qt::LeftButton);
    EXPECT_EQ(onSurface, 0);
}

TEST_F(MainWindowViewTest, NoMenuOpensWhileADialogIsOpen) {
    show();
    QDialog dialog;
    QTimer::singleShot(0, &dialog, [&] {
        view.activateWindow();
        QCoreApplication::processEvents();
        QTest::keyClick(&view, Qt::Key_F10);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_FALSE(widget("menuBar").hasFocus());
        QTest::keyClick(&view, Qt::Key_P, Qt::AltModifier);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        dialog.accept();
    });
    EXPECT_EQ(runDialog(dialog), QDialog::Accepted);
}

/// For each event of a drag, whether the window accepted it.
struct Offered {
    bool onEnter;
    bool onMove;
    bool onDrop;
};

/// Drags a file over the window and drops it.
Offered dropOn(QWidget& window, const char* uri, const std::function<void()>& beforeDrop = {}) {
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), uri);
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
    QDragMoveEvent move(QPoint(51, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
    QDropEvent drop(QPointF(51, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
    // As on a desktop, the enter event and the drop event are not accepted at first.
    enter.ignore();
    drop.ignore();
    QCoreApplication::sendEvent(&window, &enter);
    QCoreApplication::sendEvent(&window, &move);
    if (beforeDrop) {
        beforeDrop();
    }
    QCoreApplication::sendEvent(&window, &drop);
    return {enter.isAccepted(), move.isAccepted(), drop.isAccepted()};
}

TEST_F(MainWindowViewTest, NotifiesOfADroppedDiscImage) {
    show();
    std::vector<std::string> dropped;
    view.onImageDropped = [&](const std::string& path) {
        dropped.push_back(path);
    };
    const Offered song = dropOn(view, "file:///m/song.wav\r\n");
    EXPECT_FALSE(song.onEnter || song.onMove || song.onDrop);
    EXPECT_THAT(dropped, IsEmpty());
    const Offered image = dropOn(view, "file:///m/disc.cue\r\n");
    EXPECT_TRUE(image.onEnter && image.onMove && image.onDrop);
    // The handler does not run inside the drop, because the program from which the file comes waits
    // for the end of the drop.
    EXPECT_THAT(dropped, IsEmpty());
    QCoreApplication::processEvents();
    EXPECT_THAT(dropped, ElementsAre("/m/disc.cue"));
    // The tree must accept no drops, so that the window receives them.
    EXPECT_FALSE(static_cast<QAbstractScrollArea&>(widget("TreeView1")).viewport()->acceptDrops());
}

TEST_F(MainWindowViewTest, ADiscImageIsRefusedWhileTheDriveIsInUse) {
    show();
    std::vector<std::string> dropped;
    view.onImageDropped = [&](const std::string& path) {
        dropped.push_back(path);
    };
    bool accepts = false;
    view.acceptsImages = [&] {
        return accepts;
    };
    const Offered busy = dropOn(view, "file:///m/disc.cue\r\n");
    EXPECT_FALSE(busy.onEnter || busy.onMove || busy.onDrop);
    // The drive is free at first; an action starts while the image is dragged over the window.
    accepts = true;
    const Offered late = dropOn(view, "file:///m/late.cue\r\n", [&] { accepts = false; });
    EXPECT_TRUE(late.onEnter && late.onMove);
    EXPECT_FALSE(late.onDrop);
    dropped.clear();
    QCoreApplication::processEvents();
    EXPECT_THAT(dropped, Contains("/m/late.cue"))
        << "the handler must run, so that the user learns why the image is refused";
}

TEST_F(MainWindowViewTest, ClosingTheWindowUnloadsTheForm) {
    show();
    int queries = 0;
    form.onQueryUnload = [&] {
        ++queries;
    };
    view.close();
    EXPECT_EQ(queries, 1);
    EXPECT_FALSE(form.loaded());
}

TEST_F(MainWindowViewTest, DisablemKeepsTheExitButtonAndTheTreeEnabled) {
    show();
    form.Disablem();
    EXPECT_FALSE(widget("Copt").isEnabled());
    EXPECT_FALSE(view.findChild<QAction*>("mnuFile")->isEnabled());
    EXPECT_TRUE(widget("Command5").isEnabled());
    EXPECT_TRUE(widget("TreeView1").isEnabled());
    form.Enablem();
    EXPECT_TRUE(view.findChild<QAction*>("mnuFile")->isEnabled());
}

} // namespace
} // namespace sonarith
