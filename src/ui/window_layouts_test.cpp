// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the layouts of the player, the finder, the preferences and the playlist editor: each
// visible control has a widget, an accessible name and enough space for its text. In all of
// these windows except the preferences, the tab key reaches the widgets that accept input.
#include <memory>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>

#include "support/fake_machine.h"
#include "ui/finder_layout.h"
#include "ui/header_line_delegate.h"
#include "ui/player_layout.h"
#include "ui/playlist_layout.h"
#include "ui/preferences_layout.h"

namespace sonarith {
namespace {

using testing::Contains;
using testing::IsEmpty;

class WindowLayouts : public testing::Test {
  protected:
    WindowLayouts() { machine.directories.addFolder("c:\\"); }

    static std::vector<std::string> missing(const QWidget& window,
                                            const std::vector<const char*>& controls) {
        std::vector<std::string> names;
        for (const char* control : controls) {
            if (!window.findChild<QWidget*>(QString::fromLatin1(control))) {
                names.emplace_back(control);
            }
        }
        return names;
    }
    static QString labelOf(const QWidget& child) {
        // The query does not change the state of the widget, although it needs a non-const pointer.
        QAccessibleInterface* accessible =
            QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&child));
        const auto labels = accessible->relations(QAccessible::Label);
        return labels.isEmpty() ? QString() : labels.first().first->text(QAccessible::Name);
    }
    /// Describes drop-down lists without a label. Also describes visible widgets that have no
    /// accessible name or too little space.
    static std::vector<std::string> faults(FormWindow& window) {
        std::vector<std::string> found;
        for (const QWidget* child : window.findChildren<QWidget*>()) {
            const std::string name = child->objectName().toStdString();
            // On Linux, Qt uses the current entry of a drop-down list as the list's accessible
            // name, so a label must say what the entry means.
            if (qobject_cast<const QComboBox*>(child) && labelOf(*child).isEmpty()) {
                found.push_back(name + " has no label");
            }
            if (!child->isVisible() || child->isWindow() || name.empty() ||
                name.starts_with("qt_")) {
                continue;
            }
            if (child->accessibleName().isEmpty()) {
                found.push_back(name + " has no accessible name");
            }
            const QSize least = child->minimumSizeHint().boundedTo(child->maximumSize());
            if (child->width() < least.width() || child->height() < least.height()) {
                found.push_back(name + " is too small");
            }
        }
        return found;
    }
    /// The names of the widgets that the tab key reaches until it returns to the first widget.
    static std::vector<std::string> reachedByTab(FormWindow& window) {
        std::vector<std::string> reached;
        window.activateWindow();
        constexpr int mostStops = 100;
        for (int i = 0; i < mostStops; ++i) {
            QWidget* at = window.focusWidget();
            const std::string name = at ? at->objectName().toStdString() : std::string();
            if (!reached.empty() && name == reached.front()) {
                break;
            }
            reached.push_back(name);
            QTest::keyClick(at ? at : &window, Qt::Key_Tab);
        }
        return reached;
    }

    test::FakeMachine machine;
};

TEST_F(WindowLayouts, ThePlayersPanelShowsItsControls) {
    Form4 form(machine.loop);
    FormWindow window(playerLayout(form));
    form.show();
    EXPECT_THAT(missing(window, {"CD",
                                 "timeWindow",
                                 "tracktime",
                                 "OptCD",
                                 "optNoCD",
                                 "play",
                                 "pause",
                                 "stopbtn",
                                 "ftrack",
                                 "btrack",
                                 "eject",
                                 "sliderMasterVolume",
                                 "Slider1",
                                 "BassSlider",
                                 "trebleslider",
                                 "Text1",
                                 "BassText",
                                 "txtMasterVolume",
                                 "Treblesliderte",
                                 "Option1",
                                 "Option2",
                                 "Option3",
                                 "Option4",
                                 "Option13",
                                 "Option14",
                                 "Check3",
                                 "Command1",
                                 "Command2",
                                 "picPeakVol",
                                 "Picture8",
                                 "Label4",
                                 "Picture3",
                                 "Picture4",
                                 "Picture10",
                                 "mnuCD"}),
                IsEmpty());
    EXPECT_THAT(faults(window), IsEmpty());
    for (CommandButton* button : {&form.play, &form.eject}) {
        button->setEnabled(true);
    }
    const auto reached = reachedByTab(window);
    for (const char* name : {"OptCD", "play", "eject", "sliderMasterVolume", "Slider1",
                             "BassSlider", "trebleslider", "Check3", "Command1", "Command2"}) {
        EXPECT_THAT(reached, Contains(name));
    }
}

TEST_F(WindowLayouts, TheBarOfTheLevelMeterMovesWithinThePictureThatClipsIt) {
    Form4 form(machine.loop);
    FormWindow window(playerLayout(form));
    form.show();
    const auto* clip = window.findChild<QWidget*>("Picture8");
    const auto* bar = window.findChild<QWidget*>("Label4");
    EXPECT_EQ(clip->geometry(), QRect(168, 4, 9, 61));
    EXPECT_EQ(bar->parentWidget(), clip);
    form.Label4.setTop(form.Picture8.height());
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar->y() == clip->height(); }));
    form.Label4.setTop(Twips(0));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar->y() == 0; }));
}

// The menu entry "Show as Cube" reduces only the height of the panel, so the upper part of the
// panel stays visible.
TEST_F(WindowLayouts, ThePlayersPanelAsACubeShowsTheControlsOfItsUpperPart) {
    Form4 form(machine.loop);
    FormWindow window(playerLayout(form));
    form.show();
    form.setHeight(3480_twips);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.frameGeometry().height(), 232);
    for (const char* name : {"timeWindow", "picPeakVol", "play", "eject", "OptCD"}) {
        const auto* widget = window.findChild<QWidget*>(QString::fromLatin1(name));
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        EXPECT_TRUE(window.rect().contains(place)) << name;
    }
}

TEST_F(WindowLayouts, TheFinderShowsItsControls) {
    FrmSearch form(machine.files, machine.directories);
    FormWindow window(finderLayout(form));
    form.show();
    EXPECT_THAT(
        missing(window, {"lstdirs", "List1", "lstfiles", "zFileExt", "Text1", "Drive1", "Dir1",
                         "Command1", "cmdend", "chkhidelist", "lbltime", "Label1", "Label2"}),
        IsEmpty());
    EXPECT_THAT(faults(window), IsEmpty());
    const auto reached = reachedByTab(window);
    for (const char* name :
         {"Text1", "zFileExt", "Drive1", "Dir1", "chkhidelist", "Command1", "cmdend", "lstfiles"}) {
        EXPECT_THAT(reached, Contains(name));
    }
    EXPECT_EQ(window.findChild<QWidget*>("zFileExt2"), nullptr);
}

TEST_F(WindowLayouts, TheFinderShowsTheFoldersToSearchWhileTheOtherListsAreHidden) {
    FrmSearch form(machine.files, machine.directories);
    FormWindow window(finderLayout(form));
    form.show();
    auto* lists = window.findChild<QWidget*>("lists");
    auto* toDo = window.findChild<QWidget*>("lstdirs");
    const auto seenInTheMiddleOf = [&](const QWidget& widget) {
        QWidget* at = lists->childAt(widget.geometry().center());
        while (at && at->parentWidget() != lists) {
            at = at->parentWidget();
        }
        return at;
    };
    EXPECT_NE(seenInTheMiddleOf(*toDo), toDo);
    form.List1.setVisible(false);
    form.lstfiles.setVisible(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(seenInTheMiddleOf(*toDo), toDo);
}

/// If the finder updated its window for each folder, a search would lay out and paint the window
/// thousands of times.
TEST_F(WindowLayouts, TheFinderUpdatesItsProgressAtIntervalsAndNotForEachFolder) {
    FrmSearch form(machine.files, machine.directories);
    FormWindow window(finderLayout(form));
    form.show();
    form.lstdirs.addItem("c:\\m\\");
    form.List1.addItem("c:\\m\\");
    QTest::qWait(300);
    const auto* label = window.findChild<QLabel*>("lbltime");
    std::vector<std::unique_ptr<QSignalSpy>> announced;
    for (const char* name : {"lstdirs", "List1", "lstfiles"}) {
        const auto* list = window.findChild<QAbstractItemView*>(name);
        announced.push_back(
            std::make_unique<QSignalSpy>(list->model(), &QAbstractItemModel::rowsInserted));
        announced.push_back(
            std::make_unique<QSignalSpy>(list->model(), &QAbstractItemModel::rowsRemoved));
    }
    for (int i = 0; i < 1000; ++i) {
        const std::string folder = "c:\\m\\" + std::to_string(i) + "\\";
        form.lbltime.setCaption("Searching . . . " + folder);
        form.lstdirs.addItem(folder, 1).passOver();
        form.List1.addItem(folder, 1).passOver();
        form.lstfiles.addItem(folder + "a.wav");
        form.lstdirs.removeItem(0).passOver();
    }
    EXPECT_EQ(label->text(), "Searching . . . c:\\m\\0\\");
    for (const auto& spy : announced) {
        EXPECT_EQ(spy->count(), 0);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return label->text() == "Searching . . . c:\\m\\999\\" && announced[2]->count() == 1 &&
               announced[4]->count() == 1;
    }));
}

TEST_F(WindowLayouts, ThePreferencesShowTheirControls) {
    FrmPrefs form(machine.files, machine.directories);
    FormWindow window(preferencesLayout(form));
    form.show();
    EXPECT_THAT(
        missing(window,
                {"SSTab2",   "DriveSpace", "Check6",   "Text7",  "Check7",    "Text8",  "Text6",
                 "Command3", "Command1",   "Encoding", "Audio",  "Combo1",    "Combo2", "Check11",
                 "Check10",  "Check3",     "Check5",   "Check4", "cbxFormat", "Check1", "Text9",
                 "Check2",   "Picture6",   "Text10",   "Co111",  "Drive2",    "Dir2"}),
        IsEmpty());
    // These labels only store data and have no widget.
    EXPECT_THAT(missing(window, {"Label3", "Label4"}), testing::SizeIs(2));
    form.Picture6.setVisible(true);
    auto* tabs = window.findChild<QTabWidget*>();
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        QCoreApplication::processEvents();
        EXPECT_THAT(faults(window), IsEmpty()) << "tab page " << page;
    }
}

TEST_F(WindowLayouts, ThePlaylistEditorShowsItsControls) {
    FrmPlayList form(machine.mp3);
    FormWindow window(playlistLayout(form));
    form.show();
    EXPECT_THAT(missing(window, {"Playlist", "List2", "Command20", "Command6", "Command11",
                                 "Command12", "Check11", "Text5", "cmdHdr1", "cmdHdr2", "Command2",
                                 "Command10", "cmdTag", "List1", "Text4(1)", "Text4(8)"}),
                IsEmpty());
    EXPECT_EQ(window.findChild<QWidget*>("List3"), nullptr);
    EXPECT_THAT(faults(window), IsEmpty());
    const auto reached = reachedByTab(window);
    for (const char* name : {"List2", "Command11", "Command12", "Command20", "Command6", "Check11",
                             "Text5", "cmdHdr1", "List1", "Text4(1)", "Text4(6)", "Text4(8)",
                             "cmdHdr2", "cmdTag", "Command2", "Command10"}) {
        EXPECT_THAT(reached, Contains(name));
    }
    form.List1.addItem("Bitrate            128");
    const auto* header = window.findChild<QAbstractItemView*>("List1");
    ASSERT_TRUE(QTest::qWaitFor([&] { return header->model()->rowCount() == 1; }));
    const int row = header->visualRect(header->model()->index(0, 0)).height();
    ASSERT_GT(row, 0);
    EXPECT_GE(header->viewport()->height(), 12 * row)
        << "all twelve lines must be visible without scrolling";
    const auto* artist = window.findChild<QWidget*>("Text4(1)");
    EXPECT_GE(artist->width(), 30 * artist->fontMetrics().averageCharWidth());
}

TEST(LinesOfAnMp3Header, AreSplitIntoALabelAndAValue) {
    const HeaderLine bitrate = splitHeaderLine("Bitrate            128");
    EXPECT_EQ(bitrate.label, "Bitrate");
    EXPECT_EQ(bitrate.value, "128");
    const HeaderLine mode = splitHeaderLine("Mode               Joint stereo");
    EXPECT_EQ(mode.value, "Joint stereo");
    EXPECT_EQ(splitHeaderLine("Private             ").value, "");
    EXPECT_EQ(splitHeaderLine("one").label, "one");
}

} // namespace
} // namespace sonarith
