// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the order of the power switch's steps: the panel's state at the time of each command, and
// the state that the steps do not change. The commands themselves are tested in
// power_switch_test.cpp.
#include "player/power_switch.h"

#include <functional>

#include "support/player_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct PowerSwitchOrderTest : test::PlayerWorld {
    /// Clicks "on" and runs `look` when `command` is sent. Returns how often `command` was sent.
    int lookAt(const std::string& command, const std::function<void()>& look) {
        int times = 0;
        media.onCommand = [&](std::string_view sent) {
            if (sent == command) {
                ++times;
                look();
            }
        };
        form.OptCD.choose();
        media.onCommand = nullptr;
        return times;
    }
};

TEST_F(PowerSwitchOrderTest, TheMeterStartsAndEjectIsEnabledAfterTheTimeFormatIsSet) {
    for (const char* command :
         {"open cdaudio alias cd wait shareable", "set cd time format tmsf wait"}) {
        EXPECT_EQ(lookAt(command,
                         [&] {
                             EXPECT_FALSE(form.Timer3.enabled()) << command;
                             EXPECT_FALSE(form.eject.enabled()) << command;
                         }),
                  1);
        EXPECT_TRUE(form.Timer3.enabled());
        EXPECT_TRUE(form.eject.enabled());
        form.optNoCD.choose();
    }
}

TEST_F(PowerSwitchOrderTest, SwitchingOnASecondTimeStopsThePollButNotTheMeter) {
    switchOn();
    EXPECT_EQ(lookAt("open cdaudio alias cd wait shareable",
                     [&] {
                         EXPECT_FALSE(form.Timer6.enabled());
                         EXPECT_TRUE(form.Timer3.enabled());
                         EXPECT_FALSE(form.eject.enabled());
                         EXPECT_EQ(form.CD.text(), "Cd Ready");
                     }),
              1);
    EXPECT_EQ(form.CD.text(), "Cd Ready");
}

TEST_F(PowerSwitchOrderTest,
       SwitchingOnASecondTimeStopsThePollThenClosesTheDiscThenClearsThePanel) {
    switchOn();
    EXPECT_EQ(lookAt("stop cd", [&] { EXPECT_FALSE(form.Timer6.enabled()); }), 1);
    switchOn();
    EXPECT_EQ(lookAt("close cd",
                     [&] {
                         EXPECT_EQ(enabledButtons().size(), 6U);
                         EXPECT_EQ(form.timeWindow.text(), "[01] 00:00");
                         EXPECT_EQ(form.tracktime.caption(), "Track time: 01:00:00");
                     }),
              1);
    switchOn();
    EXPECT_EQ(lookAt("stop voice1",
                     [&] {
                         EXPECT_THAT(enabledButtons(), IsEmpty());
                         EXPECT_EQ(form.timeWindow.text(), "");
                         EXPECT_EQ(form.tracktime.caption(), "");
                         EXPECT_TRUE(player.disc.CDLoaded)
                             << "CDLoaded must not be cleared before \"stop voice1\" is sent";
                     }),
              1);
    EXPECT_FALSE(player.disc.CDLoaded);
}

TEST_F(PowerSwitchOrderTest, SwitchingOffKeepsTheStoredStateOfTheDisc) {
    switchOn();
    form.optNoCD.choose();
    EXPECT_TRUE(player.disc.CDLoaded);
    EXPECT_EQ(player.disc.NumTracks, 3);
    // CDLoaded is still true, so the next poll, which finds no medium in the closed device, treats
    // the disc as removed. "Play CD" on the last track sends no play command, but runs a poll.
    process.currentTrack = 3;
    EXPECT_THAT(commandsOf([&] { form.mnuPlayCD.click(); }),
                ElementsAre("status cd media present"));
    EXPECT_EQ(form.CD.text(), "No CD");
    EXPECT_FALSE(player.disc.CDLoaded);
}

TEST_F(PowerSwitchOrderTest,
       AfterASwitchOffOrAReloadOfTheWindowTheMeterTraceContinuesWhereItEnded) {
    player.meter.prepare();
    mixer.put(mixer_line::waveIn, mixer_control::peakMeter, 8192);
    for (int tick = 0; tick < 3; ++tick) {
        form.Timer3.fire();
    }
    form.optNoCD.choose();
    EXPECT_THAT(form.picPeakVol.lines(), IsEmpty());
    form.Timer3.fire();
    EXPECT_THAT(form.picPeakVol.lines(), ElementsAre(PictureLine{{40, 450}, {60, 450}}));
    form.unload();
    form.load();
    form.Timer3.fire();
    EXPECT_THAT(form.picPeakVol.lines(), ElementsAre(PictureLine{{60, 450}, {80, 450}}));
}

} // namespace
} // namespace sonarith
