// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/control_panel.h"

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/fake_machine.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class ControlPanelTest : public testing::Test, protected test::FakeMachine {
  protected:
    ControlPanelTest() {
        form.show();
        minimized_ = form.minimizeRequested.connect(
            [this] { events.push_back(form.visible() ? "shrink" : "shrink while hidden"); });
    }
    /// Runs the same steps as the main window's menu entry "Minimize".
    void goToTray() {
        popup.load();
        minimizeToTray(form, tray);
    }
    /// Loads Form6, Form4 and the main window, and logs their unloads.
    void logUnloads() {
        for (Form* window : std::initializer_list<Form*>{&windows.Form6, &windows.Form4, &form}) {
            window->load();
            window->onUnload = [this, window] {
                events.push_back(window->name());
            };
        }
    }
    std::vector<std::string> tips() const {
        std::vector<std::string> shown;
        for (const auto& [identifier, tip] : tray.icons) {
            shown.push_back(tip);
        }
        return shown;
    }

    ProcessState process;
    Windows windows{platform, process};
    Form1& form = windows.Form1;
    FrmPopup& popup = windows.frmpopup;
    ControlPanel panel{platform, windows};
    std::vector<std::string> events;

  private:
    Connection minimized_;
};

// --- load and unload ------------------------------------------------------------------------

TEST_F(ControlPanelTest, FrmPopupHasItsOwnTitleAndItsLoadStartsTwoTimers) {
    EXPECT_EQ(popup.caption(), "Sonarith V2.0");
    EXPECT_FALSE(popup.Timer1.enabled());
    popup.load();
    EXPECT_EQ(popup.Timer1.interval(), 1000ms);
    EXPECT_EQ(popup.Timer2.interval(), 1000ms);
    EXPECT_TRUE(popup.Timer1.enabled());
    EXPECT_TRUE(popup.Timer2.enabled());
}

TEST_F(ControlPanelTest, LoadingFrmPopupAgainWithoutAnUnloadAddsNoSecondIcon) {
    popup.show();
    EXPECT_THAT(tray.log, ElementsAre("add Sonarith"));
    popup.hide();
    popup.load();
    popup.touch();
    EXPECT_THAT(tray.log, ElementsAre("add Sonarith"));
}

TEST_F(ControlPanelTest, LoadingFrmPopupHidesIt) {
    popup.setVisible(true);
    panel.Form_Load();
    EXPECT_FALSE(popup.visible());
}

TEST_F(ControlPanelTest, UnloadingFrmPopupDeletesTheIconTwiceAndTheSecondDeletionFails) {
    popup.load();
    tray.log.clear();
    popup.unload();
    EXPECT_THAT(tray.log, ElementsAre("remove", "remove failed"));
    EXPECT_THAT(tips(), IsEmpty());
    EXPECT_FALSE(popup.Timer1.enabled());
    EXPECT_FALSE(popup.Timer2.enabled());
    loop.advance(5s);
    EXPECT_THAT(tray.log, ElementsAre("remove", "remove failed"));
}

TEST_F(ControlPanelTest, UnloadingFrmPopupDeletesNoIconIfFrmPopupIsNotLoaded) {
    popup.unload();
    EXPECT_THAT(tray.log, IsEmpty());
}

TEST_F(ControlPanelTest, EachLoadAfterAnUnloadAddsANewIcon) {
    for (int i = 0; i < 3; ++i) {
        popup.load();
        EXPECT_THAT(tips(), ElementsAre("Sonarith"));
        popup.unload();
        EXPECT_THAT(tips(), IsEmpty());
    }
}

// --- tip and title --------------------------------------------------------------------------

TEST_F(ControlPanelTest, TheTipFollowsTheMainWindowsTitleOnceASecond) {
    popup.load();
    form.setCaption("Extracting Track 1");
    loop.advance(999ms);
    EXPECT_THAT(tips(), ElementsAre("Sonarith"));
    loop.advance(1ms);
    EXPECT_THAT(tips(), ElementsAre("Extracting Track 1"));
    form.setCaption("Extracting Track 2");
    loop.advance(999ms);
    EXPECT_THAT(tips(), ElementsAre("Extracting Track 1"));
    loop.advance(1ms);
    EXPECT_THAT(tips(), ElementsAre("Extracting Track 2"));
}

TEST_F(ControlPanelTest, ALongTitleIsShortenedOnlyInTheTip) {
    popup.load();
    form.setCaption(std::string(80, 'x'));
    loop.advance(1s);
    EXPECT_THAT(tips(), ElementsAre(std::string(63, 'x')));
    EXPECT_EQ(popup.caption(), std::string(80, 'x'));
}

TEST_F(ControlPanelTest, TheTitleOfFrmPopupFollowsTheMainWindowsTitleOnceASecond) {
    popup.load();
    EXPECT_EQ(popup.caption(), "Sonarith V2.0");
    form.setCaption("Decoding a.mp3");
    loop.advance(1s);
    EXPECT_EQ(popup.caption(), "Decoding a.mp3");
}

TEST_F(ControlPanelTest, EachTimerYieldsAfterItsUpdate) {
    popup.load();
    form.setCaption("new");
    loop.atYield(1, [this] {
        EXPECT_THAT(tips(), ElementsAre("new"));
        EXPECT_EQ(popup.caption(), "Sonarith V2.0");
    });
    popup.Timer1.fire();
    EXPECT_EQ(loop.yieldCount(), 1);
    loop.atYield(1, [this] { EXPECT_EQ(popup.caption(), "new"); });
    popup.Timer2.fire();
    EXPECT_EQ(loop.yieldCount(), 2);
}

TEST_F(ControlPanelTest, FrmPopupMayBeUnloadedDuringAYieldOfItsTimers) {
    for (int n = 1; n <= 2; ++n) {
        popup.load();
        loop.atYield(n, [this] { popup.unload(); });
        loop.advance(3s);
        EXPECT_FALSE(popup.loaded());
        EXPECT_THAT(tips(), IsEmpty());
    }
}

TEST_F(ControlPanelTest, TheTipIsUpdatedDuringLongWorkThatYields) {
    popup.load();
    form.setCaption("working");
    loop.waitFor(1500ms);
    EXPECT_THAT(tips(), ElementsAre("working"));
}

// --- the menu -------------------------------------------------------------------------------

TEST_F(ControlPanelTest, TheMenuContainsStopThenRestoreThenASeparatorThenShutdown) {
    ASSERT_EQ(tray.menu, &popup.Popup);
    std::vector<std::string> entries;
    for (const MenuItem* entry : popup.Popup.entries()) {
        entries.push_back(entry->name() + ": " + entry->caption());
    }
    EXPECT_THAT(entries,
                ElementsAre("mnuStopencoding: Stop Conversion", "Exit: Restore Control panel",
                            "mnuspace1: -", "mnuEnd: Shutdown program"));
    EXPECT_TRUE(popup.mnuspace1.isSeparator());
}

TEST_F(ControlPanelTest, OpeningTheMenuCopiesTheMainWindowsTitleToFrmPopup) {
    popup.load();
    form.setCaption("Extracting Track 3");
    run(tray.menu->onOpen);
    EXPECT_EQ(popup.caption(), "Extracting Track 3");
}

TEST_F(ControlPanelTest, StopConversionShowsTheMainWindowThenClicksCancelAndThenRemovesTheIcon) {
    goToTray();
    EXPECT_FALSE(form.visible());
    form.Command2.onClick = [this] {
        EXPECT_TRUE(form.visible());
        EXPECT_TRUE(popup.loaded());
        events.emplace_back("cancel");
    };
    popup.mnuStopencoding.click();
    EXPECT_THAT(events, ElementsAre("cancel"));
    EXPECT_TRUE(form.visible());
    EXPECT_FALSE(popup.loaded());
}

TEST_F(ControlPanelTest, StopConversionClicksEvenADisabledCancelButton) {
    goToTray();
    form.Command2.setEnabled(false);
    form.Command2.onClick = [this] {
        events.emplace_back("cancel");
    };
    popup.mnuStopencoding.click();
    EXPECT_THAT(events, ElementsAre("cancel"));
    EXPECT_TRUE(form.visible());
    EXPECT_FALSE(popup.loaded());
}

TEST_F(ControlPanelTest, RestoreShowsTheMainWindowAndRemovesTheIcon) {
    goToTray();
    int shown = 0;
    const Connection watch = form.showRequested.connect([&] {
        ++shown;
        EXPECT_TRUE(popup.loaded());
    });
    form.Command2.onClick = [] {
        ADD_FAILURE() << "Restore clicked Command2, which cancels actions";
    };
    popup.Exit.click();
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(form.visible());
    EXPECT_FALSE(popup.loaded());
    EXPECT_THAT(tips(), IsEmpty());
}

TEST_F(ControlPanelTest, RestoreShowsAMinimizedMainWindow) {
    tray.setHost(false);
    goToTray();
    int shown = 0;
    const Connection watch = form.showRequested.connect([&] { ++shown; });
    popup.Exit.click();
    EXPECT_EQ(shown, 1);
    EXPECT_FALSE(popup.loaded());
}

TEST_F(ControlPanelTest, ShutdownUnloadsFourFormsInAFixedOrderAndThenEndsTheProgram) {
    goToTray();
    logUnloads();
    popup.onUnload = [this] {
        events.emplace_back("frmpopup");
    };
    EXPECT_THROW(popup.mnuEnd.click(), test::ProgramEnded);
    EXPECT_THAT(events, ElementsAre("Form6", "Form4", "Form1", "frmpopup"));
    EXPECT_TRUE(loop.ended());
}

TEST_F(ControlPanelTest, ShutdownSkipsWindowsThatAreNotLoaded) {
    form.unload();
    popup.load();
    EXPECT_THROW(popup.mnuEnd.click(), test::ProgramEnded);
    EXPECT_THAT(tips(), IsEmpty());
    EXPECT_FALSE(windows.Form6.loaded());
    EXPECT_FALSE(windows.Form4.loaded());
}

// --- tray hosts that start and end ------------------------------------------------------------

TEST_F(ControlPanelTest, MinimizeToTrayHidesTheMainWindowIfATrayHostIsPresent) {
    goToTray();
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(ControlPanelTest,
       WithoutATrayHostMinimizeToTrayMinimizesTheMainWindowAndTheTipIsStillUpdated) {
    tray.setHost(false);
    goToTray();
    EXPECT_THAT(events, ElementsAre("shrink"));
    EXPECT_TRUE(form.visible());
    EXPECT_TRUE(popup.loaded());
    EXPECT_TRUE(popup.Timer1.enabled());
    EXPECT_TRUE(popup.Timer2.enabled());
    form.setCaption("Extracting Track 1");
    loop.advance(1s);
    EXPECT_THAT(tips(), ElementsAre("Extracting Track 1"));
}

TEST_F(ControlPanelTest, ATrayHostThatStartsLaterLeavesTheMainWindowMinimized) {
    tray.setHost(false);
    goToTray();
    events.clear();
    tray.setHost(true);
    EXPECT_TRUE(form.visible());
    EXPECT_THAT(events, IsEmpty());
    // Minimizing the window again hides it, because a tray host is present now.
    goToTray();
    EXPECT_FALSE(form.visible());
}

TEST_F(ControlPanelTest, RemovalOfTheTrayHostMinimizesTheHiddenMainWindow) {
    goToTray();
    int shown = 0;
    const Connection watch = form.showRequested.connect([&] { ++shown; });
    tray.setHost(false);
    EXPECT_THAT(events, ElementsAre("shrink while hidden"));
    EXPECT_TRUE(form.visible());
    EXPECT_EQ(shown, 0); // a request to show would restore the window in full
    EXPECT_TRUE(popup.loaded());
    EXPECT_TRUE(popup.Timer1.enabled());
    tray.setHost(true);
    EXPECT_TRUE(form.visible());
    tray.setHost(false);
    EXPECT_THAT(events, ElementsAre("shrink while hidden"));
}

TEST_F(ControlPanelTest, RemovalOfTheTrayHostDoesNotAffectAVisibleMainWindow) {
    // Adds the icon without hiding the main window, as the preferences' check box Check4 does.
    popup.load();
    tray.setHost(false);
    tray.setHost(true);
    EXPECT_TRUE(form.visible());
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(ControlPanelTest, RemovalOfTheTrayHostHasNoEffectIfFrmPopupIsNotLoaded) {
    form.hide();
    tray.setHost(false);
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, IsEmpty());
    EXPECT_THAT(tray.log, IsEmpty());
}

} // namespace
} // namespace sonarith
