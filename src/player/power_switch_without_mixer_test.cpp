// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/power_switch.h"

#include "support/player_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PowerSwitchWithoutMixer, SwitchingOnSkipsTheResetAndReadsTheDisc) {
    test::PlayerBench bench;
    bench.form.unload();
    bench.player.mixerState = {};
    bench.mixer.present = false;
    bench.form.load();
    bench.boxes.shown.clear();
    // Without a mixer, ResetPlayer() returns after "mixer open": it sends no "stop cd" and no
    // "close cd".
    EXPECT_THAT(bench.operationsOf([&] { bench.form.OptCD.choose(); }),
                ElementsAre("wave open", "wave prepare", "wave prepare", "wave add", "wave add",
                            "wave start",                           //
                            "mixer line 4", "mixer set none 0",     //
                            "mixer line 4101", "mixer set none 0",  //
                            "mixer open",                           //
                            "stop voice1", "close voice1",          //
                            "open cdaudio alias cd wait shareable", //
                            "set cd time format tmsf wait"));
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
    bench.loop.advance(1s);
    EXPECT_EQ(bench.form.CD.text(), "Cd Ready");
    EXPECT_TRUE(bench.on());
    bench.form.optNoCD.choose();
    EXPECT_TRUE(bench.off());
}

TEST(PowerSwitchWithoutMixer, SwitchingOnASecondTimeStopsThePollBeforeTheDiscIsOpened) {
    // Without a mixer, ResetPlayer() returns before it stops the poll, so OptCD_Click() itself must
    // stop the poll.
    test::PlayerBench bench;
    bench.switchOn();
    bench.mixer.present = false;
    bool reached = false;
    bench.media.onCommand = [&](std::string_view command) {
        if (command.starts_with("open cdaudio")) {
            reached = true;
            EXPECT_FALSE(bench.form.Timer6.enabled());
            EXPECT_FALSE(bench.player.disc.CDLoaded);
        }
    };
    bench.form.OptCD.choose();
    EXPECT_TRUE(reached);
}

} // namespace
} // namespace sonarith
