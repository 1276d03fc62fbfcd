// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the commands that release a disc whose read does not return: the commands must return
// nevertheless, and the drive must be usable again. The disc player and the sound card are those of
// the program, not fakes.
#include <gmock/gmock.h>

#include "platform/linux/disc/fake_disc.h"
#include "platform/linux/mci/machine_fixture.h"
#include "support/waiting.h"

namespace sonarith::mci {
namespace {

using disc::TrackKind;
using fakes::fine;
using fakes::said;

std::shared_ptr<disc::FakeDisc> oneTrack() {
    return std::make_shared<disc::FakeDisc>(std::vector<disc::Track>{{TrackKind::audio, 750}});
}

class AHangingDisc : public testing::TestWithParam<const char*>, protected MachineSession {
  protected:
    AHangingDisc() : MachineSession([this] { return drive; }) {
        hanging->hold();
        EXPECT_EQ(send("open cdaudio alias cd"), fine());
        EXPECT_EQ(send("play cd"), fine());
        hanging->waitForReads(1);
        time += std::chrono::seconds(1);
        EXPECT_EQ(send("status cd mode"), said("playing"));
    }
    ~AHangingDisc() override {
        hanging->release();
        drive->disc = nullptr;
        EXPECT_TRUE(fakes::eventually([this] { return hanging.use_count() == 1; }));
        EXPECT_EQ(hanging->reads().size(), 1u);
    }

    std::shared_ptr<disc::FakeDisc> hanging = oneTrack();
    std::shared_ptr<fakes::FakeDrive> drive = std::make_shared<fakes::FakeDrive>(hanging);
};

TEST_P(AHangingDisc, CanBeReleasedAndReplacedByANewDiscWhileItHangs) {
    EXPECT_EQ(send(GetParam()), fine());
    EXPECT_FALSE(card.active());
    drive->trayOpen = false;
    drive->disc = oneTrack();
    static_cast<void>(send("close all"));
    EXPECT_EQ(send("open cdaudio alias cd"), fine());
    EXPECT_EQ(send("set cd time format milliseconds"), fine());
    EXPECT_EQ(send("play cd"), fine());
    tickUntil(10000);
    EXPECT_EQ(send("status cd mode"), said("stopped"));
    EXPECT_EQ(send("close cd"), fine());
}

INSTANTIATE_TEST_SUITE_P(Commands, AHangingDisc,
                         testing::Values("close cd", "close all", "set cd door open"));

} // namespace
} // namespace sonarith::mci
