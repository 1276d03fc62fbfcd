// SPDX-License-Identifier: GPL-3.0-or-later
// Tests every way to switch the player off (Command6, close, EXIT, "off") with an interruption:
// each event in the list below occurs once in each yield of each switch-off, always in a new
// player.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/player_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::PlayerBench;

struct Event {
    std::string name;
    std::function<void(PlayerBench&)> happen;
};

std::vector<Event> events() {
    return {
        {"nothing",
         [](PlayerBench&) {
         }},
        {"panel closed",
         [](PlayerBench& bench) {
             bench.form.unload();
         }},
        {"panel closed and opened",
         [](PlayerBench& bench) {
             bench.form.unload();
             bench.form.show();
         }},
        {"EXIT",
         [](PlayerBench& bench) {
             bench.form.Command1.click();
         }},
        {"on",
         [](PlayerBench& bench) {
             bench.form.OptCD.choose();
         }},
        {"on, then one second passes",
         [](PlayerBench& bench) {
             bench.form.OptCD.choose();
             bench.loop.advance(1s);
         }},
        {"off",
         [](PlayerBench& bench) {
             bench.form.optNoCD.choose();
         }},
        {"off and on",
         [](PlayerBench& bench) {
             bench.form.optNoCD.choose();
             bench.form.OptCD.choose();
         }},
        {"the main window starts an action, which clicks Command6",
         [](PlayerBench& bench) {
             bench.form.Command6.click();
         }},
        {"play",
         [](PlayerBench& bench) {
             bench.form.play.click();
         }},
        {"stop",
         [](PlayerBench& bench) {
             bench.form.stopbtn.click();
         }},
        {"eject",
         [](PlayerBench& bench) {
             bench.form.eject.click();
         }},
        {"disc removed",
         [](PlayerBench& bench) {
             bench.disc.remove();
             bench.loop.advance(1s);
         }},
        {"disc changed",
         [](PlayerBench& bench) {
             bench.disc.remove();
             bench.loop.advance(1s);
             bench.disc.insert({5000, 6000});
             bench.loop.advance(1s);
         }},
        {"another disc chosen",
         [](PlayerBench& bench) {
             bench.player.power.releaseDisc();
             bench.disc.insert({5000, 6000});
             bench.player.power.openDiscAgain();
             bench.loop.advance(1s);
         }},
        {"another disc chosen, but opening its device fails",
         [](PlayerBench& bench) {
             bench.player.power.releaseDisc();
             bench.media.answer("open cdaudio alias cd wait shareable", {.status = 266});
             bench.player.power.openDiscAgain();
         }},
        {"a disc on which seeking fails",
         [](PlayerBench& bench) {
             bench.disc.remove();
             bench.loop.advance(1s);
             bench.disc.insert({5000, 6000});
             bench.media.answer("seek cd to 1", {.status = 275});
             bench.loop.advance(1s);
         }},
        {"a data disc",
         [](PlayerBench& bench) {
             bench.disc.remove();
             bench.loop.advance(1s);
             bench.disc.insert({5000});
             bench.loop.advance(1s);
         }},
        {"one second with a high level",
         [](PlayerBench& bench) {
             bench.mixer.put(mixer_line::waveIn, mixer_control::peakMeter, 30000);
             bench.loop.advance(1s);
         }},
        {"mixer read and a slider moved",
         [](PlayerBench& bench) {
             bench.form.Command2.click();
             bench.form.Slider1.moveTo(5);
         }},
        {"unmute",
         [](PlayerBench& bench) {
             bench.form.Option14.choose();
         }},
    };
}

struct SwitchOff {
    std::string name;
    std::function<void(PlayerBench&)> run;
    bool closesPanel;
    int yields;
};

std::vector<SwitchOff> switchOffs() {
    return {
        {"Command6", [](PlayerBench& bench) { bench.form.Command6.click(); }, false, 7},
        {"close", [](PlayerBench& bench) { bench.form.unload(); }, true, 7},
        {"EXIT", [](PlayerBench& bench) { bench.form.Command1.click(); }, true, 7},
        {"off", [](PlayerBench& bench) { bench.form.optNoCD.choose(); }, false, 1},
    };
}

/// Runs `switchOff`, and `event` inside its n-th yield. Returns whether there was such a yield.
bool runWith(PlayerBench& bench, const SwitchOff& switchOff, const Event& event, int n) {
    struct Progress {
        bool over = false;
        bool reached = false;
    };
    // Shared, since the bench keeps the action below if its yield was not reached, and may run it
    // in a yield after the end of this function.
    const auto progress = std::make_shared<Progress>();
    bench.loop.atYield(n, [&bench, progress, happen = event.happen] {
        if (!progress->over) {
            progress->reached = true;
            happen(bench);
        }
    });
    switchOff.run(bench);
    progress->over = true;
    return progress->reached;
}

void expectOffAndSilent(PlayerBench& bench) {
    EXPECT_TRUE(bench.off());
    EXPECT_EQ(bench.loop.wakeupCount(), 0U);
    EXPECT_EQ(bench.process.PlayerOpen, bench.form.loaded());
    if (bench.form.loaded()) {
        EXPECT_EQ(bench.form.CD.text(), "OFF");
        EXPECT_EQ(bench.form.timeWindow.text(), "");
        EXPECT_EQ(bench.form.tracktime.caption(), "");
        EXPECT_TRUE(bench.form.picPeakVol.lines().empty());
        EXPECT_FALSE(bench.form.OptCD.selected());
    } else {
        EXPECT_FALSE(bench.form.visible());
    }
    EXPECT_TRUE(bench.boxes.shown.empty());
    // The player stays off.
    EXPECT_TRUE(bench.operationsOf([&] { bench.loop.advance(5s); }).empty());
}

void expectThatThePlayerWorksAgain(PlayerBench& bench) {
    bench.media.forgetAnswers();
    bench.process.CDPaused = false;
    bench.disc.insert({60000, 60000, 60000});
    bench.form.show();
    bench.switchOn();
    EXPECT_TRUE(bench.on());
    EXPECT_FALSE(bench.discMuted());
    EXPECT_EQ(bench.form.CD.text(), "Cd Ready");
    bench.form.play.click();
    EXPECT_TRUE(bench.disc.playing());
    bench.loop.advance(2s);
    EXPECT_EQ(bench.form.timeWindow.text(), "[01] 00:02");
    bench.form.Command6.click();
    EXPECT_TRUE(bench.off());
    EXPECT_TRUE(bench.looksOff());
    EXPECT_TRUE(bench.discMuted());
}

TEST(EverySwitchOff, WithAnyEventInAnyYieldLeavesThePlayerOffAndUsable) {
    for (const SwitchOff& switchOff : switchOffs()) {
        for (const Event& event : events()) {
            int n = 1;
            for (bool reached = true; reached; ++n) {
                SCOPED_TRACE(switchOff.name + ", " + event.name + " at yield " + std::to_string(n));
                ASSERT_LT(n, 50);
                PlayerBench bench;
                bench.form.show();
                bench.switchOn();
                bench.form.play.click();
                bench.loop.advance(3s);
                reached = runWith(bench, switchOff, event, n);
                expectOffAndSilent(bench);
                if (switchOff.closesPanel) {
                    EXPECT_FALSE(bench.form.loaded());
                }
                expectThatThePlayerWorksAgain(bench);
            }
            EXPECT_EQ(n - 2, switchOff.yields) << switchOff.name << ", " << event.name;
        }
    }
}

TEST(EverySwitchOff, WithCheck3TickedInAnyYieldLeavesNoUnusedInputOpen) {
    const Event tick{"input", [](PlayerBench& bench) {
                         bench.form.Check3.setValue(1).passOver();
                     }};
    for (const SwitchOff& switchOff : switchOffs()) {
        for (int n = 1; n <= switchOff.yields; ++n) {
            SCOPED_TRACE(switchOff.name + " at yield " + std::to_string(n));
            PlayerBench bench;
            bench.switchOn();
            EXPECT_TRUE(runWith(bench, switchOff, tick, n));
            // If the box is ticked after the switch-off has called MeterCapture::StopMeter() for
            // the last time, the user's choice is kept: the input runs although the player is off.
            EXPECT_FALSE(bench.disc.discOpen());
            EXPECT_FALSE(bench.form.Timer6.enabled());
            EXPECT_EQ(bench.waveInput.isOpen, bench.player.capture.running());
            if (switchOff.closesPanel) {
                EXPECT_TRUE(bench.off());
            }
            bench.form.show();
            bench.switchOn();
            EXPECT_TRUE(bench.on());
            bench.form.Command6.click();
            EXPECT_TRUE(bench.off());
        }
    }
}

TEST(EverySwitchOff, WithAnEmptyDriveAndAnyEventLeavesThePlayerOffAndUsable) {
    for (const SwitchOff& switchOff : switchOffs()) {
        for (const Event& event : events()) {
            for (int n = 1; n <= switchOff.yields; ++n) {
                for (const bool on : {true, false}) {
                    SCOPED_TRACE(switchOff.name + ", " + event.name + " at yield " +
                                 std::to_string(n) + (on ? ", was on" : ", was never on"));
                    PlayerBench bench;
                    bench.disc.remove();
                    if (on) {
                        bench.switchOn();
                    }
                    EXPECT_TRUE(runWith(bench, switchOff, event, n));
                    expectOffAndSilent(bench);
                    expectThatThePlayerWorksAgain(bench);
                }
            }
        }
    }
}

} // namespace
} // namespace sonarith
