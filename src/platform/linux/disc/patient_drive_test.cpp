// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/patient_drive.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

#include <gmock/gmock.h>

#include "platform/linux/disc/fake_disc.h"
#include "support/fake_notices.h"
#include "support/gate.h"
#include "support/waiting.h"

namespace sonarith::disc {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// The behaviour of the fake drive: a test can make every call hang. Used by the test's thread and
// the drive's thread.
class Device {
  public:
    void hang() {
        const std::lock_guard lock(mutex_);
        hangs_ = true;
    }
    void recover() {
        const std::lock_guard lock(mutex_);
        hangs_ = false;
        changed_.notify_all();
    }
    void execute(const std::string& call) {
        std::unique_lock lock(mutex_);
        begun_ = true;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !hangs_; });
        calls_.push_back(call);
    }
    void waitUntilCalled() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return begun_; });
    }
    std::vector<std::string> calls() const {
        const std::lock_guard lock(mutex_);
        return calls_;
    }
    std::shared_ptr<Disc> disc = std::make_shared<FakeDisc>(std::vector<Track>(1));
    std::atomic<bool> present = true;

  private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool hangs_ = false;
    bool begun_ = false;
    std::vector<std::string> calls_;
};

class HangingDrive : public Drive {
  public:
    explicit HangingDrive(std::shared_ptr<Device> device) : device_(std::move(device)) {}
    DriveKind kind() const override { return DriveKind::optical; }
    std::string name() const override { return "the drive /dev/sr7"; }
    Loaded load() override {
        device_->execute("load");
        return device_->disc ? Loaded{device_->disc, {}}
                             : noDisc(DeviceProblem::unreadable, "torn");
    }
    bool mediaPresent() override {
        device_->execute("present");
        return device_->present;
    }
    void openTray() override { device_->execute("open"); }
    void closeTray() override { device_->execute("close"); }

  private:
    std::shared_ptr<Device> device_;
};

class PatientDriveTest : public testing::Test {
  protected:
    /// `patience` is the time limit of loads and tray commands: 1 h if the test needs the results,
    /// 1 ms if these calls are to time out.
    std::unique_ptr<PatientDrive> driveWith(std::chrono::milliseconds patience) {
        return std::make_unique<PatientDrive>(
            std::make_shared<HangingDrive>(device), PatientDrive::Patience{patience, patience},
            "It does not respond.", waiting::Services{threads, waiting, notices});
    }
    /// Whether the disc of an abandoned load has been dropped.
    bool discIsDropped() {
        return fakes::eventually([this] { return device->disc.use_count() == 1; });
    }
    waiting::WorkerThreads threads;
    PlainWaiting waiting;
    test::FakeNotices notices;
    std::shared_ptr<Device> device = std::make_shared<Device>();
};

/// Records the time limit of each wait, and waits for 1 ms only.
class NotingWaiting final : public Waiting {
  public:
    Outcome wait(const Completion& completion, Duration bound) override {
        bounds.push_back(bound);
        return completion.restFor(1ms) ? Outcome::done : Outcome::late;
    }
    std::vector<Duration> bounds;
};

TEST_F(PatientDriveTest, WaitsOnlyBrieflyForCallsMadeEverySecond) {
    NotingWaiting noting;
    PatientDrive drive(std::make_shared<HangingDrive>(device), {20s, 2s}, "It does not respond.",
                       waiting::Services{threads, noting, notices});
    device->hang();
    EXPECT_FALSE(drive.mediaPresent());
    EXPECT_FALSE(drive.mediaPresent());
    EXPECT_EQ(drive.loadSoon(), std::nullopt);
    EXPECT_EQ(drive.loadSoon(), std::nullopt);
    EXPECT_THAT(noting.bounds, ElementsAre(35ms, 10ms))
        << "only the first mediaPresent() and the first loadSoon() may wait";
    EXPECT_LE(PatientDrive::mediumMoment + PatientDrive::tableMoment, Waiting::plainMoment);
    EXPECT_EQ(drive.load().disc, nullptr);
    drive.openTray();
    EXPECT_THAT(noting.bounds, ElementsAre(35ms, 10ms, 20s, 2s));
    device->recover();
}

/// Waits for a result as long as it takes on a busy machine.
class GenerousWaiting final : public Waiting {
  public:
    Outcome wait(const Completion& completion, Duration) override {
        return completion.restFor(1h) ? Outcome::done : Outcome::late;
    }
};

TEST_F(PatientDriveTest, ForwardsAllCallsInOrder) {
    GenerousWaiting generous;
    PatientDrive drive(std::make_shared<HangingDrive>(device), {1h, 1h}, "It does not respond.",
                       waiting::Services{threads, generous, notices});
    EXPECT_EQ(drive.load().disc.get(), device->disc.get());
    EXPECT_TRUE(drive.mediaPresent());
    device->present = false;
    EXPECT_FALSE(drive.mediaPresent());
    drive.openTray();
    drive.closeTray();
    EXPECT_THAT(device->calls(), ElementsAre("load", "present", "present", "open", "close"));
    device->disc = nullptr;
    EXPECT_EQ(drive.load().problem.text, "torn");
}

TEST_F(PatientDriveTest, ReportsAHangingDriveAndDoesNotCallItUntilItResponds) {
    const auto drive = driveWith(1ms);
    device->hang();
    EXPECT_EQ(drive->load().problem, (DriveReport{DeviceProblem::hung, "It does not respond."}));
    EXPECT_EQ(drive->load().problem.text, "It does not respond.");
    EXPECT_FALSE(drive->mediaPresent());
    device->recover();
    EXPECT_TRUE(fakes::eventually([&] { return drive->mediaPresent(); }));
    // The disc of the late load is dropped, because its caller has given up.
    EXPECT_TRUE(discIsDropped());
    EXPECT_THAT(device->calls(), testing::Contains("load").Times(1));
    EXPECT_TRUE(fakes::eventually([&] { return drive->load().disc.get() == device->disc.get(); }));
}

TEST_F(PatientDriveTest, KeepsTheKnownStateOfTheMediumWhileTheDriveHangs) {
    const auto drive = driveWith(1ms);
    EXPECT_TRUE(fakes::eventually([&] { return drive->mediaPresent(); }));
    device->present = false;
    device->hang();
    for (int second = 0; second < 5; ++second) {
        EXPECT_TRUE(drive->mediaPresent());
    }
    const std::size_t calls = device->calls().size();
    device->recover();
    EXPECT_TRUE(fakes::eventually([&] { return device->calls().size() > calls; }));
    EXPECT_TRUE(fakes::eventually([&] { return !drive->mediaPresent(); }));
}

TEST_F(PatientDriveTest, MediaPresentReturnsFalseAfterOpenTrayEvenIfTheDriveHangs) {
    const auto drive = driveWith(1ms);
    EXPECT_TRUE(fakes::eventually([&] { return drive->mediaPresent(); }));
    device->hang();
    drive->openTray();
    drive->closeTray();
    EXPECT_FALSE(drive->mediaPresent());
    device->recover();
    EXPECT_TRUE(fakes::eventually([&] {
        const auto calls = device->calls();
        return calls.back() == "close" && *(calls.end() - 2) == "open";
    }));
}

TEST_F(PatientDriveTest, CanBeDestroyedWhileACallHangs) {
    device->hang();
    auto drive = driveWith(1ms);
    EXPECT_EQ(drive->load().disc, nullptr);
    device->waitUntilCalled();
    drive->openTray();
    drive.reset();
    device->recover();
    EXPECT_TRUE(fakes::eventually([&] { return device.use_count() == 1; }));
    EXPECT_THAT(device->calls(), ElementsAre("load"))
        << "a call that has not begun before the destruction must not be executed";
}

TEST_F(PatientDriveTest, LoadsWithoutBlockingACallerThatPolls) {
    const auto drive = driveWith(1h);
    device->hang();
    for (int second = 0; second < 3; ++second) {
        EXPECT_EQ(drive->loadSoon(), std::nullopt);
        EXPECT_FALSE(drive->mediaPresent());
    }
    device->recover();
    std::optional<Loaded> loaded;
    EXPECT_TRUE(fakes::eventually([&] { return (loaded = drive->loadSoon()).has_value(); }));
    EXPECT_EQ(loaded->disc.get(), device->disc.get());
    EXPECT_TRUE(drive->mediaPresent());
    EXPECT_THAT(device->calls(), testing::Contains("load").Times(1));
    EXPECT_TRUE(fakes::eventually([&] { return drive->loadSoon().has_value(); }))
        << "a second load must begin and deliver its result";
    EXPECT_THAT(device->calls(), testing::Contains("load").Times(2));
}

/// Ends short waits at once without a result. Makes the device continue when a long wait begins.
class RecoveringWaiting final : public Waiting {
  public:
    explicit RecoveringWaiting(Device& device) : device_(device) {}
    Outcome wait(const Completion& completion, Duration bound) override {
        if (bound <= plainMoment) {
            return Outcome::late;
        }
        device_.recover();
        return completion.restFor(bound) ? Outcome::done : Outcome::late;
    }

  private:
    Device& device_;
};

TEST_F(PatientDriveTest, ALoadWaitsForALoadThatIsAlreadyRunning) {
    RecoveringWaiting recovering(*device);
    PatientDrive drive(std::make_shared<HangingDrive>(device), {1h, 1h}, "It does not respond.",
                       waiting::Services{threads, recovering, notices});
    device->hang();
    EXPECT_EQ(drive.loadSoon(), std::nullopt);
    EXPECT_EQ(drive.load().disc.get(), device->disc.get());
    EXPECT_THAT(device->calls(), ElementsAre("load"));
}

TEST_F(PatientDriveTest, ALoadReadsTheDiscAgainIfAnEarlierResultWasNotFetched) {
    const auto drive = driveWith(1h);
    device->hang();
    EXPECT_EQ(drive->loadSoon(), std::nullopt);
    device->recover();
    EXPECT_TRUE(fakes::eventually([&] { return drive->mediaPresent(); }));
    EXPECT_NE(drive->load().disc, nullptr);
    EXPECT_THAT(device->calls(), testing::Contains("load").Times(2));
}

TEST_F(PatientDriveTest, TheResultOfALoadThatBeganBeforeTheTrayOpenedIsDropped) {
    const auto drive = driveWith(1h);
    device->hang();
    EXPECT_EQ(drive->loadSoon(), std::nullopt);
    device->present = false;
    device->recover();
    drive->openTray();
    EXPECT_FALSE(drive->mediaPresent());
    EXPECT_TRUE(discIsDropped());
    EXPECT_EQ(drive->load().disc.get(), device->disc.get()) << "the disc must be read again";
}

TEST_F(PatientDriveTest, ReportsOnceThatTheDriveHangsAndOnceThatItRespondsAgain) {
    const auto drive = driveWith(1ms);
    device->hang();
    EXPECT_EQ(drive->load().disc, nullptr);
    EXPECT_EQ(drive->load().disc, nullptr);
    EXPECT_THAT(notices.texts(), ElementsAre("It does not respond."));
    device->recover();
    EXPECT_TRUE(fakes::eventually([&] { return drive->mediaPresent(); }));
    EXPECT_TRUE(fakes::eventually([&] {
        static_cast<void>(drive->mediaPresent());
        return notices.texts().size() == 2;
    }));
    EXPECT_EQ(notices.texts().back(),
              "settled [the drive /dev/sr7]: Responding again: the drive /dev/sr7.");
}

TEST_F(PatientDriveTest, ReportsAHangingDriveThatIsOnlyPolled) {
    const auto drive = driveWith(1ms);
    device->hang();
    EXPECT_TRUE(fakes::eventually([&] {
        EXPECT_EQ(drive->loadSoon(), std::nullopt);
        return !notices.texts().empty();
    }));
    EXPECT_THAT(notices.texts(), ElementsAre("It does not respond."));
    device->recover();
}

/// A disc whose destructor waits at a gate.
class StickyDisc : public FakeDisc {
  public:
    explicit StickyDisc(std::shared_ptr<fakes::Gate> gate)
        : FakeDisc(std::vector<Track>(1)), gate_(std::move(gate)) {}
    ~StickyDisc() override { gate_->pass(); }

  private:
    std::shared_ptr<fakes::Gate> gate_;
};

TEST_F(PatientDriveTest, ADiscWhoseDestructorHangsDoesNotBlockItsOwner) {
    const auto gate = std::make_shared<fakes::Gate>();
    gate->close();
    device->disc = std::make_shared<StickyDisc>(gate);
    const auto drive = driveWith(1h);
    std::shared_ptr<Disc> disc = drive->load().disc;
    device->disc.reset();
    disc.reset();
    gate->waitForArrivals(1);
    gate->open();
    EXPECT_TRUE(fakes::eventually([&] { return gate.use_count() == 1; }));
}

} // namespace
} // namespace sonarith::disc
