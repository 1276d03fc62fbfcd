// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/transport.h"

#include <algorithm>
#include <cstdint>

#include "support/player_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Commands = std::vector<std::string>;

/// The player is switched on and has read a disc of three one-minute tracks.
struct TransportTest : test::PlayerWorld {
    DiscState& state = player.disc;
    const Commands allButtons = {"play", "pause", "stopbtn", "ftrack", "btrack", "eject"};
    const Commands allButEject = {"play", "pause", "stopbtn", "ftrack", "btrack"};

    TransportTest() { switchOn(); }
    /// `commands`, followed by the queries of one poll.
    static Commands thenPoll(Commands commands) {
        for (const char* question :
             {"status cd media present", "status cd position", "status cd mode"}) {
            commands.emplace_back(question);
        }
        return commands;
    }
    Commands click(CommandButton& button) {
        return commandsOf([&] { button.click(); });
    }
    /// Makes the device return this position and mode, and polls.
    void setPositionAndMode(int track, int minute, int second, bool playing) {
        const auto twoDigits = [](int number) {
            return (number < 10 ? "0" : "") + std::to_string(number);
        };
        media.answer("status cd position", {.reply = twoDigits(track) + ":" + twoDigits(minute) +
                                                     ":" + twoDigits(second) + ":00"});
        media.answer("status cd mode", {.reply = playing ? "playing" : "stopped"});
        player.poll.UpdatePlayer();
    }
};

// --- each button in each state -------------------------------------------------------------

TEST_F(TransportTest, EachButtonSendsTheCommandsForTheCurrentState) {
    struct Row {
        CommandButton& button;
        int track, minute, second;
        bool playing;
        Commands sent;
    };
    const Row rows[] = {
        // Play: plays from the current track's start; on the last track sends no command.
        {form.play, 1, 0, 0, false, {"play cd from 1"}},
        {form.play, 2, 0, 30, false, {"play cd from 2"}},
        {form.play, 2, 0, 30, true, {"play cd from 2"}},
        {form.play, 3, 0, 0, false, {}},
        {form.play, 3, 0, 30, true, {}},
        {form.pause, 1, 0, 0, false, {"pause cd"}},
        {form.pause, 3, 0, 30, true, {"pause cd"}},
        // Stop: seeks to the current track's start.
        {form.stopbtn, 1, 0, 0, false, {"stop cd wait", "seek cd to 1"}},
        {form.stopbtn, 3, 0, 30, true, {"stop cd wait", "seek cd to 3"}},
        // Next: keeps playing if the disc plays; on the last track seeks to the first, without
        // playing.
        {form.ftrack, 1, 0, 0, false, {"seek cd to 2"}},
        {form.ftrack, 1, 0, 30, true, {"play cd from 2"}},
        {form.ftrack, 2, 0, 0, true, {"play cd from 3"}},
        {form.ftrack, 3, 0, 30, false, {"seek cd to 1"}},
        {form.ftrack, 3, 0, 30, true, {"seek cd to 1"}},
        // Previous: skips to the current track's start. In the track's first second (shown time
        // 00:00), skips to the previous track instead.
        {form.btrack, 1, 0, 0, false, {"seek cd to 3"}},
        {form.btrack, 1, 0, 0, true, {"play cd from 3"}},
        {form.btrack, 1, 0, 1, false, {"seek cd to 1"}},
        {form.btrack, 1, 0, 1, true, {"play cd from 1"}},
        {form.btrack, 1, 1, 0, true, {"play cd from 1"}},
        {form.btrack, 2, 0, 0, false, {"seek cd to 1"}},
        {form.btrack, 2, 0, 0, true, {"play cd from 1"}},
        {form.btrack, 3, 0, 0, true, {"play cd from 2"}},
        {form.btrack, 3, 0, 59, false, {"seek cd to 3"}},
        {form.eject, 1, 0, 0, false, {"set cd door open"}},
        {form.eject, 2, 0, 30, true, {"set cd door open"}},
    };
    for (const char* command : {"play cd", "pause cd", "stop cd", "seek cd", "set cd door open"}) {
        media.answerPrefix(command, {});
    }
    for (const Row& row : rows) {
        SCOPED_TRACE(row.button.name() + " at track " + std::to_string(row.track) + ", " +
                     std::to_string(row.minute) + ":" + std::to_string(row.second) +
                     (row.playing ? ", playing" : ", stopped"));
        process.CDPaused = false;
        setPositionAndMode(row.track, row.minute, row.second, row.playing);
        EXPECT_EQ(click(row.button), thenPoll(row.sent));
    }
}

TEST_F(TransportTest,
       EachButtonExceptStopDisablesEjectBeforeItsCommandsAndStopEnablesEjectAfterItsCommands) {
    for (CommandButton* button :
         {&form.play, &form.pause, &form.ftrack, &form.btrack, &form.eject}) {
        SCOPED_TRACE(button->name());
        form.eject.setEnabled(true);
        int commands = 0;
        media.onCommand = [&](std::string_view command) {
            ++commands;
            EXPECT_FALSE(form.eject.enabled()) << command;
        };
        button->click();
        EXPECT_GT(commands, 0);
        EXPECT_FALSE(form.eject.enabled());
        // Inserts a disc, because one of the buttons, "Eject", opens the tray.
        disc.insert({60000, 60000, 60000});
        player.poll.UpdatePlayer();
    }
    int commands = 0;
    media.onCommand = [&](std::string_view command) {
        ++commands;
        EXPECT_FALSE(form.eject.enabled()) << command;
    };
    form.stopbtn.click();
    EXPECT_GT(commands, 0);
    EXPECT_TRUE(form.eject.enabled());
}

// --- play and pause ------------------------------------------------------------------------

TEST_F(TransportTest, PlayStartsPlayingAndUpdatesTheDisplay) {
    EXPECT_EQ(click(form.play), thenPoll({"play cd from 1"}));
    EXPECT_TRUE(disc.playing());
    EXPECT_TRUE(state.Playing);
    EXPECT_EQ(enabledButtons(), allButEject);
    loop.advance(65s);
    EXPECT_EQ(form.timeWindow.text(), "[02] 00:05");
    EXPECT_EQ(form.CD.text(), "Cd Ready");
}

TEST_F(TransportTest, ATrackSelectedInTheMainWindowIsPlayedInsteadOfTheCurrentTrack) {
    form.ftrack.click();
    EXPECT_EQ(state.CurTrack, 2);
    process.currentTrack = 1;
    EXPECT_EQ(click(form.play), thenPoll({"play cd from 1"}));
    // Play uses the selected track at every click, not only at the first.
    form.ftrack.click();
    EXPECT_EQ(click(form.play), thenPoll({"play cd from 1"}));
    process.currentTrack = 0;
    form.ftrack.click();
    EXPECT_EQ(click(form.play), thenPoll({"play cd from 2"}));
}

TEST_F(TransportTest, PlayPlaysNothingIfTheSelectedTrackIsTheLastOrHasALargerNumber) {
    for (const int track : {3, 4, 99}) {
        process.currentTrack = track;
        EXPECT_EQ(click(form.play), thenPoll({})) << "track " << track;
        EXPECT_FALSE(state.Playing) << "track " << track;
    }
}

TEST_F(TransportTest, PlayIgnoresASelectedTrackNumberOutside1To32767) {
    form.ftrack.click();
    for (const std::int32_t track : {40000, INT32_MAX, -1, INT32_MIN, 0}) {
        process.currentTrack = track;
        EXPECT_EQ(click(form.play), thenPoll({"play cd from 2"})) << "track " << track;
    }
}

TEST_F(TransportTest, PlayPlaysTheFirstTrackIfTheCurrentTrackNumberIsBelowOne) {
    media.answer("status cd position", {.reply = "00:00:00:00"});
    player.poll.UpdatePlayer();
    EXPECT_EQ(state.CurTrack, 0);
    EXPECT_EQ(click(form.play), thenPoll({"play cd from 1"}));
}

TEST_F(TransportTest, PlayOnTheLastTrackDisablesEjectAndDoesNotPlay) {
    setPositionAndMode(3, 0, 0, false);
    EXPECT_EQ(click(form.play), thenPoll({}));
    EXPECT_FALSE(state.Playing);
    EXPECT_FALSE(disc.playing());
    EXPECT_EQ(enabledButtons(), allButEject);
}

TEST_F(TransportTest, PlaySetsThePlayingFlagBeforeItSendsItsCommand) {
    bool playing = false;
    media.onCommand = [&](std::string_view command) {
        if (command == "play cd from 1") {
            playing = state.Playing;
        }
    };
    form.play.click();
    EXPECT_TRUE(playing);
}

TEST_F(TransportTest, PlayAfterAPauseContinuesWithoutATrackNumberAndShowsPlaying) {
    form.play.click();
    loop.advance(10s);
    EXPECT_EQ(click(form.pause), thenPoll({"pause cd"}));
    EXPECT_TRUE(process.CDPaused);
    EXPECT_FALSE(state.Playing);
    EXPECT_FALSE(disc.playing());
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    loop.advance(10s);
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:10");
    // When Play ends a pause, it does not use the selected track, and it does not poll.
    process.currentTrack = 2;
    EXPECT_THAT(click(form.play), ElementsAre("play cd"));
    EXPECT_FALSE(process.CDPaused);
    EXPECT_TRUE(state.Playing);
    EXPECT_EQ(form.CD.text(), "Playing");
    loop.advance(5s);
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:15");
    EXPECT_EQ(form.CD.text(), "Playing");
    EXPECT_EQ(click(form.play), thenPoll({"play cd from 2"}));
}

TEST_F(TransportTest, PlayAfterAPauseDisablesEjectBeforeItSendsItsCommand) {
    form.pause.click();
    form.eject.setEnabled(true);
    bool sent = false;
    media.onCommand = [&](std::string_view command) {
        sent = command == "play cd";
        EXPECT_FALSE(form.eject.enabled());
    };
    form.play.click();
    EXPECT_TRUE(sent);
    EXPECT_FALSE(form.eject.enabled());
}

TEST_F(TransportTest, WhilePausedThePollClearsThePlayingFlagSoThatASkipOnlySeeks) {
    form.play.click();
    form.pause.click();
    state.Playing = true;
    loop.advance(1s);
    EXPECT_FALSE(state.Playing);
    EXPECT_EQ(click(form.ftrack), thenPoll({"seek cd to 2"}));
}

TEST_F(TransportTest, OnlyPlayEndsAPause) {
    form.play.click();
    form.pause.click();
    for (CommandButton* button : {&form.stopbtn, &form.ftrack, &form.btrack, &form.eject}) {
        button->click();
        EXPECT_TRUE(process.CDPaused) << button->name();
    }
    form.optNoCD.choose();
    disc.insert({60000, 60000});
    switchOn();
    EXPECT_TRUE(process.CDPaused);
    EXPECT_THAT(click(form.play), ElementsAre("play cd"));
}

// --- stop, skip, eject ---------------------------------------------------------------------

TEST_F(TransportTest, StopSeeksToTheStartOfTheTrack) {
    form.play.click();
    loop.advance(75s);
    EXPECT_EQ(form.timeWindow.text(), "[02] 00:15");
    EXPECT_EQ(click(form.stopbtn), thenPoll({"stop cd wait", "seek cd to 2"}));
    EXPECT_FALSE(disc.playing());
    EXPECT_FALSE(state.Playing);
    EXPECT_EQ(form.timeWindow.text(), "[02] 00:00");
    EXPECT_EQ(enabledButtons(), allButtons);
}

TEST_F(TransportTest, NextOnTheLastTrackReturnsToTheFirstAndStops) {
    form.play.click();
    loop.advance(125s);
    EXPECT_EQ(form.timeWindow.text(), "[03] 00:05");
    EXPECT_EQ(click(form.ftrack), thenPoll({"seek cd to 1"}));
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:00");
    EXPECT_FALSE(disc.playing());
    EXPECT_FALSE(state.Playing);
}

TEST_F(TransportTest, PreviousSkipsFromTheDiscsStartToTheLastTrackButFromWithinTrack1ToItsStart) {
    EXPECT_EQ(click(form.btrack), thenPoll({"seek cd to 3"}));
    EXPECT_EQ(form.timeWindow.text(), "[03] 00:00");
    form.ftrack.click();
    form.play.click();
    loop.advance(2s);
    EXPECT_EQ(click(form.btrack), thenPoll({"play cd from 1"}));
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:00");
    EXPECT_TRUE(disc.playing());
}

TEST_F(TransportTest, EjectOpensTheTrayAndStaysDisabled) {
    EXPECT_THAT(click(form.eject), ElementsAre("set cd door open", "status cd media present"));
    EXPECT_EQ(form.CD.text(), "No CD");
    EXPECT_THAT(enabledButtons(), IsEmpty());
    // Another disc enables the other buttons; a stop enables "Eject".
    disc.insert({60000, 60000});
    loop.advance(1s);
    EXPECT_EQ(enabledButtons(), allButEject);
    form.stopbtn.click();
    EXPECT_EQ(enabledButtons(), allButtons);
}

// --- switched off --------------------------------------------------------------------------

TEST_F(TransportTest,
       IfADiscWasReadEarlierAClickOnPlayWhileSwitchedOffClosesThePanelAndShowsNoMessage) {
    form.optNoCD.choose();
    EXPECT_THAT(commandsOf([&] { form.mnuPlayCD.click(); }),
                ElementsAre("play cd from 1", "close all", "close all", "stop cd", "close cd",
                            "close all", "status cd media present"));
    EXPECT_FALSE(form.loaded());
    EXPECT_TRUE(off());
    EXPECT_THAT(boxes.shown, IsEmpty());
}

// --- a command that fails ------------------------------------------------------------------

TEST_F(TransportTest, EachCommandIsCheckedAndItsFailureClosesThePanelWithoutAMessage) {
    struct Row {
        const char* failing;
        CommandButton Form4::*button;
        bool paused;
    };
    for (const Row& row :
         {Row{"play cd from 1", &Form4::play, false}, Row{"play cd", &Form4::play, true},
          Row{"pause cd", &Form4::pause, false}, Row{"stop cd wait", &Form4::stopbtn, false},
          Row{"seek cd to 1", &Form4::stopbtn, false}, Row{"seek cd to 2", &Form4::ftrack, false},
          Row{"seek cd to 3", &Form4::btrack, false},
          Row{"set cd door open", &Form4::eject, false}}) {
        SCOPED_TRACE(row.failing);
        test::PlayerBench bench;
        bench.switchOn();
        bench.process.CDPaused = row.paused;
        bench.media.answer(row.failing, {.status = 275});
        const Commands sent = bench.commandsOf([&] { (bench.form.*row.button).click(); });
        const auto failed = std::find(sent.begin(), sent.end(), row.failing);
        ASSERT_NE(failed, sent.end());
        ASSERT_GE(sent.end() - failed, 3);
        EXPECT_EQ(failed[1], "close all");
        EXPECT_EQ(failed[2], "close all");
        EXPECT_FALSE(bench.form.loaded());
        EXPECT_FALSE(bench.process.PlayerOpen);
        EXPECT_TRUE(bench.off());
        EXPECT_THAT(bench.boxes.shown, IsEmpty());
        // The panel works after it is opened again.
        bench.media.forgetAnswers();
        bench.form.show();
        bench.switchOn();
        EXPECT_TRUE(bench.on());
        EXPECT_EQ(bench.form.CD.text(), "Cd Ready");
        EXPECT_EQ(bench.enabledButtons(), allButtons);
    }
}

TEST_F(TransportTest, StopSendsItsSecondCommandEvenIfItsFirstCommandFails) {
    media.answer("stop cd wait", {.status = 275});
    EXPECT_THAT(commandsOf([&] { form.stopbtn.click(); }),
                ElementsAre("stop cd wait",                           //
                            "close all", "close all",                 //
                            "stop cd", "close cd", "close all",       //
                            "seek cd to 1", "close all", "close all", //
                            "status cd media present"));
    EXPECT_FALSE(form.loaded());
}

TEST_F(TransportTest, AFailedResumeEndsThePauseAndUnloadsThePanel) {
    form.pause.click();
    media.answer("play cd", {.status = 275});
    form.play.click();
    EXPECT_FALSE(process.CDPaused);
    EXPECT_FALSE(form.loaded());
    form.load();
    EXPECT_EQ(form.CD.text(), "OFF");
}

} // namespace
} // namespace sonarith
