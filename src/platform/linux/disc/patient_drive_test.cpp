// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/patient_drive.h"

#include <atomic>
#include <condition_variable>
#include <mutex>

#include <gmock/gmock.h>

#include "platform/linux/disc/fake_disc.h"
#include "support/waiting.h"

namespace sonarith::disc {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// What a drive does, and a gate before all that it does; used by the test and the drive's thread.
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
    void pass(const std::string& call) {
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
    Loaded load() override {
        device_->pass("load");
        return device_->disc ? Loaded{device_->disc, {}}
                             : noDisc(DeviceProblem::unreadable, "torn");
    }
    bool mediaPresent() override {
        device_->pass("present");
        return device_->present;
    }
    void openTray() override { device_->pass("open"); }
    void closeTray() override { device_->pass("close"); }

  private:
    std::shared_ptr<Device> device_;
};

class PatientDriveTest : public testing::Test {
  protected:
    /// A drive that is waited for as long as it takes while it answers, and hardly at all when the
    /// test lets it hang.
    std::unique_ptr<PatientDrive> driveWith(std::chrono::milliseconds patience) {
        return std::make_unique<PatientDrive>(std::make_shared<HangingDrive>(device),
                                              PatientDrive::Patience{patience, patience},
                                              "It does not answer.");
    }
    std::shared_ptr<Device> device = std::make_shared<Device>();
};

TEST_F(PatientDriveTest, PassesAllOnInItsOrder) {
    const auto drive = driveWith(1h);
    EXPECT_EQ(drive->load().disc, device->disc);
    EXPECT_TRUE(drive->mediaPresent());
    device->present = false;
    EXPECT_FALSE(drive->mediaPresent());
    drive->openTray();
    drive->closeTray();
    EXPECT_THAT(device->calls(), ElementsAre("load", "present", "present", "open", "close"));
    device->disc = nullptr;
    EXPECT_EQ(drive->load().problem.text, "torn");
}

TEST_F(PatientDriveTest, SaysThatTheDriveDoesNotAnswerAndAsksNoFurtherUntilItDoes) {
    const auto drive = driveWith(1ms);
    device->hang();
    EXPECT_EQ(drive->load().problem.text, "It does not answer.");
    EXPECT_EQ(drive->load().problem.text, "It does not answer.");
    EXPECT_FALSE(drive->mediaPresent());
    device->recover();
    // The late disc was nobody's any more.
    EXPECT_TRUE(fakes::eventually([&] { return drive->mediaPresent(); }));
    EXPECT_EQ(device->disc.use_count(), 1);
    EXPECT_THAT(device->calls(), testing::Contains("load").Times(1));
    EXPECT_TRUE(fakes::eventually([&] { return drive->load().disc == device->disc; }));
}

TEST_F(PatientDriveTest, KeepsToWhatWasKnownOfTheMediumWhileTheDriveHangs) {
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

TEST_F(PatientDriveTest, OpensTheTrayWhenTheDriveComesToItAndHoldsNoDiscFromNowOn) {
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

TEST_F(PatientDriveTest, LeavesBehindWhatHangs) {
    device->hang();
    auto drive = driveWith(1ms);
    EXPECT_EQ(drive->load().disc, nullptr);
    device->waitUntilCalled();
    drive->openTray();
    drive.reset();
    device->recover();
    EXPECT_TRUE(fakes::eventually([&] { return device.use_count() == 1; }));
    EXPECT_THAT(device->calls(), ElementsAre("load")) << "nobody waits for the rest any more";
}

} // namespace
} // namespace sonarith::disc
