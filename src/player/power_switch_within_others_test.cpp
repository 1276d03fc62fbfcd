// SPDX-License-Identifier: GPL-3.0-or-later
// Tests events that interrupt the steps of the player's power switch: a click on "on" while the
// player is being switched off, and a switch-off or a close of the player's panel while the player
// is being switched on. switch_off_sweep_test.cpp tests events in every yield of a switch-off.
#include "player/power_switch.h"

#include "support/player_world.h"

namespace sonarith {
namespace {

using testing::Contains;
using testing::ElementsAre;

struct InterruptedPowerSwitchTest : test::PlayerWorld {};

TEST_F(InterruptedPowerSwitchTest, SwitchingOnIsRefusedWhileThePlayerIsBeingSwitchedOff) {
    switchOn();
    loop.atYield(1, [&] { form.OptCD.choose(); });
    EXPECT_THAT(commandsOf([&] { form.optNoCD.choose(); }), ElementsAre("stop cd", "close cd"));
    EXPECT_TRUE(off());
    EXPECT_TRUE(looksOff());
}

TEST_F(InterruptedPowerSwitchTest,
       SwitchingOnIsCancelledIfThePanelIsClosedDuringTheMessageAboutTheWaveInput) {
    waveInput.failures["open"] = WaveResult::notEnabled;
    boxes.whileUp = [&](const test::ShownBox&) {
        form.unload();
    };
    const std::vector<std::string> sent = commandsOf([&] { form.OptCD.choose(); });
    EXPECT_THAT(sent, ElementsAre("stop cd", "close cd", "close all"));
    EXPECT_FALSE(form.loaded());
    EXPECT_TRUE(off());
    EXPECT_TRUE(discMuted());
}

TEST_F(InterruptedPowerSwitchTest,
       SwitchingOnIsCancelledIfThePlayerIsSwitchedOffDuringTheMessageAboutTheWaveInput) {
    waveInput.failures["prepare"] = WaveResult::invalidParameter;
    boxes.whileUp = [&](const test::ShownBox&) {
        form.optNoCD.choose();
    };
    form.OptCD.choose();
    EXPECT_EQ(boxes.shown.size(), 1U);
    EXPECT_TRUE(off());
    EXPECT_TRUE(looksOff());
    EXPECT_TRUE(form.optNoCD.selected());
}

TEST_F(InterruptedPowerSwitchTest, SwitchingOnIsCancelledIfThePanelIsClosedWhileACaptureIsSaved) {
    main.load();
    main.Command8.onClick = [&] {
        main.tmrRecord.setEnabled(false);
        loop.yield();
    };
    main.tmrRecord.setEnabled(true);
    loop.atYield(1, [&] { form.unload(); });
    const std::vector<std::string> sent = operationsOf([&] { form.OptCD.choose(); });
    EXPECT_THAT(sent, testing::Not(Contains("wave open")));
    EXPECT_FALSE(form.loaded());
    EXPECT_TRUE(off());
}

} // namespace
} // namespace sonarith
