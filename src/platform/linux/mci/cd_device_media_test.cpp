// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the disc device while discs are inserted, removed or unreadable. The other tests of the
// device are in cd_device_test.cpp.
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

using disc::framesPerSector;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(AnEmptyDrive, AllowsTheOpenCommandAndIsNotReady) {
    CdSession session;
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.send("status cd ready"), said("false"));
    EXPECT_EQ(session.send("status cd mode"), said("not ready"));
    for (const char* command :
         {"info cd identity", "status cd number of tracks", "status cd length",
          "status cd length track 1", "status cd position", "status cd current track", "play cd",
          "play cd from 1", "seek cd to 1", "seek cd to start"}) {
        EXPECT_EQ(session.send(command), refused(MciError::deviceNotReady)) << command;
    }
    EXPECT_EQ(session.send("stop cd"), fine());
    EXPECT_EQ(session.send("pause cd"), fine());
    EXPECT_EQ(session.send("set cd time format tmsf wait"), fine());
    EXPECT_EQ(session.send("status cd time format"), said("tmsf"));
    EXPECT_EQ(session.send("close cd"), fine());
}

TEST(ADiscWithoutTracks, CountsAsMissing) {
    MciSession session;
    session.machine.drive->disc = std::make_shared<fakes::FakeDisc>(disc::Table{});
    session.send("open cdaudio alias cd");
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.send("status cd number of tracks"), refused(MciError::deviceNotReady));
}

TEST(ADiscInsertedAfterTheOpenCommand, IsFoundByTheDevice) {
    CdSession session;
    session.machine.drive->disc = std::make_shared<fakes::FakeDisc>(threeTracks());
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("status cd number of tracks wait"), said("3"));
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
}

TEST(ARemovedDisc, IsReportedMissingAndTheNextDiscIsRead) {
    CdSession session(threeTracks());
    session.send("play cd");
    const auto taken = std::exchange(session.machine.drive->disc, nullptr);
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.machine.transport, nullptr);
    EXPECT_EQ(session.send("status cd position"), refused(MciError::deviceNotReady));
    session.machine.drive->disc = std::make_shared<fakes::FakeDisc>(enhancedDisc());
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("info cd identity"), said(disc::identityOf(enhancedDisc())));
    EXPECT_EQ(session.send("status cd position"), said("00:00:00"));
}

TEST(ADiscThatVanishesWhilePlaying, KeepsItsPositionWhileTheMediumIsNotQueried) {
    CdSession session(threeTracks());
    session.send("play cd");
    session.machine.transport->advance(75 * framesPerSector);
    session.machine.drive->disc = nullptr;
    session.machine.transport->isGone = true;
    EXPECT_EQ(session.send("status cd position"), said("00:01:00"));
    EXPECT_EQ(session.send("status cd mode"), said("playing"));
    EXPECT_EQ(session.send("stop cd"), fine());
    EXPECT_EQ(session.send("status cd position"), said("00:01:00"));
}

TEST(ADiscChangedBetweenTwoQueries, IsDetectedWhenTheOldDiscCanNoLongerBeRead) {
    CdSession session(threeTracks());
    session.send("play cd");
    session.machine.drive->disc = std::make_shared<fakes::FakeDisc>(enhancedDisc());
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("status cd length"), said("04:15:10"));
    session.machine.transport->isGone = true;
    // The medium is reported missing once, so that the player drops the lengths of the old disc.
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.machine.transport, nullptr);
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("status cd length"), said("00:25:00"));
}

TEST(ADiscChangedThroughTheTray, IsReportedMissingOnceEvenIfTheTrayIsClosedBeforeTheQuery) {
    CdSession session(threeTracks());
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("set cd door open"), fine());
    session.machine.drive->disc = std::make_shared<fakes::FakeDisc>(enhancedDisc());
    EXPECT_EQ(session.send("set cd door closed"), fine());
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("status cd length"), said("00:25:00"));
}

TEST(ADiscChangedThroughTheTray, IsReportedMissingOnceEvenIfAnotherCommandReadTheNextDisc) {
    CdSession session(threeTracks());
    EXPECT_EQ(session.send("set cd door open"), fine());
    session.machine.drive->disc = std::make_shared<fakes::FakeDisc>(enhancedDisc());
    EXPECT_EQ(session.send("set cd door closed"), fine());
    EXPECT_EQ(session.send("status cd length"), said("00:25:00"));
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.send("status cd media present"), said("true"));
}

TEST(ADiscInANewlyChosenDrive, IsReportedMissingOnlyOnce) {
    CdSession session(threeTracks());
    session.machine.drive =
        std::make_shared<fakes::FakeDrive>(std::make_shared<fakes::FakeDisc>(enhancedDisc()));
    // The device switches to the chosen drive with this command, before the player's query.
    EXPECT_EQ(session.send("set cd door closed"), fine());
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.send("status cd media present"), said("true"));
}

TEST(AnOpenDevice, TreatsTheChoiceOfAnotherDriveLikeAChangedDisc) {
    CdSession session(threeTracks());
    session.send("play cd");
    session.machine.drive =
        std::make_shared<fakes::FakeDrive>(std::make_shared<fakes::FakeDisc>(enhancedDisc()));
    // Until the medium is queried, the table and the sound are those of the previous disc.
    EXPECT_EQ(session.send("status cd length"), said("04:15:10"));
    EXPECT_EQ(session.send("status cd mode"), said("playing"));
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.machine.transport, nullptr);
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("status cd length"), said("00:25:00"));
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
}

TEST(AnOpenDevice, HasNoMediumWhenTheMachineLosesItsDrive) {
    CdSession session(threeTracks());
    session.send("play cd");
    const auto unplugged = std::exchange(session.machine.drive, nullptr);
    for (int query = 0; query < 2; ++query) {
        EXPECT_EQ(session.send("status cd media present"), said("false"));
    }
    EXPECT_EQ(session.send("status cd mode"), said("not ready"));
    EXPECT_EQ(session.send("play cd"), refused(MciError::deviceNotReady));
    EXPECT_EQ(session.send("set cd door open time format ms"), refused(MciError::deviceNotReady));
    EXPECT_EQ(session.send("status cd time format"), said("msf"));
    session.machine.drive = unplugged;
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.send("status cd media present"), said("true"));
}

TEST(AnOpenDevice, MovesTheTrayOfTheChosenDrive) {
    CdSession session(threeTracks());
    const auto former = session.machine.drive;
    session.machine.drive = std::make_shared<fakes::FakeDrive>();
    EXPECT_EQ(session.send("set cd door open"), fine());
    EXPECT_FALSE(former->trayOpen);
    EXPECT_TRUE(session.machine.drive->trayOpen);
}

/// A drive whose background read of the table ends when the test sets `ready`.
class SlowDrive : public fakes::FakeDrive {
  public:
    using FakeDrive::FakeDrive;
    std::optional<disc::Loaded> loadSoon() override {
        ++queries;
        return ready ? std::optional(load()) : std::nullopt;
    }
    bool ready = false;
    int queries = 0;
};

TEST(ThePlayersMediumQuery, ReturnsFalseWhileTheTableIsBeingRead) {
    CdSession session;
    const auto drive =
        std::make_shared<SlowDrive>(std::make_shared<fakes::FakeDisc>(threeTracks()));
    session.machine.drive = drive;
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    const int loads = drive->loads;
    for (int query = 0; query < 10; ++query) {
        EXPECT_EQ(session.send("status cd media present"), said("false"));
    }
    EXPECT_EQ(drive->loads, loads) << "a query must not call load(), which may block";
    EXPECT_EQ(drive->queries, 10);
    drive->ready = true;
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("status cd number of tracks wait"), said("3"));
}

TEST(APlayingDiscThatDoesNotRespond, IsReportedOnceAndSettledWhenItRespondsAgain) {
    CdSession session(threeTracks());
    session.send("play cd");
    session.machine.transport->reading = CdMedium::longestRead - std::chrono::milliseconds(1);
    session.send("status cd position");
    EXPECT_THAT(session.machine.notices.texts(), IsEmpty());
    session.machine.transport->reading = CdMedium::longestRead;
    session.send("status cd position");
    session.send("status cd mode");
    EXPECT_THAT(
        session.machine.notices.texts(),
        ElementsAre("Playing is interrupted: the drive /dev/fake has not responded for 15 s."));
    session.machine.transport->reading = {};
    session.send("status cd position");
    EXPECT_EQ(session.machine.notices.texts().back(),
              "settled [the drive /dev/fake]: Responding again: the drive /dev/fake.");
}

TEST(APlayingDiscThatDoesNotRespond, IsNotReportedAsRespondingWhenItIsOnlyPaused) {
    CdSession session(threeTracks());
    session.send("play cd");
    session.machine.transport->reading = CdMedium::longestRead;
    session.send("status cd position");
    session.send("pause cd");
    session.send("status cd position");
    EXPECT_EQ(session.machine.notices.texts().size(), 1U);
    session.machine.transport->reading = {};
    session.send("status cd position");
    EXPECT_EQ(session.machine.notices.texts().back(),
              "settled [the drive /dev/fake]: Responding again: the drive /dev/fake.");
}

TEST(APlayingDiscThatDoesNotRespond, HasItsReportSettledByCloseAndIsNotReportedAfterStop) {
    CdSession session(threeTracks());
    session.send("play cd");
    session.machine.transport->reading = CdMedium::longestRead;
    session.send("stop cd");
    session.send("status cd position");
    EXPECT_THAT(session.machine.notices.texts(), IsEmpty());
    session.send("play cd");
    session.send("status cd position");
    session.send("close cd");
    EXPECT_THAT(
        session.machine.notices.texts(),
        ElementsAre("Playing is interrupted: the drive /dev/fake has not responded for 15 s.",
                    "settled [the drive /dev/fake]"));
}

TEST(AnImageThatVanishes, IsReportedToTheUserOnce) {
    CdSession session(threeTracks());
    session.machine.drive->driveKind = disc::DriveKind::image;
    session.send("play cd");
    session.machine.transport->isGone = true;
    session.send("status cd position");
    session.send("status cd position");
    session.machine.drive->disc = nullptr;
    session.send("status cd media present");
    session.send("status cd media present");
    EXPECT_THAT(session.machine.notices.texts(),
                ElementsAre("Playing has ended: the drive /dev/fake was removed or has changed."));
}

TEST(AnImageThatVanishes, IsReportedByTheMediumQueryEvenIfNoReadHasFailed) {
    CdSession session(threeTracks());
    session.machine.drive->driveKind = disc::DriveKind::image;
    session.send("play cd");
    session.machine.drive->disc = nullptr;
    session.send("status cd media present");
    EXPECT_EQ(session.machine.notices.texts().size(), 1u);
}

TEST(AnImageThatVanishes, IsNotReportedWhileStoppedOrAfterAnEjectOrAfterTheChoiceOfAnotherDrive) {
    CdSession session(threeTracks());
    session.machine.drive->driveKind = disc::DriveKind::image;
    session.send("play cd");
    session.send("set cd door open");
    session.send("status cd media present");
    session.send("set cd door closed");
    session.send("status cd media present");
    session.send("play cd");
    session.machine.drive = std::make_shared<fakes::FakeDrive>();
    session.send("status cd media present");
    session.machine.drive->driveKind = disc::DriveKind::image;
    session.machine.drive->disc = std::make_shared<fakes::FakeDisc>(threeTracks());
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    session.machine.drive->disc = nullptr;
    session.send("status cd media present");
    EXPECT_THAT(session.machine.notices.texts(), IsEmpty());
}

TEST(ADiscRemovedFromAnOpticalDrive, IsNotReportedToTheUser) {
    CdSession session(threeTracks());
    session.send("play cd");
    session.machine.transport->isGone = true;
    session.send("status cd position");
    session.machine.drive->disc = nullptr;
    session.send("status cd media present");
    EXPECT_THAT(session.machine.notices.texts(), IsEmpty());
}

TEST(EachOpenCommand, ReadsTheDriveAgain) {
    CdSession session(threeTracks());
    EXPECT_EQ(session.machine.drive->loads, 1);
    session.send("status cd number of tracks");
    session.send("close cd");
    session.send("open cdaudio alias cd");
    EXPECT_EQ(session.machine.drive->loads, 2);
}

TEST(AnUnreadableDisc, IsReadAtMostThreeTimesUntilItIsRemoved) {
    MciSession session(threeTracks());
    session.machine.drive->unreadable = true;
    session.send("open cdaudio alias cd");
    for (int query = 0; query < 100; ++query) {
        EXPECT_EQ(session.send("status cd media present"), said("false"));
    }
    EXPECT_EQ(session.machine.drive->loads, 3);
    const auto taken = std::exchange(session.machine.drive->disc, nullptr);
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    session.machine.drive->disc = taken;
    session.machine.drive->unreadable = false;
    EXPECT_EQ(session.send("status cd media present"), said("true"));
}

TEST(AnUnreadableDisc, IsReadAgainAfterAStatusReadyCommandFoundTheDriveEmpty) {
    MciSession session(threeTracks());
    session.machine.drive->unreadable = true;
    session.send("open cdaudio alias cd");
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(session.send("status cd ready"), said("false"));
    }
    session.machine.drive->disc = nullptr;
    EXPECT_EQ(session.send("status cd ready"), said("false"));
    session.machine.drive->unreadable = false;
    session.machine.drive->disc = std::make_shared<fakes::FakeDisc>(threeTracks());
    EXPECT_EQ(session.send("status cd ready"), said("true"));
}

TEST(TheTray, IsOpenedAndClosedByTheDoorCommands) {
    CdSession session(threeTracks());
    session.send("play cd");
    EXPECT_EQ(session.send("set cd door open"), fine());
    EXPECT_TRUE(session.machine.drive->trayOpen);
    EXPECT_EQ(session.machine.transport, nullptr);
    EXPECT_EQ(session.send("status cd mode"), said("open"));
    EXPECT_EQ(session.send("status cd media present"), said("false"));
    EXPECT_EQ(session.send("play cd"), refused(MciError::deviceNotReady));
    EXPECT_EQ(session.send("set cd door CLOSED wait"), fine());
    EXPECT_EQ(session.send("status cd media present"), said("true"));
    EXPECT_EQ(session.send("status cd mode"), said("stopped"));
    EXPECT_EQ(session.send("set cd door ajar"), refused(MciError::badConstant));
    EXPECT_EQ(session.send("set cd door"), refused(MciError::missingParameter));
}

} // namespace
} // namespace sonarith::mci
