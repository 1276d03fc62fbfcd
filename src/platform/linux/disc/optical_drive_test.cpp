// SPDX-License-Identifier: GPL-3.0-or-later
// Tests OpticalDrive with devices that are missing or are not drives, and with a drive whose
// replies the test controls. libcdio reads the disc of that drive from an image.
#include "platform/linux/disc/optical_drive.h"

#include <cerrno>
#include <deque>
#include <set>

#include <gmock/gmock.h>

#include "platform/linux/disc/image_fixture.h"

namespace sonarith::disc {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

class UnusableDevice : public testing::TestWithParam<const char*> {};

// libcdio opens /dev/null without an error, so OpticalDrive itself must detect that /dev/null is
// not a drive.
INSTANTIATE_TEST_SUITE_P(OpticalDrive, UnusableDevice,
                         testing::Values("/dev/no-such-drive", "/dev/null", "/tmp", ""));

TEST_P(UnusableDevice, IsReportedAsMissingOrAsNoOpticalDrive) {
    OpticalDrive drive(GetParam());
    const Loaded loaded = drive.load();
    EXPECT_EQ(loaded.disc, nullptr);
    EXPECT_THAT(loaded.problem.text, HasSubstr(GetParam()));
    EXPECT_THAT(loaded.problem.text,
                testing::AnyOf(HasSubstr("does not exist"), HasSubstr("not an optical drive")));
}

TEST_P(UnusableDevice, HasNoDiscAndIgnoresTrayCommands) {
    OpticalDrive drive(GetParam());
    EXPECT_FALSE(drive.mediaPresent());
    drive.openTray();
    drive.closeTray();
    EXPECT_FALSE(drive.mediaPresent());
}

constexpr std::int64_t discSectors = 100;

class OpticalDriveTest : public testing::Test {
  protected:
    OpticalDriveTest() {
        // libcdio reads the sound from the .bin file that is named like the .cue file, whatever
        // the FILE line states, so each .cue file has its own .bin file.
        for (const std::string name : {"disc", "other"}) {
            folder_.writeFrames(name + ".bin", rampSectors(0, discSectors));
            folder_.write(name + ".cue", "FILE \"" + name + ".bin\" BINARY\n" +
                                             "  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n" +
                                             "  TRACK 02 AUDIO\n    INDEX 01 00:00:" +
                                             (name == "disc" ? "40" : "41") + "\n");
        }
    }

    OpticalAccess access() {
        OpticalAccess made;
        made.status = [this](const std::string&) {
            const DriveStatus now = statuses_.front();
            if (statuses_.size() > 1) {
                statuses_.pop_front();
            }
            return now;
        };
        made.open = [this](const std::string&) {
            return openCdio(folder_.path(inDrive_).string(), DRIVER_BINCUE);
        };
        made.mediaChanged = [this](CdIo_t*) {
            ++changeQueries_;
            return changeReply_;
        };
        made.read = [this](CdIo_t* cdio, std::int64_t first, std::int64_t count, std::byte* out) {
            for (std::int64_t sector = first; sector < first + count; ++sector) {
                if (bad_.contains(sector)) {
                    return false;
                }
            }
            return OpticalAccess::readAudioSectors(cdio, first, count, out);
        };
        made.pause = [this](std::chrono::milliseconds time) {
            paused_ += time;
        };
        return made;
    }

    /// The outcome of reading three sectors from `first` on.
    static ReadOutcome readAt(Disc& disc, std::int64_t first) {
        std::vector<sound::StereoFrame> frames(3 * framesPerSector);
        return disc.read(first, frames);
    }

    ImageFolder folder_;
    /// The successive replies of the drive; the last one is repeated.
    std::deque<DriveStatus> statuses_ = {{DriveState::loaded}};
    std::string inDrive_ = "disc.cue";
    int changeReply_ = 0; ///< of OpticalAccess::mediaChanged
    int changeQueries_ = 0;
    std::set<std::int64_t> bad_;
    std::chrono::milliseconds paused_{0};
    OpticalDrive drive_{"/dev/sr0", access()};
};

TEST_F(OpticalDriveTest, ReadsTheTableAndTheSoundOfTheDisc) {
    const Loaded loaded = drive_.load();
    ASSERT_NE(loaded.disc, nullptr) << loaded.problem.text;
    ASSERT_EQ(loaded.disc->table().tracks.size(), 2u);
    EXPECT_EQ(loaded.disc->table().start(2), 40);
    expectFrames(wholeLine(*loaded.disc), rampSectors(0, discSectors));
    EXPECT_EQ(loaded.disc->remark(), "");
    EXPECT_EQ(paused_, 0ms);
}

TEST_F(OpticalDriveTest, WaitsForADiscThatSpinsUp) {
    statuses_ = {{DriveState::notReady},
                 {DriveState::notReady},
                 {DriveState::notReady},
                 {DriveState::loaded}};
    EXPECT_NE(drive_.load().disc, nullptr);
    EXPECT_EQ(paused_, 750ms);
}

TEST_F(OpticalDriveTest, StopsWaitingWhenTheDriveReportsThatItIsEmpty) {
    statuses_ = {{DriveState::notReady}, {DriveState::empty}};
    const Loaded loaded = drive_.load();
    EXPECT_EQ(loaded.disc, nullptr);
    EXPECT_EQ(loaded.problem.text, "");
    EXPECT_EQ(paused_, 250ms);
}

TEST_F(OpticalDriveTest, ReportsADriveThatDoesNotBecomeReady) {
    statuses_ = {{DriveState::notReady}};
    const Loaded loaded = drive_.load();
    EXPECT_EQ(loaded.disc, nullptr);
    EXPECT_THAT(loaded.problem.text, StartsWith("The drive /dev/sr0 is not ready"));
    EXPECT_EQ(paused_, 8s);
}

TEST_F(OpticalDriveTest, ReportsAnUnreadableDiscOnlyIfTheDriveReportsADisc) {
    inDrive_ = "nothing.cue";
    EXPECT_THAT(drive_.load().problem.text, StartsWith("The drive /dev/sr0 cannot be used"));
    OpticalAccess noTable = access();
    noTable.open = [](const std::string&) {
        return openCdio("/dev/null");
    };
    OpticalDrive drive("/dev/sr0", noTable);
    EXPECT_THAT(drive.load().problem.text, HasSubstr("cannot read the table of contents"));
    statuses_ = {{DriveState::unknown}};
    EXPECT_EQ(drive.load().problem.text, "");
    EXPECT_FALSE(drive.mediaPresent());
}

TEST_F(OpticalDriveTest, ReportsTheKindOfEachProblem) {
    const struct {
        DriveStatus status;
        DeviceProblem kind;
    } rows[] = {
        {{DriveState::loaded}, DeviceProblem::none},
        {{DriveState::empty}, DeviceProblem::noMedium},
        {{DriveState::trayOpen}, DeviceProblem::trayOpen},
        {{DriveState::notReady}, DeviceProblem::busy},
        {{DriveState::unreachable, EACCES}, DeviceProblem::noPermission},
        {{DriveState::unreachable, ENXIO}, DeviceProblem::missing},
    };
    for (const auto& row : rows) {
        statuses_ = {row.status};
        EXPECT_EQ(drive_.load().problem.kind, row.kind);
        EXPECT_EQ(drive_.mediaPresent(), row.kind == DeviceProblem::none);
    }
    inDrive_ = "nothing.cue";
    statuses_ = {{DriveState::loaded}};
    EXPECT_EQ(drive_.load().problem.kind, DeviceProblem::unreadable);
}

TEST_F(OpticalDriveTest, ADiscIsGoneIfAReadFailsWhileTheTrayIsOpen) {
    const auto disc = drive_.load().disc;
    ASSERT_NE(disc, nullptr);
    statuses_ = {{DriveState::trayOpen}};
    bad_ = {3};
    std::vector<sound::StereoFrame> frames(10 * framesPerSector);
    EXPECT_EQ(disc->read(0, frames), ReadOutcome::gone);
}

TEST_F(OpticalDriveTest, ReadsTheTableIfTheDriveCannotReportWhetherADiscIsPresent) {
    statuses_ = {{DriveState::unknown}};
    EXPECT_TRUE(drive_.mediaPresent());
    EXPECT_NE(drive_.load().disc, nullptr);
}

TEST_F(OpticalDriveTest, ADriveThatIsNotReadyHasADiscOnlyWhileTheLoadedDiscObjectExists) {
    statuses_ = {{DriveState::notReady}};
    EXPECT_FALSE(drive_.mediaPresent());
    statuses_ = {{DriveState::loaded}};
    Loaded loaded = drive_.load();
    statuses_ = {{DriveState::notReady}};
    EXPECT_TRUE(drive_.mediaPresent());
    loaded.disc.reset();
    EXPECT_FALSE(drive_.mediaPresent());
}

class DamagedDisc : public OpticalDriveTest {
  protected:
    DamagedDisc() {
        loaded_ = drive_.load();
        bad_ = {21};
        changeQueries_ = 0;
    }
    Loaded loaded_;
};

TEST_F(DamagedDisc, IsStillPresentIfTheDriveCannotReportAChange) {
    changeReply_ = -1;
    inDrive_ = "other.cue"; // must not be read
    EXPECT_EQ(readAt(*loaded_.disc, 20), ReadOutcome::ok);
    EXPECT_GT(changeQueries_, 0);
    EXPECT_THAT(loaded_.disc->remark(), StartsWith("1 sector of the disc"));
}

TEST_F(DamagedDisc, IsStillPresentInADriveThatAlwaysReportsAChange) {
    changeReply_ = 1;
    EXPECT_EQ(readAt(*loaded_.disc, 20), ReadOutcome::ok);
    EXPECT_GT(changeQueries_, 0);
}

TEST_F(DamagedDisc, IsStillPresentWhileTheDriveSpinsUpAgain) {
    statuses_ = {{DriveState::notReady}};
    EXPECT_EQ(readAt(*loaded_.disc, 20), ReadOutcome::ok);
}

TEST_F(DamagedDisc, IsGoneWhenAnotherTableIsFoundAfterAChange) {
    changeReply_ = 1;
    inDrive_ = "other.cue";
    EXPECT_EQ(readAt(*loaded_.disc, 20), ReadOutcome::gone);
}

TEST_F(DamagedDisc, IsGoneWhenTheDriveIsEmptyOrUnreachable) {
    for (const DriveState state : {DriveState::empty, DriveState::unreachable}) {
        statuses_ = {{DriveState::loaded}};
        const Loaded loaded = drive_.load();
        statuses_ = {{state, ENODEV}};
        EXPECT_EQ(readAt(*loaded.disc, 20), ReadOutcome::gone);
        EXPECT_FALSE(drive_.mediaPresent());
    }
}

TEST_F(DamagedDisc, IsNotCheckedForRemovalWhileReadsSucceed) {
    changeReply_ = 1;
    inDrive_ = "other.cue";
    EXPECT_EQ(readAt(*loaded_.disc, 30), ReadOutcome::ok);
    EXPECT_EQ(changeQueries_, 0);
}

TEST_F(DamagedDisc, AddsUpItsDamageOverSeveralLoads) {
    EXPECT_EQ(readAt(*loaded_.disc, 20), ReadOutcome::ok);
    loaded_ = drive_.load();
    EXPECT_THAT(loaded_.disc->remark(), StartsWith("1 sector of the disc"));
    bad_ = {21, 22, 50};
    EXPECT_EQ(readAt(*loaded_.disc, 20), ReadOutcome::ok);
    loaded_ = drive_.load();
    EXPECT_EQ(readAt(*loaded_.disc, 50), ReadOutcome::ok);
    EXPECT_THAT(loaded_.disc->remark(), StartsWith("3 sectors of the disc"));
}

TEST_F(DamagedDisc, LosesItsDamageRecordWhenAnotherDiscIsLoadedOrTheDriveIsEmpty) {
    EXPECT_EQ(readAt(*loaded_.disc, 20), ReadOutcome::ok);
    inDrive_ = "other.cue";
    EXPECT_EQ(drive_.load().disc->remark(), "");
    inDrive_ = "disc.cue";
    loaded_ = drive_.load();
    EXPECT_EQ(readAt(*loaded_.disc, 20), ReadOutcome::ok);
    EXPECT_THAT(drive_.load().disc->remark(), StartsWith("1 sector of the disc"));
    statuses_ = {{DriveState::empty}};
    EXPECT_EQ(drive_.load().disc, nullptr);
    statuses_ = {{DriveState::loaded}};
    EXPECT_EQ(drive_.load().disc->remark(), "");
}

} // namespace
} // namespace sonarith::disc
