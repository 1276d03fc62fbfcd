// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the choice of another disc or drive while the player is on. The main window reads the new
// disc through a device "cd" that it opens itself. So the player first closes its own device, and
// opens it again afterwards. disc_poll_test.cpp tests a disc that is changed in the drive.
#include "player/power_switch.h"

#include "support/player_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct PlayersOtherDiscTest : test::PlayerWorld {
    PlayersOtherDiscTest() {
        switchOn();
        form.play.click();
        loop.advance(3s);
    }
};

TEST_F(PlayersOtherDiscTest, IsShownByTheFirstPollAfterThePlayerOpensTheDeviceAgain) {
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:03");
    EXPECT_THAT(commandsOf([&] { player.power.releaseDisc(); }),
                ElementsAre("stop cd", "close cd", "status cd media present"));
    EXPECT_FALSE(disc.discOpen());
    EXPECT_EQ(form.CD.text(), "No CD");
    EXPECT_EQ(form.tracktime.caption(), "");
    EXPECT_THAT(enabledButtons(), IsEmpty());
    disc.insert({5000, 6000});
    EXPECT_THAT(commandsOf([&] { player.power.openDiscAgain(); }),
                ElementsAre("stop cd", "close cd", "open cdaudio alias cd wait shareable",
                            "set cd time format tmsf wait"));
    EXPECT_TRUE(on());
    EXPECT_THAT(enabledButtons(), ElementsAre("eject"));
    EXPECT_EQ(form.CD.text(), "No CD");
    loop.advance(1s);
    EXPECT_EQ(form.CD.text(), "Cd Ready");
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:00");
    EXPECT_EQ(form.tracktime.caption(), "Track time: 00:05:00");
    form.ftrack.click();
    EXPECT_EQ(form.timeWindow.text(), "[02] 00:00");
}

TEST_F(PlayersOtherDiscTest, IsNotPolledWhileTheMainWindowReadsIt) {
    player.power.releaseDisc();
    // Opens the device as the main window does. The main window sets time formats that the player's
    // poll cannot read.
    ASSERT_EQ(media.sendString("open cdaudio alias cd"), mciSuccess);
    EXPECT_THAT(commandsOf([&] { loop.advance(5s); }), IsEmpty());
    EXPECT_EQ(form.CD.text(), "No CD");
    player.power.openDiscAgain();
    loop.advance(1s);
    EXPECT_TRUE(on());
    EXPECT_EQ(form.timeWindow.text(), "[01] 00:00");
}

TEST_F(PlayersOtherDiscTest, IsFoundWhenItIsInsertedLater) {
    player.power.releaseDisc();
    disc.remove();
    player.power.openDiscAgain();
    loop.advance(5s);
    EXPECT_TRUE(on());
    EXPECT_EQ(form.CD.text(), "No CD");
    disc.insert({5000, 6000});
    loop.advance(1s);
    EXPECT_EQ(form.CD.text(), "Cd Ready");
}

TEST_F(PlayersOtherDiscTest, AMissingDriveSwitchesThePlayerOffButLeavesThePlayersWindowOpen) {
    form.show();
    player.power.releaseDisc();
    media.answer("open cdaudio alias cd wait shareable", {.status = 266});
    player.power.openDiscAgain();
    EXPECT_TRUE(off());
    EXPECT_TRUE(looksOff());
    EXPECT_TRUE(form.optNoCD.selected());
    EXPECT_TRUE(form.visible());
}

TEST_F(PlayersOtherDiscTest, IsNotOpenedAgainIfThePlayerWasSwitchedOnOrOffAfterReleaseDisc) {
    player.power.releaseDisc();
    form.optNoCD.choose();
    EXPECT_THAT(operationsOf([&] { player.power.openDiscAgain(); }), IsEmpty());
    EXPECT_TRUE(off());

    switchOn();
    player.power.releaseDisc();
    form.OptCD.choose();
    EXPECT_THAT(operationsOf([&] { player.power.openDiscAgain(); }), IsEmpty());
    EXPECT_TRUE(on());

    player.power.releaseDisc();
    form.unload();
    EXPECT_THAT(operationsOf([&] { player.power.openDiscAgain(); }), IsEmpty());
    EXPECT_TRUE(off());
}

TEST_F(PlayersOtherDiscTest, DoesNotAffectAPlayerThatIsOff) {
    form.Command6.click();
    EXPECT_THAT(operationsOf([&] {
                    player.power.releaseDisc();
                    player.power.openDiscAgain();
                }),
                IsEmpty());
    EXPECT_TRUE(off());
}

} // namespace
} // namespace sonarith
