// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/power_switch.h"

#include <algorithm>

#include "support/must_run.h"
#include "support/player_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using Operations = std::vector<std::string>;

Operations joined(std::initializer_list<Operations> parts) {
    Operations all;
    for (const Operations& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

struct PowerSwitchTest : test::PlayerWorld {
    const Operations inputStarts = {"wave open", "wave prepare", "wave prepare",
                                    "wave add",  "wave add",     "wave start"};
    const Operations inputStops = {"wave reset", "wave stop", "wave unprepare", "wave unprepare",
                                   "wave close"};
    const Operations inputStopsAgain = {"wave reset 5", "wave stop 5", "wave unprepare 5",
                                        "wave unprepare 5", "wave close 5"};
    const Operations unmutes = {
        "mixer line 4",    "mixer control 4 20010002",    "mixer set 4 20010002 0",
        "mixer line 4101", "mixer control 4101 20010002", "mixer set 4101 20010002 0"};
    const Operations mutesDisc = {"mixer line 4101", "mixer control 4101 20010002",
                                  "mixer set 4101 20010002 1"};
    const Operations meterPrepared = {"mixer open", "mixer line 7", "mixer control 7 10020001",
                                      "mixer line 4104", "mixer control 4104 10020001"};
    const Operations discCloses = {"stop cd", "close cd"};
    const Operations voiceCloses = {"stop voice1", "close voice1"};
    const Operations discOpens = {"open cdaudio alias cd wait shareable",
                                  "set cd time format tmsf wait"};
    const Operations yields = {"yield"};

    Operations clickOn() {
        return operationsOf([&] { form.OptCD.choose(); });
    }
    Operations clickOff() {
        return operationsOf([&] { form.optNoCD.choose(); });
    }
    Operations switchOffForAnAction() {
        return operationsOf([&] { form.Command6.click(); });
    }
    /// Makes the meter draw a level.
    void showMeter() {
        mixer.put(mixer_line::waveIn, mixer_control::peakMeter, 20000);
        form.Timer3.fire();
    }
};

// --- on ------------------------------------------------------------------------------------

TEST_F(PowerSwitchTest, SwitchingOnRunsItsStepsInOrder) {
    EXPECT_EQ(clickOn(),
              joined({inputStarts, unmutes, meterPrepared, discCloses, voiceCloses, discOpens}));
    EXPECT_TRUE(on());
    EXPECT_TRUE(form.OptCD.selected());
    EXPECT_THAT(enabledButtons(), ElementsAre("eject"));
    EXPECT_FALSE(form.Timer1.enabled());
    EXPECT_FALSE(form.Timer2.enabled());
    EXPECT_FALSE(form.Timer4.enabled());
    // The text "OFF" stays until the first poll that finds a disc.
    EXPECT_EQ(form.CD.text(), "OFF");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(PowerSwitchTest, SwitchingOnUnmutesTheMasterAndTheDisc) {
    mixer.put(mixer_line::speakers, mixer_control::mute, 1);
    mixer.put(mixer_line::compactDisc, mixer_control::mute, 1);
    mixer.put(mixer_line::waveOut, mixer_control::mute, 1);
    clickOn();
    EXPECT_EQ(mixer.value(mixer_line::speakers, mixer_control::mute), 0);
    EXPECT_FALSE(discMuted());
    EXPECT_EQ(mixer.value(mixer_line::waveOut, mixer_control::mute), 1);
    // Switching on runs the handlers of Option1 and Option14 without selecting these buttons.
    EXPECT_FALSE(form.Option1.selected());
    EXPECT_FALSE(form.Option14.selected());
}

TEST_F(PowerSwitchTest, TheStatusOfUncheckedCommandsIsStoredInFileIndex) {
    std::vector<std::int32_t> results; // fileIndex before each command
    const auto log = media.onCommand;
    media.onCommand = [&](std::string_view command) {
        log(command);
        results.push_back(process.fileIndex);
    };
    media.answer("stop cd", {.status = 1});
    media.answer("close cd", {.status = 2});
    media.answer("stop voice1", {.status = 3});
    media.answer("close voice1", {.status = 4});
    process.fileIndex = 77;
    clickOn();
    EXPECT_THAT(results, ElementsAre(77, 1, 2, 3, 4, 4));
    EXPECT_EQ(process.fileIndex, 4);
}

TEST_F(PowerSwitchTest, SwitchingOnAPlayerThatIsOnReopensTheDiscButDoesNotRestartTheInput) {
    switchOn();
    form.play.click();
    EXPECT_EQ(clickOn(), joined({unmutes, meterPrepared, discCloses, voiceCloses, discOpens}));
    EXPECT_TRUE(on());
    EXPECT_FALSE(disc.playing());
    EXPECT_FALSE(player.disc.CDLoaded);
    EXPECT_EQ(form.timeWindow.text(), "");
    EXPECT_EQ(form.tracktime.caption(), "");
    EXPECT_THAT(enabledButtons(), ElementsAre("eject"));
    EXPECT_EQ(waveInput.opened, 1);
    loop.advance(1s);
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:00");
}

TEST_F(PowerSwitchTest, ThePollTimerIsOffDuringTheCommandsThatReopenTheDisc) {
    switchOn();
    bool reached = false;
    media.onCommand = [&](std::string_view command) {
        if (command == "stop cd" || command.starts_with("open cdaudio") ||
            command.starts_with("set cd time")) {
            reached = true;
            EXPECT_FALSE(form.Timer6.enabled()) << command;
        }
    };
    form.OptCD.choose();
    EXPECT_TRUE(reached);
    EXPECT_TRUE(form.Timer6.enabled());
}

TEST_F(PowerSwitchTest, ADiscThatCannotBeOpenedUnloadsThePanelWithoutAMessageAndResetsTheSwitch) {
    media.answer("open cdaudio alias cd wait shareable", {.status = 266});
    const Operations sent = commandsOf([&] { form.OptCD.choose(); });
    EXPECT_THAT(sent, ElementsAre("stop cd", "close cd", "stop voice1", "close voice1",
                                  "open cdaudio alias cd wait shareable", //
                                  "close all", "close all",               //
                                  "stop cd", "close cd", "close all"));
    EXPECT_FALSE(form.loaded());
    EXPECT_TRUE(off());
    EXPECT_FALSE(form.OptCD.selected());
    EXPECT_FALSE(form.optNoCD.selected());
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_TRUE(discMuted());
    // The player works again when the disc can be opened.
    media.forgetAnswers();
    form.show();
    switchOn();
    EXPECT_EQ(form.CD.text(), "Cd Ready");
}

TEST_F(PowerSwitchTest, ATimeFormatThatIsRefusedUnloadsThePanelAndStartsNothing) {
    media.answer("set cd time format tmsf wait", {.status = 274});
    form.OptCD.choose();
    EXPECT_FALSE(form.loaded());
    EXPECT_TRUE(off());
    EXPECT_FALSE(form.eject.enabled());
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(PowerSwitchTest, AnInputThatCannotBeOpenedIsReportedAndThePlayerWorksAnyway) {
    waveInput.failures["open"] = WaveResult::notEnabled;
    EXPECT_EQ(
        clickOn(),
        joined({{"wave open 3"}, unmutes, meterPrepared, discCloses, voiceCloses, discOpens}));
    EXPECT_THAT(boxes.shown, ElementsAre(test::ShownBox{.text = "input error 3"}));
    EXPECT_FALSE(player.capture.running());
    loop.advance(1s);
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    EXPECT_TRUE(form.Timer3.enabled());
    EXPECT_FALSE(form.picPeakVol.lines().empty());
}

// --- off -----------------------------------------------------------------------------------

TEST_F(PowerSwitchTest, SwitchingOffRunsItsStepsInOrder) {
    switchOn();
    form.play.click();
    showMeter();
    loop.atYield(1, [&] {
        // Before the yield, the text of form.CD becomes "OFF" and the meter is cleared. The timers,
        // the disc, the buttons and the time display change after the yield.
        EXPECT_EQ(form.CD.text(), "OFF");
        EXPECT_THAT(form.picPeakVol.lines(), IsEmpty());
        EXPECT_EQ(form.Label4.top(), form.Picture8.height());
        EXPECT_TRUE(form.Timer6.enabled());
        EXPECT_TRUE(form.Timer3.enabled());
        EXPECT_TRUE(disc.playing());
        EXPECT_TRUE(form.play.enabled());
        EXPECT_EQ(form.timeWindow.text(), "[01] 00:00");
    });
    EXPECT_EQ(clickOff(), joined({inputStops, mutesDisc, yields, discCloses}));
    EXPECT_TRUE(off());
    EXPECT_TRUE(looksOff());
    EXPECT_TRUE(form.optNoCD.selected());
    EXPECT_TRUE(discMuted());
    EXPECT_FALSE(form.Option13.selected());
    EXPECT_TRUE(form.loaded());
}

TEST_F(PowerSwitchTest, SwitchingOffStopsTheTimersOfTheMeterAndOfTheDiscPoll) {
    switchOn();
    for (Timer* timer : {&form.Timer2, &form.Timer4}) {
        timer->setEnabled(true);
    }
    clickOff();
    for (const Timer* timer : {&form.Timer2, &form.Timer3, &form.Timer4, &form.Timer6}) {
        EXPECT_FALSE(timer->enabled()) << timer->name();
    }
    EXPECT_THAT(operationsOf([&] { loop.advance(10s); }), IsEmpty());
}

TEST_F(PowerSwitchTest, SwitchingOffAPlayerThatIsOffRunsTheSameStepsWithoutAMessage) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(clickOff(), joined({inputStopsAgain, mutesDisc, yields, discCloses}));
        EXPECT_TRUE(off());
    }
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_EQ(process.fileIndex, test::SimulatedDisc::refused);
}

TEST_F(PowerSwitchTest, SwitchingOffKeepsTheInputCheckBoxTicked) {
    switchOn();
    form.Check3.setValue(1).passOver();
    clickOff();
    EXPECT_EQ(form.Check3.value(), 1);
    EXPECT_TRUE(off());
}

TEST_F(PowerSwitchTest, SwitchingOffClearsTheDisplaysEvenIfTimersTickDuringItsYield) {
    switchOn();
    disc.remove();
    mixer.put(mixer_line::waveIn, mixer_control::peakMeter, 20000);
    loop.atYield(1, test::mustRun([&] {
                     loop.advance(1s);
                     EXPECT_EQ(form.CD.text(), "No CD");
                     EXPECT_FALSE(form.picPeakVol.lines().empty());
                 }));
    clickOff();
    EXPECT_TRUE(looksOff());
}

TEST_F(PowerSwitchTest, RepeatedSwitchingOnAndOffLeavesNothingOpen) {
    for (int i = 0; i < 5; ++i) {
        switchOn();
        EXPECT_TRUE(on());
        EXPECT_EQ(form.CD.text(), "Cd Ready");
        clickOff();
        EXPECT_TRUE(off());
        EXPECT_TRUE(looksOff());
    }
    EXPECT_EQ(waveInput.opened, 5);
    EXPECT_EQ(loop.wakeupCount(), 0U);
}

// --- the full switch-off: Command6, clicked at the start of an action and at an unload ---------

TEST_F(PowerSwitchTest, TheFullSwitchOffRunsItsStepsInOrder) {
    switchOn();
    form.play.click();
    EXPECT_EQ(switchOffForAnAction(),
              joined({inputStops, yields, yields, yields,             //
                      inputStopsAgain, mutesDisc, yields, discCloses, // the steps of clickOff()
                      yields, yields, mutesDisc, yields}));
    EXPECT_TRUE(off());
    EXPECT_TRUE(looksOff());
    EXPECT_TRUE(discMuted());
    EXPECT_FALSE(form.optNoCD.selected());
    EXPECT_FALSE(form.OptCD.selected());
    EXPECT_TRUE(form.loaded());
    EXPECT_TRUE(process.PlayerOpen);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(PowerSwitchTest, TheFullSwitchOffUnticksTheInputCheckBoxWhichStopsTheInputOnceMore) {
    switchOn();
    form.Check3.setValue(1).passOver();
    EXPECT_EQ(switchOffForAnAction(),
              joined({inputStops, yields, yields, inputStopsAgain, yields, //
                      inputStopsAgain, mutesDisc, yields, discCloses,      //
                      yields, yields, mutesDisc, yields}));
    EXPECT_EQ(form.Check3.value(), 0);
}

TEST_F(PowerSwitchTest, TheFullSwitchOffDeselectsTheDiscsMuteButtonButNotItsUnmuteButton) {
    form.Option13.choose();
    switchOffForAnAction();
    EXPECT_FALSE(form.Option13.selected());
    EXPECT_TRUE(discMuted());
    // Option14 (unmute) stays selected, although the disc's line is muted.
    form.Option14.choose();
    switchOffForAnAction();
    EXPECT_TRUE(form.Option14.selected());
    EXPECT_TRUE(discMuted());
}

TEST_F(PowerSwitchTest, TheFullSwitchOffRunsItsStepsInOrderBetweenItsSevenYields) {
    switchOn();
    form.Check3.setValue(1).passOver();
    showMeter();
    const auto at = [&](int n, const std::function<void()>& look) {
        loop.atYield(n, look);
    };
    at(1, [&] {
        EXPECT_FALSE(player.capture.running());
        EXPECT_FALSE(form.picPeakVol.lines().empty());
        EXPECT_EQ(form.CD.text(), "Cd Ready");
    });
    at(2, [&] {
        EXPECT_THAT(form.picPeakVol.lines(), IsEmpty());
        EXPECT_EQ(form.CD.text(), "OFF");
        EXPECT_EQ(form.Label4.top(), form.Picture8.height());
        EXPECT_EQ(form.Check3.value(), 1);
    });
    at(3, [&] {
        EXPECT_EQ(form.Check3.value(), 0);
        EXPECT_FALSE(discMuted());
        EXPECT_TRUE(form.Timer6.enabled());
    });
    at(4, [&] {
        EXPECT_TRUE(discMuted());
        EXPECT_TRUE(disc.discOpen());
        EXPECT_TRUE(form.optNoCD.selected());
    });
    at(5, [&] {
        EXPECT_TRUE(off());
        EXPECT_FALSE(form.optNoCD.selected());
        form.Option13.setSelected(true);
    });
    at(6, [&] { EXPECT_TRUE(form.Option13.selected()); });
    at(7, [&] { EXPECT_FALSE(form.Option13.selected()); });
    const int before = loop.yieldCount();
    form.Command6.click();
    EXPECT_EQ(loop.yieldCount() - before, 7);
}

TEST_F(PowerSwitchTest, TheFullSwitchOffMutesTheDiscEvenIfThePlayerIsOff) {
    form.Option14.click();
    EXPECT_EQ(switchOffForAnAction(),
              joined({inputStopsAgain, yields, yields, yields, inputStopsAgain, mutesDisc, yields,
                      discCloses, yields, yields, mutesDisc, yields}));
    EXPECT_TRUE(discMuted());
    EXPECT_TRUE(off());
}

TEST_F(PowerSwitchTest, FailuresOfPollsAndOfClosingTheDiscAreIgnoredDuringTheFullSwitchOff) {
    switchOn();
    for (const char* question : {"status cd media present", "status cd position", "status cd mode",
                                 "stop cd", "close cd"}) {
        media.answer(question, {.status = 263});
    }
    for (const int n : {1, 2, 3, 4}) {
        loop.atYield(n, [&] { form.Timer6.fire(); });
    }
    form.Command6.click();
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_TRUE(form.loaded());
    EXPECT_TRUE(looksOff());
}

} // namespace
} // namespace sonarith
