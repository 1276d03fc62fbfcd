// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/cd_device.h"

#include <gmock/gmock.h>

#include "support/cd_session.h"

namespace sonarith::mci {
namespace {

using fakes::CdSession;
using fakes::enhancedDisc;
using fakes::fine;
using fakes::MciSession;
using fakes::refused;
using fakes::said;
using fakes::threeTracks;
using testing::ElementsAre;

using disc::framesPerSector;

TEST(InspectingADisc, GivesTheRepliesThatTheLogicExpects) {
    MciSession session(threeTracks());
    EXPECT_EQ(session.send("stop cd"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("close cd"), refused(MciError::invalidDeviceName));
    EXPECT_EQ(session.send("open cdaudio alias cd"), fine());
    EXPECT_EQ(session.send("info cd identity"), said(disc::identityOf(threeTracks())));
    EXPECT_EQ(session.send("status cd number of tracks"), said("3"));
    EXPECT_EQ(session.send("set cd time format hms"), fine());
    EXPECT_EQ(session.send("status cd length track 1"), said("00:03:05"));
    EXPECT_EQ(session.send("status cd length track 2"), said("00:01:00"));
    EXPECT_EQ(session.send("set cd time format milliseconds"), fine());
    EXPECT_EQ(session.send("status cd length track 1"), said("185000"));
    EXPECT_EQ(session.send("status cd length track 2"), said("60133"));
    EXPECT_EQ(session.send("status cd length track 3"), said("10000"));
    EXPECT_EQ(session.send("close cd"), fine());
    // No transport is created, since none of these commands plays or seeks.
    EXPECT_EQ(session.machine.transport, nullptr);
}

TEST(TheIdentity, IsAnIntegerAndDiffersForADifferentDisc) {
    CdSession one(threeTracks());
    CdSession same(threeTracks());
    CdSession other(enhancedDisc());
    const std::string identity = one.send("info cd identity").reply;
    EXPECT_EQ(identity, same.send("info cd identity").reply);
    EXPECT_NE(identity, other.send("info cd identity").reply);
    EXPECT_TRUE(parseInteger(identity).ok());
}

TEST(StatusQueriesOfTheCdPlayer, ReturnTimesInTheFormatThatACommandHasSet) {
    MciSession session(threeTracks());
    EXPECT_EQ(session.send("open cdaudio alias cd wait shareable"), fine());
    EXPECT_EQ(session.send("set cd time format tmsf wait"), fine());
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("status cd number of tracks wait"), said("3"));
    EXPECT_EQ(session.send("status cd length wait"), said("04:15:10"));
    EXPECT_EQ(session.send("status cd length track 2"), said("01:00:10"));
    EXPECT_EQ(session.send("seek cd to 1"), fine());
    EXPECT_EQ(session.send("status cd position"), said("01:00:00:00"));
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
    EXPECT_EQ(session.send("play cd from 2"), fine());
    session.machine.transport->advance(61 * 44100 / 2);
    EXPECT_EQ(session.send("status cd position"), said("02:00:30:37"));
    EXPECT_EQ(session.send("status cd mode"), said("playing"));
    EXPECT_EQ(session.send("status cd current track"), said("2"));
    EXPECT_EQ(session.send("stop cd wait"), fine());
    EXPECT_EQ(session.send("seek cd to 2"), fine());
    EXPECT_EQ(session.send("status cd position"), said("02:00:00:00"));
}

TEST(ThePosition, IsRoundedDownToASectorSoThatTheEndIsNotReportedTooEarly) {
    CdSession session(threeTracks());
    session.send("set cd time format milliseconds");
    EXPECT_EQ(session.send("status cd position"), said("0"));
    session.send("play cd from 185000 to 245133");
    EXPECT_EQ(session.send("status cd position"), said("185000"));
    session.machine.transport->advance((60 * 75 + 10) * framesPerSector - 1);
    EXPECT_EQ(session.send("status cd position"), said("245120"));
    EXPECT_EQ(session.send("status cd mode"), said("playing"));
    session.machine.transport->advance(1);
    EXPECT_EQ(session.send("status cd position"), said("245133"));
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
}

TEST(ThePosition, AtTheDiscsEndIsExactlyTheDiscsLength) {
    CdSession session(threeTracks());
    session.send("set cd time format ms");
    session.send("play cd");
    session.machine.transport->advance(1'000'000'000);
    EXPECT_EQ(session.send("status cd position").reply, session.send("status cd length").reply);
    EXPECT_EQ(session.send("status cd current track"), said("3"));
    session.send("set cd time format tmsf");
    EXPECT_EQ(session.send("status cd position"), said("03:00:10:00"));
}

TEST(PlayingFromTheCurrentPosition, ContinuesToTheDiscsEnd) {
    CdSession session(threeTracks());
    EXPECT_EQ(session.send("play cd"), fine());
    EXPECT_THAT(session.machine.transport->calls, ElementsAre("play 0 19135"));
}

TEST(PlayingFromATime, BeginsAtTheSectorOfThatTime) {
    CdSession session(threeTracks());
    session.send("set cd time format milliseconds");
    EXPECT_EQ(session.send("play cd from 185000"), fine());
    EXPECT_EQ(session.send("play cd from 0"), fine());
    EXPECT_EQ(session.send("play cd to 1000 from 500"), fine());
    EXPECT_EQ(session.send("play cd from 255133"), fine()); // the disc's end: nothing to play
    EXPECT_THAT(session.machine.transport->calls,
                ElementsAre("play 13875 19135", "play 0 19135", "play 38 75", "play 19135 19135"));
}

TEST(APlayCommandWithAnInvalidArgument, FailsAndDoesNotChangeTheRunningPlayback) {
    CdSession session(threeTracks());
    session.send("set cd time format milliseconds");
    session.send("play cd from 1000");
    EXPECT_EQ(session.send("play cd from 255140"), refused(MciError::outOfRange));
    EXPECT_EQ(session.send("play cd from 2000 to 1000"), refused(MciError::outOfRange));
    EXPECT_EQ(session.send("play cd from 1000 to 999999999"), refused(MciError::outOfRange));
    EXPECT_EQ(session.send("play cd from 99999999999"), refused(MciError::badInteger));
    EXPECT_EQ(session.send("play cd from -1"), refused(MciError::badInteger));
    EXPECT_EQ(session.send("play cd from"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("play cd backwards"), refused(MciError::unrecognizedKeyword));
    EXPECT_THAT(session.machine.transport->calls, ElementsAre("play 75 19135"));
    session.send("set cd time format tmsf");
    EXPECT_EQ(session.send("play cd from 0"), refused(MciError::outOfRange));
    EXPECT_EQ(session.send("play cd from 4"), refused(MciError::outOfRange));
    EXPECT_EQ(session.playerMode(), disc::PlayerMode::playing);
}

TEST(APausedDisc, ContinuesAtTheSameSampleAfterPlayOrResume) {
    CdSession session(threeTracks());
    session.send("play cd");
    session.machine.transport->advance(framesPerSector + 1);
    EXPECT_EQ(session.send("pause cd"), fine());
    EXPECT_EQ(session.send("status cd mode"), said("paused"));
    EXPECT_EQ(session.send("pause cd"), fine());
    EXPECT_EQ(session.send("play cd"), fine());
    EXPECT_EQ(session.send("status cd mode"), said("playing"));
    EXPECT_EQ(session.send("play cd"), fine()); // the disc is already playing
    EXPECT_EQ(session.send("pause cd"), fine());
    EXPECT_EQ(session.send("resume cd wait"), fine());
    EXPECT_EQ(session.send("resume cd"), fine());
    EXPECT_EQ(session.machine.transport->positionInFrames(), framesPerSector + 1);
    EXPECT_THAT(session.machine.transport->calls,
                ElementsAre("play 0 19135", "pause", "resume", "pause", "resume"));
}

TEST(APausedDisc, IsPlayedToItsEndByAPlayCommandThatNamesNoEnd) {
    CdSession session(threeTracks());
    session.send("set cd time format ms");
    session.send("play cd from 1000 to 2000");
    session.send("pause cd");
    EXPECT_EQ(session.send("play cd"), fine());
    EXPECT_THAT(session.machine.transport->calls,
                ElementsAre("play 75 150", "pause", "play 75 19135"));
}

TEST(ADiscThatIsNotPlaying, StaysStoppedAfterPauseAndStopAndCannotBeResumed) {
    CdSession session(threeTracks());
    EXPECT_EQ(session.send("pause cd"), fine());
    EXPECT_EQ(session.send("stop cd"), fine());
    EXPECT_EQ(session.send("resume cd"), refused(MciError::nonapplicableFunction));
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
}

TEST(AStoppedDisc, StaysAtItsPosition) {
    CdSession session(threeTracks());
    session.send("set cd time format ms");
    session.send("play cd from 1000");
    session.machine.transport->advance(75 * framesPerSector);
    EXPECT_EQ(session.send("stop cd"), fine());
    EXPECT_EQ(session.send("status cd position"), said("2000"));
    session.send("play cd");
    EXPECT_THAT(session.machine.transport->calls,
                ElementsAre("play 75 19135", "stop", "play 150 19135"));
}

TEST(Seeking, MovesToThePositionAndStopsPlaying) {
    CdSession session(threeTracks());
    session.send("set cd time format ms");
    session.send("play cd");
    EXPECT_EQ(session.send("seek cd to 185000"), fine());
    EXPECT_EQ(session.send("status cd position"), said("185000"));
    EXPECT_EQ(session.send("status cd current track"), said("2"));
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
    EXPECT_EQ(session.send("seek cd to END"), fine());
    EXPECT_EQ(session.send("status cd position"), said("255133"));
    EXPECT_EQ(session.send("seek cd to start wait"), fine());
    EXPECT_EQ(session.send("status cd position"), said("0"));
    EXPECT_EQ(session.send("seek cd"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("seek cd to"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("seek cd to middle"), refused(MciError::badInteger));
    EXPECT_EQ(session.send("seek cd to 255140"), refused(MciError::outOfRange));
    EXPECT_EQ(session.send("status cd position"), said("0"));
}

TEST(AStatusCommandWithATrackNumber, ReturnsTheStartTheLengthOrTheTypeOfTheTrack) {
    CdSession session(enhancedDisc());
    session.send("set cd time format milliseconds");
    EXPECT_EQ(session.send("status cd position track 1"), said("0"));
    EXPECT_EQ(session.send("status cd position track 3"), said("20000"));
    EXPECT_EQ(session.send("status cd length track 3"), said("5000"));
    EXPECT_EQ(session.send("status cd type track 2"), said("audio"));
    EXPECT_EQ(session.send("status cd type track 3"), said("other"));
    session.send("set cd time format tmsf");
    EXPECT_EQ(session.send("status cd position track 3"), said("03:00:00:00"));
    for (const char* number : {"0", "4", "100", "2147483647"}) {
        EXPECT_EQ(session.send(std::string("status cd length track ") + number),
                  refused(MciError::outOfRange));
    }
    for (const char* number : {"-1", "x", "1.5", "2147483648", "\"\""}) {
        EXPECT_EQ(session.send(std::string("status cd length track ") + number),
                  refused(MciError::badInteger));
    }
    EXPECT_EQ(session.send("status cd length track"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("status cd mode track 1"), refused(MciError::flagsNotCompatible));
    EXPECT_EQ(session.send("status cd type"), refused(MciError::missingParameter));
}

TEST(ADataTrack, IsListedButPlayingItFailsWithAMessage) {
    CdSession session(enhancedDisc());
    session.send("set cd time format tmsf");
    EXPECT_EQ(session.send("status cd number of tracks"), said("3"));
    const fakes::Answer answer = session.send("play cd from 3");
    EXPECT_EQ(answer, refused(MciError::dataTrack));
    EXPECT_THAT(session.interpreter.errorString(static_cast<int>(answer.error)),
                testing::HasSubstr("data"));
    EXPECT_EQ(session.send("seek cd to 3"), fine());
    EXPECT_EQ(session.send("play cd"), refused(MciError::dataTrack));
}

TEST(ADataTrack, EndsThePlayingWhereTheDataTrackBegins) {
    CdSession session(enhancedDisc());
    session.send("set cd time format ms");
    session.send("play cd from 10000");
    // The transport, not the device, ends the playing at the data track.
    EXPECT_THAT(session.machine.transport->calls, ElementsAre("play 750 1875"));
    session.machine.transport->advance(751 * framesPerSector);
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
    EXPECT_EQ(session.send("status cd position"), said("20000"));
}

TEST(TheTimeFormat, IsMsfUntilACommandSetsAnotherFormat) {
    CdSession session(threeTracks());
    EXPECT_EQ(session.send("status cd time format"), said("msf"));
    EXPECT_EQ(session.send("status cd length"), said("04:15:10"));
    for (const char* name : {"milliseconds", "hms", "msf", "tmsf"}) {
        EXPECT_EQ(session.send(std::string("set cd time format ") + name), fine());
        EXPECT_EQ(session.send("status cd time format"), said(name));
    }
    EXPECT_EQ(session.send("set cd time format MS"), fine());
    EXPECT_EQ(session.send("status cd time format"), said("milliseconds"));
    EXPECT_EQ(session.send("set cd time format bytes"), refused(MciError::badTimeFormat));
    EXPECT_EQ(session.send("set cd time format"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("set cd time"), refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("set cd"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("set cd time format frames door open"),
              refused(MciError::badTimeFormat));
    EXPECT_FALSE(session.machine.drive->trayOpen); // nothing of the failed command was done
    EXPECT_EQ(session.send("status cd time format"), said("milliseconds"));
}

TEST(WrongCommandsToADisc, ReturnTheErrorOfTheirMistake) {
    CdSession session(threeTracks());
    EXPECT_EQ(session.send("record cd"), refused(MciError::unsupportedFunction));
    EXPECT_EQ(session.send("save cd c:\\a.wav"), refused(MciError::unsupportedFunction));
    EXPECT_EQ(session.send("put cd window client at 0 0 0 0"),
              refused(MciError::unsupportedFunction));
    EXPECT_EQ(session.send("status cd"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("status cd wait"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("status cd weather"), refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("status cd length position"), refused(MciError::flagsNotCompatible));
    EXPECT_EQ(session.send("status cd length length"), refused(MciError::duplicateFlags));
    EXPECT_EQ(session.send("info cd"), refused(MciError::missingParameter));
    EXPECT_EQ(session.send("info cd colour"), refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("stop cd now"), refused(MciError::unrecognizedKeyword));
    EXPECT_EQ(session.send("dance cd"), refused(MciError::unrecognizedCommand));
}

TEST(Playing, FailsIfTheMachineCannotPlayTheDisc) {
    CdSession session(threeTracks());
    session.send("seek cd to 1");
    session.machine.transport->refusesToPlay = true;
    EXPECT_EQ(session.send("play cd from 2"), refused(MciError::deviceNotReady));
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
    session.machine.transport->refusesToPlay = false;
    EXPECT_EQ(session.send("play cd from 2"), fine());
}

} // namespace
} // namespace sonarith::mci
