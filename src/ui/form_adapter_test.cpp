// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/form_adapter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QTest>
#include <gmock/gmock.h>

#include "platform/qt/twips.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class FormAdapterTest : public testing::Test {
  protected:
    Form form{"frmsearch", "File Finder"};
    QWidget window;
    FormAdapter adapter{form, window, window};
};

TEST_F(FormAdapterTest, TheWindowIsVisibleWhileTheFormIsVisible) {
    EXPECT_FALSE(window.isVisible());
    form.show();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.windowTitle(), "File Finder");
    EXPECT_EQ(window.objectName(), "frmsearch");
    form.setCaption("42%");
    EXPECT_EQ(window.windowTitle(), "42%");
    form.hide();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(FormAdapterTest, ACloseRequestOfTheWindowManagerUnloadsTheForm) {
    std::vector<std::string> log;
    form.onQueryUnload = [&] {
        log.push_back(window.isVisible() ? "query, seen" : "query");
    };
    form.onUnload = [&] {
        log.push_back(window.isVisible() ? "unload, seen" : "unload");
    };
    form.show();
    window.close();
    EXPECT_THAT(log, ElementsAre("query, seen", "unload, seen"));
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(window.isVisible());
}

TEST_F(FormAdapterTest, ACloseRequestDuringAnUnloadStartsNoSecondUnload) {
    int unloads = 0;
    form.onQueryUnload = [&] {
        ++unloads;
        window.close();
        EXPECT_TRUE(window.isVisible());
    };
    form.show();
    window.close();
    EXPECT_EQ(unloads, 1);
}

TEST_F(FormAdapterTest, AnUnloadedFormCanBeShownAgain) {
    int loads = 0;
    form.onLoad = [&] {
        ++loads;
    };
    form.show();
    window.close();
    form.show();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(loads, 2);
}

TEST_F(FormAdapterTest, TheFormIsNotifiedOfTheInnerSizeInTwips) {
    form.show();
    int resizes = 0;
    form.onResize = [&] {
        ++resizes;
    };
    window.resize(300, 200);
    QCoreApplication::processEvents();
    EXPECT_EQ(form.innerWidth(), Twips(4500));
    EXPECT_EQ(form.innerHeight(), Twips(3000));
    EXPECT_EQ(resizes, 1);
}

TEST_F(FormAdapterTest, TheWindowMovesWithTheFormAndTheFormWithTheWindow) {
    const QPoint corner = QGuiApplication::primaryScreen()->geometry().topLeft();
    ASSERT_EQ(corner, QPoint(800, 100));
    form.show();
    form.setLeft(1500_twips);
    form.setTop(750_twips);
    EXPECT_EQ(window.pos(), corner + QPoint(100, 50));
    window.move(corner + QPoint(20, 30));
    QCoreApplication::processEvents();
    EXPECT_EQ(form.left(), Twips(300));
    EXPECT_EQ(form.top(), Twips(450));
    // This position is on the second of the two simulated screens (offscreen_main_test.cpp): to the
    // left of the primary screen, and above the top edge of the primary screen.
    window.move(0, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(form.left(), Twips(-800 * 15));
    EXPECT_EQ(form.top(), Twips(-100 * 15));
}

TEST_F(FormAdapterTest, APositionSetByTheLoadStepIsRelativeToThePrimaryScreen) {
    form.onLoad = [&] {
        form.setLeft(1500_twips);
        form.setTop(750_twips);
    };
    form.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.screen(), QGuiApplication::primaryScreen());
    EXPECT_EQ(window.pos(), QPoint(900, 150));
}

TEST_F(FormAdapterTest, AChangeOfCaptionDoesNotMoveTheWindowBack) {
    form.setLeft(1500_twips);
    form.show();
    window.move(20, 30);
    QCoreApplication::processEvents();
    form.setCaption("other");
    EXPECT_EQ(window.pos(), QPoint(20, 30));
}

TEST_F(FormAdapterTest, TheWindowIsResizedWithTheFormAndTheFormWithTheWindow) {
    form.show();
    form.setWidth(4500_twips);
    form.setHeight(3000_twips);
    EXPECT_EQ(window.frameGeometry().size(), QSize(300, 200));
    window.resize(400, 250);
    QCoreApplication::processEvents();
    EXPECT_EQ(form.width(), toTwips(window.frameGeometry().width()));
    EXPECT_EQ(form.height(), toTwips(window.frameGeometry().height()));
    EXPECT_EQ(window.size(), QSize(400, 250));
}

TEST_F(FormAdapterTest, DesignSizeSetsTheFormsSizeToTheSizeOfTheWindowWithItsFrame) {
    window.resize(300, 200);
    adapter.designSize();
    form.show();
    QCoreApplication::processEvents();
    const QSize frame = window.frameGeometry().size() - window.size();
    ASSERT_FALSE(frame.isEmpty());
    EXPECT_EQ(window.size(), QSize(300, 200));
    EXPECT_EQ(form.width(), toTwips(300 + frame.width()));
    EXPECT_EQ(form.height(), toTwips(200 + frame.height()));
    EXPECT_EQ(form.innerWidth(), toTwips(300));
    EXPECT_EQ(form.innerHeight(), toTwips(200));
    // A later change of the form's caption or position changes neither the window's size nor the
    // form's size.
    form.setCaption("other");
    form.setLeft(1500_twips);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(300, 200));
    EXPECT_EQ(form.height(), toTwips(200 + frame.height()));
}

TEST_F(FormAdapterTest, TheDesignedSizeOfAFormIncludesTheFrameOfTheWindow) {
    form.setDesignedSize(4500_twips, 3000_twips);
    form.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.frameGeometry().size(), QSize(300, 200));
    EXPECT_EQ(form.width(), 4500_twips);
    EXPECT_EQ(form.height(), 3000_twips);
}

TEST_F(FormAdapterTest, ADisabledFormDisablesTheWindowUntilTheNextLoad) {
    form.show();
    form.setEnabled(false);
    EXPECT_FALSE(window.isEnabled());
    form.unload();
    form.show();
    EXPECT_TRUE(window.isEnabled());
}

TEST_F(FormAdapterTest, AWindowOpensInItsDesignedSizeAtEachLoad) {
    form.setDesignedSize(4500_twips, 3000_twips);
    form.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.frameGeometry().size(), QSize(300, 200));
    window.resize(400, 250);
    QCoreApplication::processEvents();
    window.close();
    form.show();
    EXPECT_EQ(window.frameGeometry().size(), QSize(300, 200));
}

TEST_F(FormAdapterTest, ARegionMasksTheWindowUntilTheNextLoad) {
    form.show();
    form.setWindowRegion(WindowRegion{{{0, 0, 10, 5}, {20, 0, 30, 5}}});
    EXPECT_EQ(window.mask(), QRegion(0, 0, 10, 5) + QRegion(20, 0, 10, 5));
    form.unload();
    form.show();
    EXPECT_TRUE(window.mask().isEmpty());
}

TEST_F(FormAdapterTest, AMinimizedWindowIsRestoredOnlyWhenTheFormIsShownAgain) {
    form.show();
    form.minimizeRequested.emit();
    EXPECT_TRUE(window.isMinimized());
    form.setCaption("working");
    EXPECT_TRUE(window.isMinimized());
    form.show();
    EXPECT_FALSE(window.isMinimized());
    EXPECT_TRUE(window.isVisible());
}

TEST_F(FormAdapterTest, APressOnTheWindowOutsideOfItsControlsIsReportedToTheForm) {
    int presses = 0;
    form.onMouseDown = [&](MouseButtons buttons) {
        presses += buttons.left ? 1 : 0;
    };
    window.resize(200, 100);
    QWidget control(&window);
    control.setGeometry(0, 0, 50, 50);
    form.show();
    QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(100, 80));
    EXPECT_EQ(presses, 1);
    QTest::mouseClick(&window, Qt::RightButton, {}, QPoint(100, 80));
    QTest::mouseClick(&control, Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(presses, 1);
}

TEST_F(FormAdapterTest, ARequestToDragTheWindowBeforeItIsFirstShownIsIgnored) {
    form.captionGrasped.emit();
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace sonarith
