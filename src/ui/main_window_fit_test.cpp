// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that every widget of the main window has the space that it needs. The tests are also run
// with QT_SCALE_FACTOR set, because on high-resolution screens the sizes of fonts, pictures and
// gaps are rounded differently.
#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QLabel>
#include <QMenuBar>
#include <QTest>
#include <gmock/gmock.h>

#include "app/resize_layout.h"
#include "platform/qt/qt_event_loop.h"
#include "ui/main_window_view.h"

namespace sonarith {
namespace {

class MainWindowFit : public testing::Test {
  protected:
    MainWindowFit() {
        form.onResize = [this] {
            runResizeLayout(form);
        };
        form.load();
        runResizeLayout(form);
        TreeView& tree = form.TreeView1;
        const NodeRef collection = tree.add(nullptr, "f", "CD Tracks", 1, 4).value();
        const NodeRef group = tree.add(collection, "g", "Available Tracks", 2, 5).value();
        row = tree.add(group, "p", "Track  1 - 00:03:05", 3, 6).value();
        tree.ensureVisible(row).passOver();
    }
    /// Shows all bars, with every widget visible and with long contents.
    void showEverything() {
        form.Picture4.setVisible(true);
        form.Command2.setVisible(true);
        form.Label5.setVisible(true);
        form.lblCDID.setCaption("1234567890");
        form.lblNumTracks.setCaption("99");
        form.Label3.setCaption("Extracting Track 99");
        form.Label2.setCaption("c:\\a folder\\another folder\\WAVFiles\\");
        form.Status.setCaption("00.00%");
        form.Label33.setCaption("100%");
        form.lblStatus.setCaption("1234567890 Bytes");
        show();
    }
    void show() {
        form.show();
        runResizeLayout(form);
        QCoreApplication::processEvents();
    }
    QRect placeOf(const char* name) {
        auto* found = view.findChild<QWidget*>(name);
        EXPECT_NE(found, nullptr) << name;
        return found->geometry();
    }
    /// Each visible widget has at least its minimum size and lies inside its parent.
    void expectRoomForEach() {
        int visible = 0;
        for (const QWidget* child : view.findChildren<QWidget*>()) {
            if (!child->isVisible() || child->isWindow()) {
                continue;
            }
            ++visible;
            const std::string name = child->objectName().toStdString();
            const QSize least = child->minimumSizeHint().boundedTo(child->maximumSize());
            EXPECT_GE(child->width(), least.width()) << name;
            EXPECT_GE(child->height(), least.height()) << name;
            EXPECT_TRUE(child->parentWidget()->rect().contains(child->geometry())) << name;
        }
        EXPECT_GT(visible, 0);
    }
    /// Each visible label is high enough for a line of text. Each visible button with a text is
    /// large enough for its text. The headings of the menu bar are wide enough and lie inside the
    /// bar. The widths of labels are not checked, because some labels may cut their text.
    void expectWholeTexts() {
        int labels = 0;
        for (const auto* label : view.findChildren<QLabel*>()) {
            if (label->isVisible()) {
                ++labels;
                const QFontMetrics metrics = label->fontMetrics();
                EXPECT_GE(label->contentsRect().height(), metrics.height())
                    << label->objectName().toStdString();
            }
        }
        EXPECT_GT(labels, 0);
        for (const char* name : {"Command2", "CmdSelectAction"}) {
            const auto* button = view.findChild<QAbstractButton*>(name);
            if (button->isVisible()) {
                const QFontMetrics metrics = button->fontMetrics();
                EXPECT_GT(button->width(),
                          metrics.size(Qt::TextShowMnemonic, button->text()).width())
                    << name;
                EXPECT_GT(button->height(), metrics.height()) << name;
            }
        }
        const auto* menuBar = view.findChild<QMenuBar*>();
        EXPECT_FALSE(menuBar->actions().isEmpty());
        for (QAction* heading : menuBar->actions()) {
            const QRect place = menuBar->actionGeometry(heading);
            EXPECT_TRUE(menuBar->rect().contains(place)) << heading->text().toStdString();
            const QFontMetrics metrics = menuBar->fontMetrics();
            EXPECT_GE(place.width(), metrics.size(Qt::TextShowMnemonic, heading->text()).width());
        }
    }
    void expectStackedWithoutGaps(const std::vector<const char*>& fromTopToBottom) {
        int bottom = 0;
        for (const char* name : fromTopToBottom) {
            EXPECT_EQ(placeOf(name).top(), bottom) << name;
            bottom = placeOf(name).bottom() + 1;
        }
        EXPECT_EQ(bottom, placeOf("client").height());
    }

    QtEventLoop loop;
    ProcessState state;
    Form1 form{loop, state, {}};
    MainWindowView view{form};
    NodeRef row;
};

TEST_F(MainWindowFit, TheWindowHasTheScaleThatTheEnvironmentRequests) {
    show();
    const QByteArray requested = qgetenv("QT_SCALE_FACTOR");
    EXPECT_DOUBLE_EQ(view.devicePixelRatioF(), requested.isEmpty() ? 1.0 : requested.toDouble());
}

TEST_F(MainWindowFit, InTheInitialStateEveryWidgetFits) {
    show();
    expectRoomForEach();
    expectWholeTexts();
    expectStackedWithoutGaps({"Picture3", "TreeView1", "Picture2", "Picture1"});
}

TEST_F(MainWindowFit, WithAllBarsShownAndLongContentsEveryWidgetFits) {
    showEverything();
    expectRoomForEach();
    expectWholeTexts();
    expectStackedWithoutGaps({"Picture3", "Picture4", "TreeView1", "Picture2", "Picture1"});
}

TEST_F(MainWindowFit, AtTheMinimumSizeEveryWidgetFits) {
    showEverything();
    view.resize(1, 1);
    QCoreApplication::processEvents();
    runResizeLayout(form);
    expectRoomForEach();
    expectWholeTexts();
    expectStackedWithoutGaps({"Picture3", "Picture4", "TreeView1", "Picture2", "Picture1"});
}

TEST_F(MainWindowFit, TheTreeShowsTheWholeTextOfARow) {
    show();
    auto& tree = static_cast<TreeWidget&>(*view.findChild<QWidget*>("TreeView1"));
    auto& model = static_cast<TreeModel&>(*tree.model());
    const QRect place = tree.visualRect(model.indexOf(row));
    const QFontMetrics metrics = tree.fontMetrics();
    EXPECT_TRUE(tree.viewport()->rect().contains(place));
    EXPECT_GE(place.height(), metrics.height());
    EXPECT_GE(place.height(), tree.iconSize().height());
    EXPECT_GE(place.width(), tree.iconSize().width() +
                                 metrics.horizontalAdvance(QString::fromStdString(row->text())));
}

} // namespace
} // namespace sonarith
