// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/transport.h"

#include "support/player_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TransportWithoutADisc, PlaySendsOnlyAStatusCommand) {
    test::PlayerBench bench;
    bench.disc.remove();
    bench.switchOn();
    EXPECT_THAT(bench.commandsOf([&] { bench.form.mnuPlayCD.click(); }),
                ElementsAre("status cd media present"));
    EXPECT_TRUE(bench.on());
    EXPECT_FALSE(bench.form.eject.enabled());
}

TEST(TransportWithoutADisc, StopFailsAtItsSeekAndClosesThePanelWithoutAMessage) {
    test::PlayerBench bench;
    bench.disc.remove();
    bench.switchOn();
    EXPECT_THAT(bench.commandsOf([&] { bench.form.mnuStopPlay.click(); }),
                ElementsAre("stop cd wait", "seek cd to 0",     //
                            "close all", "close all",           // after the failure
                            "stop cd", "close cd", "close all", // the panel's unload
                            "status cd media present"));        // the handler continues
    EXPECT_FALSE(bench.form.loaded());
    EXPECT_TRUE(bench.off());
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
}

TEST(TransportWithADataDisc, PlaySendsOnlyStatusCommands) {
    test::PlayerBench bench({60000}); // a disc with only one track counts as a data disc
    bench.switchOn();
    EXPECT_THAT(bench.commandsOf([&] { bench.form.mnuPlayCD.click(); }),
                ElementsAre("status cd media present", "status cd number of tracks wait"));
    EXPECT_FALSE(bench.disc.playing());
    EXPECT_EQ(bench.form.CD.text(), "Not audio");
}

TEST(TransportSwitchedOff, PlaySendsOnlyAStatusCommandIfNoDiscWasEverRead) {
    test::PlayerBench bench;
    EXPECT_THAT(bench.commandsOf([&] { bench.form.mnuPlayCD.click(); }),
                ElementsAre("status cd media present"));
    EXPECT_TRUE(bench.form.loaded());
    EXPECT_EQ(bench.form.CD.text(), "OFF");
    EXPECT_TRUE(bench.off());
}

} // namespace
} // namespace sonarith
