// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/drive_slot.h"

#include <gmock/gmock.h>

#include "platform/linux/disc/fake_disc.h"
#include "platform/linux/disc/image_fixture.h"
#include "platform/linux/disc/optical_drive.h"
#include "platform/silent_notices.h"

namespace sonarith::disc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A disc whose remark (Disc::remark, a message to the user about the disc) the test sets.
class RemarkingDisc : public FakeDisc {
  public:
    RemarkingDisc() : FakeDisc({{TrackKind::audio, 100}}) {}
    std::string remark() const override { return words; }
    std::string words;
};

/// The state that all FakeDrives of a test share; set and read by the test.
struct FakeDriveState {
    Loaded loaded;
    bool open = false;
};

class FakeDrive : public Drive {
  public:
    explicit FakeDrive(std::shared_ptr<FakeDriveState> state) : state_(std::move(state)) {}
    DriveKind kind() const override { return DriveKind::optical; }
    std::string name() const override { return "the drive"; }
    Loaded load() override { return state_->loaded; }
    bool mediaPresent() override { return !state_->open; }
    void openTray() override { state_->open = true; }
    void closeTray() override { state_->open = false; }

  private:
    std::shared_ptr<FakeDriveState> state_;
};

class DriveSlotTest : public testing::Test {
  protected:
    std::string configured;
    std::vector<std::string> optical;
    std::vector<std::string> made;
    std::shared_ptr<FakeDriveState> state = std::make_shared<FakeDriveState>();
    DriveSlot slot{[this] { return configured; },
                   {[this] { return optical; },
                    [this](const std::string& device) {
                        made.push_back("optical " + device);
                        return std::make_shared<FakeDrive>(state);
                    },
                    [this](const std::string& path) {
                        made.push_back("image " + path);
                        return std::make_shared<FakeDrive>(state);
                    }}};
};

TEST_F(DriveSlotTest, UsesTheFirstOpticalDriveIfNothingIsChosen) {
    optical = {"/dev/sr0", "/dev/sr1"};
    EXPECT_NE(slot.openDrive(), nullptr);
    EXPECT_THAT(made, ElementsAre("optical /dev/sr0"));
    EXPECT_EQ(slot.report().text, "");
}

TEST_F(DriveSlotTest, ReportsThatTheMachineHasNoOpticalDrive) {
    EXPECT_EQ(slot.openDrive(), nullptr);
    EXPECT_THAT(slot.report().text, HasSubstr("no optical drive"));
    EXPECT_EQ(slot.report().kind, DeviceProblem::missing);
    optical = {"/dev/sr0"}; // plugged in
    EXPECT_NE(slot.openDrive(), nullptr);
    EXPECT_EQ(slot.report().text, "");
}

TEST_F(DriveSlotTest, DistinguishesADeviceNodeFromAnImage) {
    for (const char* const choice :
         {"/dev/no-such-drive", "/home/me/disc.cue", "/dev/shm/disc.cue", "disc.toc"}) {
        configured = choice;
        EXPECT_NE(slot.openDrive(), nullptr);
    }
    EXPECT_THAT(made, ElementsAre("optical /dev/no-such-drive", "image /home/me/disc.cue",
                                  "image /dev/shm/disc.cue", "image disc.toc"));
}

TEST_F(DriveSlotTest, ChoosingTheSameImageAgainClosesTheTrayButCreatesNoNewDrive) {
    configured = "/a.cue";
    slot.openDrive()->openTray();
    EXPECT_FALSE(slot.openDrive()->mediaPresent());
    EXPECT_EQ(made.size(), 1u);
    slot.choiceMade();
    EXPECT_TRUE(slot.openDrive()->mediaPresent())
        << "the choice of the same image must insert the image again";
    EXPECT_EQ(made.size(), 1u);
    configured = "/b.cue";
    slot.choiceMade();
    EXPECT_NE(slot.openDrive(), nullptr);
    EXPECT_THAT(made, ElementsAre("image /a.cue", "image /b.cue"));
}

TEST_F(DriveSlotTest, AChoiceDoesNotMoveTheTrayOfAPreviousDriveOrOfAnOpticalDrive) {
    configured = "/a.cue";
    slot.openDrive()->openTray();
    configured = "/b.cue";
    slot.choiceMade();
    EXPECT_TRUE(state->open);
    optical = {"/dev/sr0"};
    for (const char* const choice : {"", "/dev/no-such-drive"}) {
        configured = choice;
        slot.openDrive()->openTray();
        slot.choiceMade();
        EXPECT_TRUE(state->open) << choice;
    }
}

TEST_F(DriveSlotTest, ReportsTheProblemOfTheLastLoad) {
    configured = "/a.cue";
    state->loaded.problem = {DeviceProblem::unreadable, "a.cue, line 3: no such file"};
    EXPECT_EQ(slot.openDrive()->load().problem.text, "a.cue, line 3: no such file");
    EXPECT_EQ(slot.report().text, "a.cue, line 3: no such file");
    state->loaded.problem = {};
    EXPECT_EQ(slot.openDrive()->load().problem.text, "");
    EXPECT_EQ(slot.report().text, "");
}

TEST_F(DriveSlotTest, ReportsTheCurrentRemarkOfTheDisc) {
    configured = "/a.cue";
    const auto disc = std::make_shared<RemarkingDisc>();
    state->loaded.disc = disc;
    const Loaded loaded = slot.openDrive()->load();
    EXPECT_EQ(slot.report().text, "");
    disc->words = "2 sectors could not be read";
    EXPECT_EQ(slot.report().text, "2 sectors could not be read");
}

TEST_F(DriveSlotTest, KeepsTheRemarkOfADiscThatWasDestroyed) {
    configured = "/a.cue";
    const auto disc = std::make_shared<RemarkingDisc>();
    disc->words = "disc.bin is shorter than its table";
    state->loaded.disc = disc;
    // load() wraps `disc` in another Disc, which is destroyed here at once.
    static_cast<void>(slot.openDrive()->load());
    EXPECT_EQ(slot.report().text, "disc.bin is shorter than its table");
}

TEST_F(DriveSlotTest, ClearsTheRemarkOfAPreviousDiscWhenTheDriveIsEmpty) {
    configured = "/a.cue";
    const auto disc = std::make_shared<RemarkingDisc>();
    disc->words = "torn";
    state->loaded.disc = disc;
    Loaded former = slot.openDrive()->load();
    state->loaded = {};
    EXPECT_EQ(slot.openDrive()->load().disc, nullptr);
    EXPECT_EQ(slot.report().text, "")
        << "the remark of the previous disc, which is still in use, must not be reported";
    former.disc.reset();
    EXPECT_EQ(slot.report().text, "");
}

TEST_F(DriveSlotTest, DoesNotReportTheRemarkOfAPreviousDiscForTheNextDisc) {
    configured = "/a.cue";
    const auto torn = std::make_shared<RemarkingDisc>();
    torn->words = "torn";
    state->loaded.disc = torn;
    Loaded former = slot.openDrive()->load();
    state->loaded.disc = std::make_shared<RemarkingDisc>();
    const Loaded present = slot.openDrive()->load();
    former.disc.reset();
    EXPECT_EQ(slot.report().text, "");
}

TEST_F(DriveSlotTest, DoesNotReportTheProblemOfADriveThatIsNoLongerChosen) {
    configured = "/a.cue";
    const std::shared_ptr<Drive> former = slot.openDrive();
    configured = "/b.cue";
    EXPECT_NE(slot.openDrive(), nullptr);
    state->loaded.problem.text = "torn";
    EXPECT_EQ(former->load().problem.text, "torn");
    EXPECT_EQ(slot.report().text, "");
}

/// For tests of slots that create real drives with realDriveMakers().
class RealDriveSlot : public testing::Test {
  protected:
    waiting::WorkerThreads threads;
    PlainWaiting waiting;
    SilentNotices notices;
    DriveMakers makers = realDriveMakers({threads, waiting, notices});
};

// A queue of captures opens the drive again for each track; the reported number of damaged sectors
// must include those of all earlier tracks of the queue.
TEST_F(RealDriveSlot, KeepsTheCountOfDamagedSectorsWhenTheDriveIsOpenedAgain) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", rampSectors(0, 90));
    folder.write("a.cue", "FILE \"a.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
                          "  TRACK 02 AUDIO\n    INDEX 01 00:00:45\n");
    OpticalAccess access;
    access.status = [](const std::string&) {
        return DriveStatus{DriveState::loaded};
    };
    access.open = [&](const std::string&) {
        return openCdio(folder.path("a.cue").string(), DRIVER_BINCUE);
    };
    access.read = [](CdIo_t* cdio, std::int64_t first, std::int64_t count, std::byte* out) {
        const bool damaged = first <= 7 && 7 < first + count;
        return !damaged && OpticalAccess::readAudioSectors(cdio, first, count, out);
    };
    makers.makeOptical = [&](const std::string& device) {
        return std::make_shared<OpticalDrive>(device, access);
    };
    DriveSlot slot([] { return std::string("/dev/no-such-drive"); }, makers);
    std::vector<sound::StereoFrame> frames(10 * framesPerSector);
    EXPECT_EQ(slot.openDrive()->load().disc->read(0, frames), ReadOutcome::ok);
    EXPECT_THAT(slot.report().text, HasSubstr("1 sector of the disc could not be read"));
    EXPECT_EQ(slot.openDrive()->load().disc->read(45, frames), ReadOutcome::ok);
    EXPECT_THAT(slot.report().text, HasSubstr("1 sector of the disc could not be read"));
}

TEST_F(RealDriveSlot, InsertsAnEjectedImageAgainWhenItIsChosenAgain) {
    const ImageFolder folder;
    folder.writeFrames("a.bin", rampSectors(0, 30));
    const std::string image =
        folder.write("a.cue", "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n").string();
    DriveSlot slot([&] { return image; }, makers);
    EXPECT_NE(slot.openDrive()->load().disc, nullptr);
    slot.openDrive()->openTray();
    EXPECT_EQ(slot.openDrive()->load().disc, nullptr);
    slot.choiceMade();
    EXPECT_NE(slot.openDrive()->load().disc, nullptr);
}

TEST_F(RealDriveSlot, CreatesADriveThatReportsAMissingImage) {
    DriveSlot slot([] { return std::string("/no/such/folder/disc.cue"); }, makers);
    const std::shared_ptr<Drive> drive = slot.openDrive();
    ASSERT_NE(drive, nullptr);
    EXPECT_EQ(drive->load().disc, nullptr);
    EXPECT_THAT(slot.report().text, HasSubstr("disc.cue"));
}

} // namespace
} // namespace sonarith::disc
