// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/form1.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "forms/windows.h"
#include "support/fake_machine.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Form1Test : testing::Test, test::FakeMachine {
    ProcessState process;
    Windows windows{platform, process};
    Form1& form = windows.Form1;
    /// The buttons and menus that Disablem() disables and Enablem() enables.
    const std::vector<Control*> commands = {
        &form.C777,      &form.Copt,     &form.C5555555,        &form.Cmdhelp,
        &form.mnuStart2, &form.mnuFile,  &form.mnuActiopn,      &form.mnuPrefs,
        &form.mnuHelp,   &form.mnupopup, &form.mnuRemoveDelete, &form.mnuFileRemove};

    std::vector<std::string> namesOfEnabled() const {
        std::vector<std::string> enabled;
        for (const Control* command : commands) {
            if (command->enabled()) {
                enabled.push_back(command->name());
            }
        }
        return enabled;
    }
};

TEST_F(Form1Test, StartsUnloadedWithTheTitleAsItsCaption) {
    EXPECT_EQ(form.caption(), "Sonarith v2.0");
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.visible());
}

TEST_F(Form1Test, ShowsThreeBarsAndTheGripAndHidesTheCdBar) {
    EXPECT_TRUE(form.Picture3.visible());
    EXPECT_TRUE(form.mnuToolbar.checked());
    EXPECT_FALSE(form.Picture4.visible());
    EXPECT_FALSE(form.mnuCDbar.checked());
    EXPECT_TRUE(form.Picture2.visible());
    EXPECT_TRUE(form.mnuActivityBar.checked());
    EXPECT_TRUE(form.Picture1.visible());
    EXPECT_TRUE(form.mnuStatusbar.checked());
    EXPECT_TRUE(form.Picture5.visible());
    EXPECT_EQ(form.Picture5.width(), 285_twips);
}

TEST_F(Form1Test, StartsWithThreeDisabledEntriesInThePopup) {
    EXPECT_FALSE(form.mnuStart2.enabled());
    EXPECT_FALSE(form.mnuFileRemove.enabled());
    EXPECT_FALSE(form.mnuRemoveDelete.enabled());
    EXPECT_TRUE(form.mnuMinimize.enabled());
    EXPECT_TRUE(form.mnuExit2.enabled());
    EXPECT_FALSE(form.mnupopup.visible());
}

TEST_F(Form1Test, StartsWithItsDisplaysAsDesigned) {
    EXPECT_EQ(form.Label3.caption(), "Next Action:");
    EXPECT_EQ(form.Label2.caption(), "");
    EXPECT_EQ(form.Status.caption(), "00.00%");
    EXPECT_EQ(form.Label33.caption(), "OFF");
    EXPECT_EQ(form.ProgressBar1.minimum(), 0);
    EXPECT_EQ(form.ProgressBar1.maximum(), 100);
    EXPECT_EQ(form.ProgressBar1.value(), 0);
    EXPECT_EQ(form.CmdSelectAction.caption(), "Start ");
}

TEST_F(Form1Test, HasTheDesignedCaptionsOnButtonsAndDiskWarning) {
    const std::pair<const CommandButton*, const char*> buttons[] = {
        {&form.Command5, "Exit"},
        {&form.Cmdhelp, "Help"},
        {&form.C5555555, "Playlist Editor"},
        {&form.Copt, "Preferences"},
        {&form.C777, "Search for Files"},
        {&form.Command2, "Cancel"},
        {&form.CmdSelectAction, "Start "},
        {&form.cmdStart, "Start"},
        {&form.CmdDecoder, "decode"},
        {&form.Command8, "Cancel"},
    };
    for (const auto& [button, caption] : buttons) {
        EXPECT_EQ(button->caption(), caption) << button->name();
    }
    EXPECT_EQ(form.Label5.caption(), "Low Drive space");
}

TEST_F(Form1Test, HasToolTipsOnPicturesAndButtons) {
    const std::pair<const Control*, const char*> tips[] = {
        {&form.Command11, "Play Selected track"},
        {&form.Command12, "Stop playing CD"},
        {&form.Image3, "Hand grip"},
        {&form.Image4, "Destination"},
        {&form.Image5, "Source"},
        {&form.cmdStart, "Start Extracting CD Track"},
        {&form.Command8, "Stop Everything"},
    };
    for (const auto& [control, tip] : tips) {
        EXPECT_EQ(control->toolTip(), tip) << control->name();
    }
}

TEST_F(Form1Test, InitiallyHidesTheCancelButtonAndTheDiskWarning) {
    EXPECT_FALSE(form.Command2.visible());
    EXPECT_FALSE(form.Label5.visible());
}

TEST_F(Form1Test, HidesTheListsAndTheControlsThatOnlyCodeUses) {
    for (const Control* hidden :
         std::vector<Control*>{&form.lstTracks, &form.lstRecord, &form.List1, &form.List2,
                               &form.List3, &form.List4, &form.List5, &form.List7, &form.Check9,
                               &form.cmdStart, &form.CmdDecoder, &form.Command8}) {
        EXPECT_FALSE(hidden->visible()) << hidden->name();
    }
}

TEST_F(Form1Test, StartsWithEmptyListsAndTimersOff) {
    for (const ListBox* list : {&form.lstTracks, &form.lstRecord, &form.List1, &form.List2,
                                &form.List3, &form.List4, &form.List5, &form.List7}) {
        EXPECT_EQ(list->listCount(), 0) << list->name();
    }
    const std::vector<const Timer*> timers = {&form.Timer1, &form.tmrRecord, &form.tmrWarning,
                                              &form.Timeravi};
    std::vector<int> intervals;
    for (const Timer* timer : timers) {
        EXPECT_FALSE(timer->enabled()) << timer->name();
        intervals.push_back(static_cast<int>(timer->interval().count()));
    }
    EXPECT_THAT(intervals, ElementsAre(5000, 100, 2000, 1000));
}

TEST_F(Form1Test, HasItsMenuEntriesInTheDesignedOrder) {
    const auto captions = [](const MenuItem& menu) {
        std::vector<std::string> all;
        for (const MenuItem* entry : menu.entries()) {
            all.push_back(entry->caption());
        }
        return all;
    };
    EXPECT_THAT(captions(form.mnuFile), ElementsAre("Open", "Exit", "popup"));
    EXPECT_THAT(captions(form.mnupopup), ElementsAre("Start!", "Remove from List",
                                                     "Remove and Delete File", "Minimize", "Exit"));
    EXPECT_THAT(captions(form.mnuActiopn), ElementsAre("Start ", "Stop", "Refresh List"));
    EXPECT_THAT(captions(form.mnuPrefs), ElementsAre("Preferences", "Toolbars", "CD Player",
                                                     "Search", "Playlist", "Devices"));
    EXPECT_THAT(captions(form.mnuGetToolbars),
                ElementsAre("ToolBar", "CD Bar", "Activity Bar", "Status Bar"));
    EXPECT_THAT(captions(form.mnuCDplayer), ElementsAre("Open", "Close"));
    EXPECT_THAT(captions(form.mnuHelp), ElementsAre("Help File", "About"));
}

TEST_F(Form1Test, DisablemDisablesOnlyTheTwelveButtonsAndMenus) {
    form.Enablem();
    form.Disablem();
    EXPECT_THAT(namesOfEnabled(), IsEmpty());
    EXPECT_TRUE(form.Command5.enabled());
    EXPECT_TRUE(form.Command2.enabled());
    EXPECT_TRUE(form.TreeView1.enabled());
    EXPECT_TRUE(form.CmdSelectAction.enabled());
}

TEST_F(Form1Test, DisablemDisablesButtonsAndMenusAndThenUnloadsThreeWindowsInAFixedOrder) {
    std::vector<std::string> unloaded;
    for (Form* window :
         std::initializer_list<Form*>{&windows.frmsearch, &windows.Form4, &windows.frmPlayList,
                                      &windows.FrmPrefs, &windows.Form6, &windows.frmpopup}) {
        window->load();
        window->onUnload = [&unloaded, this, window] {
            EXPECT_THAT(namesOfEnabled(), IsEmpty());
            unloaded.push_back(window->name());
        };
    }
    form.Disablem();
    EXPECT_THAT(unloaded, ElementsAre("Form6", "frmPlayList", "frmsearch"));
}

TEST_F(Form1Test, DisablemLoadsNothing) {
    form.Disablem();
    EXPECT_FALSE(windows.Form6.loaded());
    EXPECT_FALSE(windows.frmPlayList.loaded());
    EXPECT_FALSE(windows.frmsearch.loaded());
}

TEST_F(Form1Test, EnablemEnablesAllTwelveButtonsAndMenusIncludingThoseInitiallyDisabled) {
    form.Enablem();
    EXPECT_EQ(namesOfEnabled().size(), commands.size());
    form.Enablem();
    EXPECT_EQ(namesOfEnabled().size(), commands.size());
}

TEST_F(Form1Test, EnablemUnloadsNothing) {
    windows.frmsearch.load();
    form.Enablem();
    EXPECT_TRUE(windows.frmsearch.loaded());
}

TEST_F(Form1Test, ClearActivityResetsTheDisplaysExceptStatus) {
    process.settings.decodePath = "c:\\wavfiles";
    form.Label3.setCaption("Extracting Track 1");
    form.Label2.setCaption("x");
    form.setCaption("Extracting Track 1");
    form.ProgressBar1.setValue(50).passOver();
    form.lblStatus.setCaption("123");
    form.Label33.setCaption("50%");
    form.Status.setCaption("50.00%");
    form.ClearActivity();
    // "action" begins with a small letter here; in the designed text it begins with a capital.
    EXPECT_EQ(form.Label3.caption(), "Next action:");
    EXPECT_EQ(form.Label2.caption(), "c:\\wavfiles\\");
    EXPECT_EQ(form.caption(), "Sonarith v2.0");
    EXPECT_EQ(form.ProgressBar1.value(), 0);
    EXPECT_EQ(form.lblStatus.caption(), "");
    EXPECT_EQ(form.Label33.caption(), "");
    EXPECT_EQ(form.Status.caption(), "50.00%");
}

} // namespace
} // namespace sonarith
