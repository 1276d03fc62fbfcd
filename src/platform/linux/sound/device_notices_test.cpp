// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/device_notices.h"

#include <gmock/gmock.h>

#include "platform/notice_board.h"
#include "support/fake_notices.h"

namespace sonarith::sound {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class DeviceNoticesTest : public testing::Test {
  protected:
    NoticeBoard board;
    std::shared_ptr<DeviceNotices> notices = std::make_shared<DeviceNotices>(board);
    ReportDevice output = reportTo(notices, SoundDevice::output, "hw:0");
};

TEST_F(DeviceNoticesTest, ReportALossOnceAndTheRecoveryOnceHoweverOftenTheDeviceIsTried) {
    output(DeviceState::works);
    EXPECT_THAT(board.texts(), IsEmpty());
    for (int attempt = 0; attempt < 3; ++attempt) {
        output(DeviceState::lost);
    }
    output(DeviceState::works);
    output(DeviceState::works);
    EXPECT_THAT(
        board.texts(),
        ElementsAre("The sound output \"hw:0\" cannot be used: it is missing, in use or was "
                    "unplugged. Playing continues without sound until it is available again.",
                    "The sound output \"hw:0\" is available again."));
    output(DeviceState::lost);
    EXPECT_THAT(board.texts(), SizeIs(3)) << "a new loss must be reported again";
}

TEST_F(DeviceNoticesTest, CallTheNoticesInterfaceOnlyOnceForEachChange) {
    test::FakeNotices notified;
    const ReportDevice device =
        reportTo(std::make_shared<DeviceNotices>(notified), SoundDevice::output, "hw:0");
    device(DeviceState::lost);
    device(DeviceState::lost);
    device(DeviceState::works);
    device(DeviceState::works);
    EXPECT_THAT(
        notified.texts(),
        ElementsAre(testing::StartsWith("The sound output \"hw:0\" cannot"),
                    "settled [output hw:0]: The sound output \"hw:0\" is available again."));
}

TEST_F(DeviceNoticesTest, DistinguishAnInputAndAnOutputOfTheSameName) {
    output(DeviceState::lost);
    reportTo(notices, SoundDevice::input, "hw:0")(DeviceState::lost);
    EXPECT_THAT(board.texts(), SizeIs(2));
    EXPECT_EQ(board.texts().back(),
              "The sound input \"hw:0\" cannot be used: it is missing, in use "
              "or was unplugged. The input is silent until it is available again.");
}

TEST_F(DeviceNoticesTest, ReportTheLossOfTheDefaultOutputWithoutADeviceName) {
    reportTo(notices, SoundDevice::output, "default")(DeviceState::lost);
    EXPECT_THAT(board.texts().front(), testing::StartsWith("The default sound output cannot"));
}

TEST_F(DeviceNoticesTest, SettleTheNoticeOfALossAndAddNoTextIfTheDeviceIsNoLongerUsed) {
    test::FakeNotices notified;
    const auto notes = std::make_shared<DeviceNotices>(notified);
    const ReportDevice device = reportTo(notes, SoundDevice::output, "hw:0");
    device(DeviceState::unused);
    EXPECT_THAT(notified.texts(), IsEmpty());
    device(DeviceState::lost);
    device(DeviceState::unused);
    EXPECT_THAT(notified.texts(), ElementsAre(testing::_, "settled [output hw:0]"));
}

TEST_F(DeviceNoticesTest, ReportNothingAfterTheNoticesAreMuted) {
    notices->mute();
    output(DeviceState::lost);
    EXPECT_THAT(board.texts(), IsEmpty());
}

} // namespace
} // namespace sonarith::sound
