// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/player_window.h"

#include <functional>

#include "support/must_run.h"
#include "support/player_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct PlayerWindowTest : test::PlayerWorld {};

// --- load and unload -----------------------------------------------------------------------

TEST_F(PlayerWindowTest, TheLoadPlacesThePanelToTheRightOfTheMainWindowWithTheSameTopAndHeight) {
    form.unload();
    main.setLeft(1000_twips);
    main.setTop(700_twips);
    main.setWidth(4100_twips);
    main.setHeight(6000_twips);
    const Twips width = form.width();
    form.load();
    EXPECT_EQ(form.left(), 5100_twips);
    EXPECT_EQ(form.top(), 700_twips);
    EXPECT_EQ(form.height(), 6000_twips);
    EXPECT_EQ(form.width(), width);
    EXPECT_FALSE(form.visible());
}

TEST_F(PlayerWindowTest, TheLoadClicksFourButtonsInOrderAfterItsOtherSteps) {
    form.unload();
    EXPECT_FALSE(process.PlayerOpen);
    player.disc.CDLoaded = true;
    std::vector<std::string> steps;
    for (CommandButton* button : {&form.Command2, &form.Command3, &form.Command4, &form.Command5}) {
        button->onClick = [&, button] {
            steps.push_back(button->name());
            EXPECT_TRUE(process.PlayerOpen);
            EXPECT_FALSE(player.disc.CDLoaded);
            EXPECT_FALSE(form.Timer1.enabled());
            EXPECT_EQ(form.left(), main.left() + main.width());
        };
    }
    form.load();
    EXPECT_THAT(steps, ElementsAre("Command2", "Command3", "Command4", "Command5"));
}

TEST_F(PlayerWindowTest, TheLoadOpensNoDiscAndNoWaveInput) {
    form.unload();
    EXPECT_THAT(commandsOf([&] { form.load(); }), IsEmpty());
    EXPECT_TRUE(off());
    EXPECT_EQ(loop.wakeupCount(), 0U);
}

TEST_F(PlayerWindowTest, TheUnloadSwitchesThePlayerOffAndThenClosesAllDevices) {
    switchOn();
    form.show();
    form.play.click();
    bool openAtCloseAll = true;
    const auto log = media.onCommand;
    media.onCommand = [&](std::string_view command) {
        log(command);
        if (command == "close all") {
            openAtCloseAll = process.PlayerOpen;
        } else {
            EXPECT_TRUE(process.PlayerOpen) << command;
        }
    };
    EXPECT_THAT(commandsOf([&] { form.unload(); }),
                ElementsAre("stop cd", "close cd", "close all"));
    EXPECT_FALSE(openAtCloseAll);
    EXPECT_FALSE(process.PlayerOpen);
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_TRUE(off());
    EXPECT_TRUE(discMuted());
}

TEST_F(PlayerWindowTest, TheUnloadIgnoresAFailureOfItsCommandCloseAll) {
    media.answer("close all", {.status = 299});
    EXPECT_THAT(commandsOf([&] { form.unload(); }),
                ElementsAre("stop cd", "close cd", "close all"));
    EXPECT_EQ(process.fileIndex, 299);
    EXPECT_FALSE(form.loaded());
}

TEST_F(PlayerWindowTest, TheTrackCountAndTheCurrentTrackAreKeptWhenThePanelIsLoadedAgain) {
    switchOn();
    form.ftrack.click();
    form.unload();
    form.load();
    EXPECT_EQ(player.disc.NumTracks, 3);
    EXPECT_EQ(player.disc.CurTrack, 2);
    EXPECT_FALSE(player.disc.CDLoaded);
}

TEST_F(PlayerWindowTest, AWaveInputThatStartsDuringTheUnloadIsStopped) {
    // The box "input", which starts the wave input, is ticked in the last yield of the switch-off,
    // when all steps of the switch-off that stop the wave input have run.
    loop.atYield(7, test::mustRun([&] {
                     form.Check3.setValue(1).passOver();
                     EXPECT_TRUE(waveInput.running);
                 }));
    form.unload();
    EXPECT_TRUE(off());
    form.load();
    EXPECT_EQ(form.Check3.value(), 0);
}

TEST_F(PlayerWindowTest, TheExitButtonClosesAllDevicesTwiceAndThenThePanel) {
    EXPECT_THAT(commandsOf([&] { form.Command1.click(); }),
                ElementsAre("close all", "close all", "stop cd", "close cd", "close all"));
    EXPECT_FALSE(form.loaded());
}

TEST_F(PlayerWindowTest, TheExitButtonChecksTheResultOfItsSecondCommandCloseAll) {
    media.answer("close all", {.status = 299});
    EXPECT_THAT(commandsOf([&] { form.Command1.click(); }),
                ElementsAre("close all", "close all",          // the button's two commands
                            "close all", "close all",          // because the second command failed
                            "stop cd", "close cd", "close all" // the panel's unload
                            ));
    EXPECT_FALSE(form.loaded());
    EXPECT_THAT(boxes.shown, IsEmpty());
}

// --- menus ---------------------------------------------------------------------------------

TEST_F(PlayerWindowTest, MenuEntriesActAsClicksOnTheirButtonsEvenIfTheButtonsAreDisabled) {
    std::vector<std::string> clicks;
    const auto note = [&](const Control& control) {
        return [&clicks, &control] {
            clicks.push_back(control.name());
        };
    };
    form.OptCD.onClick = note(form.OptCD);
    form.optNoCD.onClick = note(form.optNoCD);
    form.play.onClick = note(form.play);
    form.stopbtn.onClick = note(form.stopbtn);
    EXPECT_FALSE(form.play.enabled());
    for (MenuItem* entry :
         {&form.mnuCDon, &form.mnuCDonp, &form.mnuCDOff, &form.mnuCDOffp, &form.mnuPlayCD,
          &form.mnuPlayCDp, &form.mnuStopPlay, &form.mnuStopPlayp}) {
        entry->click();
    }
    EXPECT_THAT(clicks, ElementsAre("OptCD", "OptCD", "optNoCD", "optNoCD", "play", "play",
                                    "stopbtn", "stopbtn"));
}

TEST_F(PlayerWindowTest, PopupEntriesSetThePowerSwitch) {
    form.mnuCDonp.click();
    EXPECT_TRUE(form.OptCD.selected());
    EXPECT_TRUE(on());
    form.mnuCDOffp.click();
    EXPECT_TRUE(form.optNoCD.selected());
    EXPECT_FALSE(form.OptCD.selected());
    EXPECT_TRUE(off());
}

TEST_F(PlayerWindowTest, TheMinimizeEntriesHaveNoAction) {
    bool asked = false;
    const Connection minimized = form.minimizeRequested.connect([&] { asked = true; });
    form.show();
    EXPECT_THAT(operationsOf([&] {
                    form.mnuMinCD.click();
                    form.mnuMinimCDp.click();
                }),
                IsEmpty());
    EXPECT_FALSE(asked);
    EXPECT_TRUE(form.visible());
}

TEST_F(PlayerWindowTest, TheCloseEntriesUnloadThePanel) {
    for (MenuItem* entry : {&form.mnuUnloadCD, &form.mnuCloseCDp}) {
        form.load();
        entry->click();
        EXPECT_FALSE(form.loaded()) << entry->name();
    }
}

TEST_F(PlayerWindowTest, TheShowAsCubeEntriesSetTheHeightUntilTheNextLoad) {
    main.setHeight(6000_twips);
    for (MenuItem* entry : {&form.mnuCubeit, &form.mnuCubeitp}) {
        SCOPED_TRACE(entry->name());
        form.unload();
        form.load();
        EXPECT_EQ(form.height(), 6000_twips);
        const Twips width = form.width();
        // A second click changes nothing: no entry restores the height.
        for (int i = 0; i < 2; ++i) {
            EXPECT_THAT(operationsOf([&] { entry->click(); }), IsEmpty());
            EXPECT_EQ(form.height(), 3480_twips);
            EXPECT_EQ(form.width(), width);
            EXPECT_FALSE(form.windowRegion().has_value());
        }
    }
}

// --- surfaces ------------------------------------------------------------------------------

struct PlayerSurfacesTest : PlayerWindowTest {
    int drags = 0;
    std::vector<std::string> popups;
    const Connection grasped = form.captionGrasped.connect([this] { ++drags; });
    const Connection opened = form.popupRequested.connect(
        [this](const MenuItem& menu) { popups.push_back(menu.name()); });
    static constexpr MouseButtons none{};
    static constexpr MouseButtons left{.left = true};
    static constexpr MouseButtons right{.right = true};

    int dragsOf(const std::function<void()>& event) {
        drags = 0;
        event();
        return drags;
    }
};

TEST_F(PlayerSurfacesTest, MovingTheMouseWithTheLeftButtonDownOnPicture3OrPicture4DragsTheWindow) {
    for (PictureBox* picture : {&form.Picture3, &form.Picture4}) {
        SCOPED_TRACE(picture->name());
        EXPECT_EQ(dragsOf([&] { run(picture->onMouseMove, left); }), 1);
        EXPECT_EQ(dragsOf([&] { run(picture->onMouseMove, none); }), 0);
        EXPECT_EQ(dragsOf([&] { run(picture->onMouseMove, right); }), 0);
        EXPECT_EQ(dragsOf([&] { run(picture->onMouseDown, left); }), 0);
    }
    EXPECT_THAT(popups, IsEmpty());
}

TEST_F(PlayerSurfacesTest, APressOfTheLeftButtonOnOneOfThreeSurfacesDragsTheWindow) {
    const std::pair<Control*, std::function<void(MouseButtons)>> surfaces[] = {
        {&form.Picture10,
         [&](MouseButtons buttons) {
             run(form.Picture10.onMouseDown, buttons);
         }},
        {&form.timeWindow,
         [&](MouseButtons buttons) {
             run(form.timeWindow.onMouseDown, buttons);
         }},
        {&form.picPeakVol,
         [&](MouseButtons buttons) {
             run(form.picPeakVol.onMouseDown, buttons);
         }},
    };
    for (const auto& [surface, press] : surfaces) {
        SCOPED_TRACE(surface->name());
        EXPECT_EQ(dragsOf([&] { press(left); }), 1);
        EXPECT_EQ(dragsOf([&] { press(right); }), 0);
    }
    EXPECT_EQ(dragsOf([&] {
                  run(form.Picture10.onMouseMove, left);
                  run(form.picPeakVol.onMouseMove, left);
              }),
              0);
}

TEST_F(PlayerSurfacesTest, TheRightButtonOpensThePopupMenuOnlyOnPicture3AndPicPeakVol) {
    run(form.Picture3.onMouseDown, right);
    EXPECT_THAT(popups, ElementsAre("mnupopup"));
    run(form.picPeakVol.onMouseDown, right);
    EXPECT_THAT(popups, ElementsAre("mnupopup", "mnupopup"));
    for (PictureBox* picture : {&form.Picture4, &form.Picture10, &form.Picture8}) {
        run(picture->onMouseDown, right);
    }
    run(form.timeWindow.onMouseDown, right);
    run(form.Picture3.onMouseDown, left);
    run(form.picPeakVol.onMouseDown, left);
    EXPECT_EQ(popups.size(), 2U);
    EXPECT_EQ(drags, 1);
}

} // namespace
} // namespace sonarith
