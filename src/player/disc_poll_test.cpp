// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/disc_poll.h"

#include <algorithm>

#include "support/player_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// The player is switched on with a disc of three one-minute tracks, and has not polled
/// the drive yet.
struct DiscPollTest : test::PlayerWorld {
    const std::vector<std::string> shortPoll = {"status cd media present", "status cd position",
                                                "status cd mode"};
    const std::vector<std::string> allButtons = {"play",   "pause",  "stopbtn",
                                                 "ftrack", "btrack", "eject"};
    DiscState& state = player.disc;

    DiscPollTest() { form.OptCD.choose(); }
    std::vector<std::string> poll() {
        return commandsOf([&] { player.poll.UpdatePlayer(); });
    }
    /// The status text (form.CD) after each of its changes during `step`.
    template <typename Step>
    std::vector<std::string> wordsDuring(Step step) {
        std::vector<std::string> words;
        const Connection connection =
            form.CD.changed.connect([&](Property) { words.push_back(form.CD.text()); });
        step();
        return words;
    }
};

// --- when the drive is polled --------------------------------------------------------------

TEST_F(DiscPollTest, PollsOnceASecond) {
    loop.advance(1s);
    const auto observed = commandsOf([&] { loop.advance(5s); });
    EXPECT_EQ(std::count(observed.begin(), observed.end(), "status cd media present"), 5);
}

TEST_F(DiscPollTest, Timer1IsOffAndHasTheSameHandlerAsTimer6) {
    poll();
    EXPECT_EQ(commandsOf([&] { form.Timer1.fire(); }), shortPoll);
    EXPECT_EQ(commandsOf([&] { form.Timer6.fire(); }), shortPoll);
    EXPECT_FALSE(form.Timer1.enabled());
}

// --- a disc is found -----------------------------------------------------------------------

TEST_F(DiscPollTest, ANewDiscIsReadAndPositionedAtItsFirstTrack) {
    EXPECT_THAT(poll(), ElementsAre("status cd media present", "status cd number of tracks wait",
                                    "status cd length wait", "status cd length track 1",
                                    "status cd length track 2", "status cd length track 3",
                                    "seek cd to 1", "status cd position", "status cd mode"));
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:00");
    EXPECT_EQ(form.timeWindow.fontSize(), 18);
    EXPECT_EQ(form.tracktime.caption(), "Track time: 01:00:00");
    EXPECT_EQ(enabledButtons(), allButtons);
    EXPECT_TRUE(state.CDLoaded);
    EXPECT_EQ(state.NumTracks, 3);
    EXPECT_THAT(state.TrackLengths, ElementsAre("01:00:00", "01:00:00", "01:00:00"));
    EXPECT_FALSE(state.Playing);
    // From then on only presence, position and mode are queried.
    EXPECT_EQ(poll(), shortPoll);
    EXPECT_TRUE(form.loaded());
}

TEST_F(DiscPollTest, ANewDiscIsReadyBeforeTheSeekToItsFirstTrack) {
    int observed = 0;
    media.onCommand = [&](std::string_view command) {
        if (command == "status cd length wait") {
            ++observed;
            EXPECT_EQ(form.CD.text(), "Cd Ready");
            EXPECT_FALSE(state.CDLoaded);
            EXPECT_THAT(enabledButtons(), ElementsAre("eject"));
        } else if (command == "status cd length track 1") {
            ++observed;
            EXPECT_EQ(state.TrackLengths.size(), 3U);
            EXPECT_THAT(enabledButtons(), ElementsAre("eject"));
        } else if (command == "seek cd to 1") {
            ++observed;
            EXPECT_EQ(state.TrackLengths.back(), "01:00:00");
            EXPECT_EQ(form.timeWindow.fontSize(), 18);
            EXPECT_EQ(enabledButtons(), allButtons);
            EXPECT_TRUE(state.CDLoaded);
        }
    };
    player.poll.UpdatePlayer();
    EXPECT_EQ(observed, 3);
}

TEST_F(DiscPollTest, APollWhoseSeekFailsContinuesWithPositionAndMode) {
    media.answer("seek cd to 1", {.status = 275});
    const std::vector<std::string> sent = poll();
    const auto failed = std::find(sent.begin(), sent.end(), "seek cd to 1");
    ASSERT_NE(failed, sent.end());
    EXPECT_THAT(std::vector(failed, sent.end()),
                ElementsAre("seek cd to 1", "close all", "close all", //
                            "stop cd", "close cd", "close all",       // the panel's unload
                            "status cd position", "status cd mode"));
    EXPECT_FALSE(form.loaded());
    // CDLoaded was set before the seek, and stays set until the panel is loaded again.
    EXPECT_TRUE(state.CDLoaded);
}

TEST_F(DiscPollTest, EveryQueryHasAReplyBufferOf30Bytes) {
    media.replySizes.clear();
    media.log.clear();
    poll();
    for (std::size_t i = 0; i < media.log.size(); ++i) {
        EXPECT_EQ(media.replySizes[i], media.log[i] == "seek cd to 1" ? 0U : 30U) << media.log[i];
    }
}

TEST_F(DiscPollTest, WithoutADiscTheDisplayDoesNotChange) {
    disc.remove();
    EXPECT_THAT(wordsDuring([&] { EXPECT_THAT(poll(), ElementsAre("status cd media present")); }),
                IsEmpty());
    EXPECT_EQ(form.CD.text(), "OFF");
    EXPECT_EQ(form.timeWindow.text(), "");
    EXPECT_THAT(enabledButtons(), ElementsAre("eject"));
    // A disc that is inserted later is found.
    disc.insert({5000, 6000});
    loop.advance(1s);
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    EXPECT_EQ(state.NumTracks, 2);
}

TEST_F(DiscPollTest, ADiscOfOneTrackCountsAsDataAndIsReadAgainAtEachPoll) {
    disc.insert({60000});
    for (int i = 0; i < 3; ++i) {
        EXPECT_THAT(wordsDuring([&] {
                        EXPECT_THAT(poll(), ElementsAre("status cd media present",
                                                        "status cd number of tracks wait"));
                    }),
                    ElementsAre("Cd Ready", "Not audio"));
        EXPECT_FALSE(state.CDLoaded);
        EXPECT_EQ(form.timeWindow.text(), "");
        EXPECT_EQ(form.tracktime.caption(), "");
        EXPECT_THAT(enabledButtons(), ElementsAre("eject"));
    }
    disc.insert({60000, 60000});
    poll();
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    EXPECT_EQ(enabledButtons(), allButtons);
}

TEST_F(DiscPollTest, ADataDiscIsShownAsNotAudioEvenAfterItsRemoval) {
    // A data disc does not set CDLoaded, so its removal changes nothing.
    disc.insert({60000});
    poll();
    disc.remove();
    EXPECT_THAT(poll(), ElementsAre("status cd media present"));
    EXPECT_EQ(form.CD.text(), "Not audio");
}

TEST_F(DiscPollTest, ADiscOf99TracksIsReadEvenIfTracksAreEmpty) {
    std::vector<std::int32_t> lengths(99, 0);
    lengths[0] = 79 * 60000 + 59 * 1000;
    disc.insert(lengths);
    poll();
    EXPECT_EQ(state.NumTracks, 99);
    ASSERT_EQ(state.TrackLengths.size(), 99U);
    EXPECT_EQ(form.tracktime.caption(), "Track time: 79:59:00");
    media.answer("status cd position", {.reply = "01:79:58:74"});
    poll();
    EXPECT_EQ(form.timeWindow.text(), "[01] 79:58");
    media.answer("status cd position", {.reply = "99:00:00:00"});
    poll();
    EXPECT_EQ(form.timeWindow.text(), "[99] 00:00");
    EXPECT_EQ(form.tracktime.caption(), "Track time: 00:00:00");
}

TEST_F(DiscPollTest, AfterAPollWithoutADiscAnotherDiscReplacesTheTableOfTracks) {
    poll();
    disc.remove();
    poll();
    disc.insert({30000, 31000});
    poll();
    EXPECT_EQ(state.NumTracks, 2);
    EXPECT_THAT(state.TrackLengths, ElementsAre("00:30:00", "00:31:00"));
    EXPECT_EQ(form.tracktime.caption(), "Track time: 00:30:00");
}

TEST_F(DiscPollTest, TheTableOfTracksIsKeptUntilTheDriveReportsNoDisc) {
    poll();
    disc.insert({30000, 31000});
    EXPECT_EQ(poll(), shortPoll);
    EXPECT_EQ(state.NumTracks, 3);
}

// --- position and mode ---------------------------------------------------------------------

TEST_F(DiscPollTest, ShowsTrackMinuteAndSecond) {
    poll();
    media.answer("status cd position", {.reply = "03:01:05:40"});
    poll();
    EXPECT_EQ(form.timeWindow.text(), "[03] 01:05");
    EXPECT_EQ(state.CurTrack, 3);
    EXPECT_EQ(state.CurMin, 1);
    EXPECT_EQ(state.CurSec, 5);
}

TEST_F(DiscPollTest, ShowsTheLengthOfTheCurrentTrack) {
    disc.insert({60000, 125000, 30000});
    poll();
    media.answer("status cd position", {.reply = "02:00:00:00"});
    poll();
    EXPECT_EQ(form.tracktime.caption(), "Track time: 02:05:00");
}

TEST_F(DiscPollTest, ATrackOutsideTheTableOfTracksKeepsTheShownLength) {
    disc.insert({60000, 125000});
    poll();
    for (const char* position : {"03:00:10:00", "00:00:10:00", "-1:00:10:00"}) {
        media.answer("status cd position", {.reply = position});
        poll();
        EXPECT_EQ(form.tracktime.caption(), "Track time: 01:00:00") << position;
    }
    EXPECT_EQ(form.timeWindow.text(), "[-01] 00:10");
}

TEST_F(DiscPollTest, PlayingIsTrueIfTheModeBeginsWithPlaying) {
    poll();
    struct Row {
        const char* mode;
        bool playing;
    };
    for (const Row& row : {Row{"playing", true}, Row{"playing on", true}, Row{"Playing", false},
                           Row{"stopped", false}, Row{"paused", false}, Row{"not ready", false},
                           Row{"play", false}, Row{"", false}}) {
        media.answer("status cd mode", {.reply = row.mode});
        state.Playing = !row.playing;
        poll();
        EXPECT_EQ(state.Playing, row.playing) << row.mode;
    }
}

TEST_F(DiscPollTest, ThePollDoesNotChangeTheStatusTextWhileTheDiscPlays) {
    poll();
    EXPECT_THAT(wordsDuring([&] {
                    form.play.click();
                    loop.advance(5s);
                }),
                IsEmpty());
    EXPECT_TRUE(state.Playing);
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:05");
}

// --- the disc is removed -------------------------------------------------------------------------

TEST_F(DiscPollTest, RemovingAStoppedDiscShowsTheTextNoCdWithinASecondAndKeepsThePosition) {
    loop.advance(1s);
    form.ftrack.click();
    disc.remove();
    loop.advance(1s);
    EXPECT_EQ(form.CD.text(), "No CD");
    EXPECT_EQ(form.timeWindow.text(), "[02] 00:00");
    EXPECT_EQ(form.tracktime.caption(), "");
    EXPECT_FALSE(state.CDLoaded);
    // The click on ftrack has disabled "Eject".
    EXPECT_THAT(enabledButtons(), IsEmpty());
    EXPECT_THAT(poll(), ElementsAre("status cd media present"));
}

TEST_F(DiscPollTest, RemovingAPlayingDiscClearsPlaying) {
    loop.advance(1s);
    form.play.click();
    loop.advance(3s);
    EXPECT_TRUE(state.Playing);
    disc.remove();
    EXPECT_THAT(poll(), ElementsAre("status cd media present"));
    EXPECT_FALSE(state.Playing);
    EXPECT_EQ(form.CD.text(), "No CD");
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:03");
}

TEST_F(DiscPollTest, RemovingTheDiscDoesNotDisableEject) {
    poll();
    disc.remove();
    poll();
    EXPECT_THAT(enabledButtons(), ElementsAre("eject"));
}

// --- failures ------------------------------------------------------------------------------

TEST_F(DiscPollTest, ADiscWhosePresenceCannotBeReadCountsAsRemoved) {
    poll();
    for (const test::MciAnswer& answer :
         {test::MciAnswer{.status = 263}, {.reply = "maybe"}, {.reply = ""}}) {
        state.CDLoaded = true;
        media.answer("status cd media present", answer);
        EXPECT_THAT(poll(), ElementsAre("status cd media present"));
        EXPECT_FALSE(state.CDLoaded);
    }
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_TRUE(form.loaded());
}

TEST_F(DiscPollTest, ATrackCountThatCannotBeReadKeepsThePreviousCount) {
    media.answer("status cd number of tracks wait", {.status = 263});
    EXPECT_THAT(poll(), ElementsAre("status cd media present", "status cd number of tracks wait",
                                    "status cd length wait", "seek cd to 1", "status cd position",
                                    "status cd mode"));
    EXPECT_EQ(state.NumTracks, 0);
    EXPECT_THAT(state.TrackLengths, IsEmpty());
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    EXPECT_EQ(enabledButtons(), allButtons);

    state.CDLoaded = false;
    state.NumTracks = 1;
    poll();
    EXPECT_EQ(form.CD.text(), "Not audio");
}

TEST_F(DiscPollTest, ATrackCountOfZeroOrLessKeepsTheOldTrackLengths) {
    poll();
    state.CDLoaded = false;
    for (const char* count : {"0", "-1"}) {
        media.answer("status cd number of tracks wait", {.reply = count});
        state.CDLoaded = false;
        poll();
        EXPECT_EQ(state.TrackLengths.size(), 3U) << count;
        EXPECT_TRUE(state.CDLoaded) << count;
    }
}

TEST_F(DiscPollTest, ALengthThatCannotBeReadIsEmpty) {
    media.answer("status cd length track 1", {.status = 263});
    poll();
    EXPECT_EQ(form.tracktime.caption(), "Track time: ");
    EXPECT_EQ(state.TrackLengths[1], "01:00:00");
}

TEST_F(DiscPollTest, APositionThatCannotBeReadKeepsThePreviousPosition) {
    poll();
    media.answer("status cd position", {.reply = "02:03:04:05"});
    poll();
    media.answer("status cd position", {.status = 263});
    EXPECT_EQ(poll(), shortPoll);
    EXPECT_EQ(form.timeWindow.text(), "[02] 03:04");
    EXPECT_TRUE(state.CDLoaded);
}

TEST_F(DiscPollTest, AFailedSeekToTheFirstTrackClosesThePanelWithoutAMessage) {
    media.answer("seek cd to 1", {.status = 275});
    loop.advance(1s);
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(process.PlayerOpen);
    EXPECT_TRUE(off());
    EXPECT_THAT(boxes.shown, IsEmpty());
    // A panel that is loaded again is off; when it is switched on, it reads the disc as a new disc.
    media.forgetAnswers();
    form.load();
    EXPECT_EQ(form.CD.text(), "OFF");
    EXPECT_THAT(enabledButtons(), IsEmpty());
    EXPECT_FALSE(state.CDLoaded);
    switchOn();
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    EXPECT_EQ(enabledButtons(), allButtons);
}

} // namespace
} // namespace sonarith
