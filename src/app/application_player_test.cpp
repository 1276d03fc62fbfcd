// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the CD player within the whole application: how it is loaded, muted, shown and unloaded,
// and how it is switched off before an action.
#include "app/application.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/application_bench.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ApplicationBench;
using test::SavedCapture;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* muteKey = "mute button";

struct PlayerInApplication : testing::Test {
    ApplicationBench bench{{60000, 60000}};
    Form4& panel = bench.windows.Form4;

    [[nodiscard]] bool discMuted() const {
        return bench.mixer.value(mixer_line::compactDisc, mixer_control::mute) == 1;
    }
    void switchOnAndPlay() {
        panel.OptCD.choose();
        bench.loop.advance(1s);
        panel.play.click();
        EXPECT_TRUE(bench.disc.playing());
    }
    [[nodiscard]] bool playerOff() const {
        return !bench.waveInput.isOpen && !panel.Timer6.enabled() && !panel.Timer3.enabled();
    }
};

// --- the start -----------------------------------------------------------------------------

TEST_F(PlayerInApplication, IsLoadedHiddenAfterTheSettingsAndBeforeTheDiscIsRead) {
    std::vector<std::string> steps;
    bench.mixer.onOperation = [&](const std::string& operation) {
        steps.push_back(operation);
        EXPECT_EQ(bench.process.settings.hdWarningNo, 100);
        EXPECT_TRUE(bench.process.PlayerOpen);
        EXPECT_FALSE(panel.visible());
    };
    bench.media.onCommand = [&](std::string_view command) {
        steps.emplace_back(command);
    };
    bench.application.start();
    // The load step reads four levels and sets three; then the disc is muted.
    ASSERT_GE(steps.size(), 21U);
    EXPECT_EQ(steps[0], "open");
    EXPECT_THAT(std::vector(steps.begin() + 13, steps.begin() + 19),
                ElementsAre("set 4 50030001 65535", "set 4101 50030001 65535", "set none 65535",
                            "line 4101", "control 4101 20010002", "set 4101 20010002 1"));
    const auto inspection = std::find(steps.begin(), steps.end(), "open cdaudio alias cd");
    ASSERT_NE(inspection, steps.end());
    EXPECT_GT(inspection - steps.begin(), 18);
    EXPECT_FALSE(bench.waveInput.isOpen);
    EXPECT_FALSE(bench.disc.discOpen());
}

TEST_F(PlayerInApplication, MutesTheDiscAtTheStartOnlyIfTheSettingIs1) {
    struct Row {
        const char* setting;
        bool muted;
    };
    // Any value other than 1 unmutes.
    for (const Row& row : {Row{"1", true}, Row{"0", false}, Row{"2", false}, Row{"-1", false}}) {
        SCOPED_TRACE(row.setting);
        ApplicationBench fresh({1000, 1000});
        fresh.store.put("Settings", muteKey, row.setting);
        fresh.mixer.put(mixer_line::compactDisc, mixer_control::mute, row.muted ? 0 : 1);
        fresh.application.start();
        EXPECT_EQ(fresh.mixer.value(mixer_line::compactDisc, mixer_control::mute),
                  row.muted ? 1 : 0);
    }
}

TEST_F(PlayerInApplication, IsPlacedBesideTheMainWindow) {
    bench.application.start();
    EXPECT_EQ(panel.left(), bench.form.left() + bench.form.width());
    EXPECT_EQ(panel.top(), bench.form.top());
    EXPECT_EQ(panel.height(), bench.form.height());
}

TEST_F(PlayerInApplication, IsShownAfterTheMainWindow) {
    std::vector<std::string> seen;
    for (int n = 1; n <= 9; ++n) {
        bench.loop.atYield(n, [&] {
            seen.push_back(std::string(bench.form.visible() ? "main" : "") +
                           (panel.visible() ? " panel" : ""));
        });
    }
    bench.application.start();
    // The scan of the folder already shows the main window; the panel follows before the last
    // yield.
    EXPECT_THAT(seen,
                ElementsAre("", "", "main", "main", "main", "main", "main", "main", "main panel"));
    EXPECT_EQ(bench.loop.yieldCount(), 9);
}

TEST_F(PlayerInApplication, IsLoadedAndShownEvenIfItWasClosedDuringTheStart) {
    bench.loop.atYield(8, [&] { panel.unload(); });
    bench.application.start();
    EXPECT_TRUE(panel.loaded());
    EXPECT_TRUE(panel.visible());
}

TEST_F(PlayerInApplication, ShowsOneMessageAndStartsOnAMachineWithoutAMixer) {
    bench.mixer.present = false;
    bench.application.start();
    EXPECT_THAT(bench.boxes.texts(),
                ElementsAre("Couldn't open the mixer please check if a audio mixer is installed "
                            "then retry."));
    EXPECT_TRUE(bench.form.visible());
    EXPECT_TRUE(panel.visible());
    EXPECT_EQ(bench.form.lstTracks.listCount(), 2);
}

// --- menu ----------------------------------------------------------------------------------

TEST_F(PlayerInApplication, IsShownAndUnloadedByTheMenu) {
    bench.application.start();
    bench.form.mnuCloseCD.click();
    EXPECT_FALSE(panel.loaded());
    EXPECT_FALSE(panel.visible());
    EXPECT_FALSE(bench.process.PlayerOpen);
    bench.form.setLeft(50_twips);
    bench.form.MnuOpenCD.click();
    EXPECT_TRUE(panel.visible());
    EXPECT_TRUE(bench.process.PlayerOpen);
    EXPECT_EQ(panel.left(), 50_twips + bench.form.width());
    // A panel that is already open is not loaded again.
    panel.setLeft(99_twips);
    bench.form.MnuOpenCD.click();
    EXPECT_EQ(panel.left(), 99_twips);
}

TEST_F(PlayerInApplication, IsSwitchedOffAndUnloadedByTheMenuWhileItPlays) {
    bench.application.start();
    switchOnAndPlay();
    bench.form.mnuCloseCD.click();
    EXPECT_FALSE(panel.loaded());
    EXPECT_TRUE(bench.idle());
    EXPECT_TRUE(playerOff());
    EXPECT_TRUE(discMuted());
}

// --- actions -------------------------------------------------------------------------------

TEST_F(PlayerInApplication, IsSwitchedOffAndMutedBeforeAnActionAndTheCaptureIsComplete) {
    bench.store.put("Settings", muteKey, "0");
    bench.application.start();
    switchOnAndPlay();
    bench.loop.advance(5s);
    EXPECT_FALSE(discMuted());
    bench.media.log.clear();
    bool mutedAtRecording = false;
    bench.media.onCommand = [&](std::string_view command) {
        if (command == "record capture overwrite") {
            mutedAtRecording = discMuted() && playerOff();
        }
    };
    bench.select("Track  1 - 00:01:00");
    bench.form.CmdSelectAction.click();
    EXPECT_TRUE(mutedAtRecording);
    EXPECT_THAT(std::vector(bench.media.log.begin(), bench.media.log.begin() + 2),
                ElementsAre("stop cd", "close cd"));
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 60 * 176400}));
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
    // The disc's line stays muted after the action, although the setting says not to mute it.
    bench.loop.advance(10s);
    EXPECT_TRUE(discMuted());
    EXPECT_TRUE(panel.loaded());
    EXPECT_EQ(panel.CD.text(), "OFF");
    // Switching the player on unmutes the line.
    switchOnAndPlay();
    EXPECT_FALSE(discMuted());
}

TEST_F(PlayerInApplication, AnotherDiscThatIsChosenIsReadByTheMainWindowAndByThePlayer) {
    bench.application.start();
    switchOnAndPlay();
    bench.disc.insert({5000, 6000, 7000});
    bench.application.readChosenDisc();
    EXPECT_EQ(bench.form.lstTracks.listCount(), 3);
    EXPECT_EQ(panel.CD.text(), "No CD");
    bench.loop.advance(1s);
    EXPECT_EQ(panel.CD.text(), "Cd Ready");
    EXPECT_EQ(panel.tracktime.caption(), "Track time: 00:05:00");
    EXPECT_TRUE(bench.boxes.shown.empty());

    // If the drive is empty, the main window leaves its device open and shows a message box, during
    // which the timers run.
    bench.disc.remove();
    bench.boxes.whileUp = [&](const test::ShownBox&) {
        bench.loop.advance(3s);
        EXPECT_EQ(panel.CD.text(), "No CD");
    };
    bench.application.readChosenDisc();
    EXPECT_EQ(bench.boxes.shown.size(), 1U);
    bench.disc.insert({8000, 9000});
    bench.loop.advance(1s);
    EXPECT_EQ(panel.CD.text(), "Cd Ready");
    EXPECT_EQ(panel.tracktime.caption(), "Track time: 00:08:00");
}

TEST_F(PlayerInApplication, MutesTheDiscBeforeAnActionEvenIfThePlayerIsAlreadyOff) {
    bench.store.put("Settings", muteKey, "0");
    bench.application.start();
    EXPECT_FALSE(discMuted());
    bench.select("WAV Files");
    bench.form.CmdSelectAction.click();
    EXPECT_TRUE(discMuted());
}

TEST_F(PlayerInApplication, DoesNotMuteTheDiscWhileItsPanelIsClosed) {
    bench.store.put("Settings", muteKey, "0");
    bench.application.start();
    panel.unload();
    panel.Option14.click();
    bench.select("Track  1 - 00:01:00");
    bench.form.CmdSelectAction.click();
    EXPECT_FALSE(discMuted());
    EXPECT_FALSE(panel.loaded());
    EXPECT_EQ(bench.disc.saved.size(), 1U);
}

TEST_F(PlayerInApplication, StaysOnIfTheCaptureIsStartedByCmdStart) {
    // Only CmdSelectAction switches the player off. The capture that cmdStart starts finds the disc
    // in use.
    bench.application.start();
    switchOnAndPlay();
    bench.select("Track  1 - 00:01:00");
    bench.form.cmdStart.click();
    EXPECT_FALSE(discMuted());
    EXPECT_TRUE(panel.Timer6.enabled());
}

TEST_F(PlayerInApplication, SavesARunningCaptureBeforeThePlayerIsSwitchedOn) {
    bench.application.start();
    bench.select("Track  1 - 00:01:00");
    bench.loop.after(10s, [&] { panel.OptCD.choose(); });
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 10 * 176400}));
    EXPECT_FALSE(bench.form.tmrRecord.enabled());
    EXPECT_TRUE(panel.Timer6.enabled());
    bench.loop.advance(1s);
    EXPECT_EQ(panel.CD.text(), "Cd Ready");
}

TEST_F(PlayerInApplication, SavesARunningCaptureBeforeThePanelIsClosed) {
    const std::function<void()> closes[] = {[&] { bench.form.mnuCloseCD.click(); },
                                            [&] { panel.Command1.click(); },
                                            [&] {
                                                panel.mnuUnloadCD.click();
                                            }};
    bench.application.start();
    for (const auto& close : closes) {
        panel.show();
        bench.disc.saved.clear();
        bench.select("Track  1 - 00:01:00");
        bench.loop.after(10s, close);
        bench.form.CmdSelectAction.click();
        EXPECT_THAT(bench.disc.saved,
                    ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 10 * 176400}));
        EXPECT_FALSE(panel.loaded());
        EXPECT_TRUE(bench.idle());
        EXPECT_TRUE(bench.commandsOpen());
    }
}

TEST_F(PlayerInApplication, PlaysTheTrackThatIsSelectedInTheTree) {
    ApplicationBench three({60000, 60000, 60000});
    three.application.start();
    TreeView& tree = three.form.TreeView1;
    three.select("Track  2 - 00:01:00");
    const NodeRef track = tree.selectedItem();
    run(tree.onMouseDown, MouseButtons{.left = true}, track);
    run(tree.onMouseUp, MouseButtons{.left = true}, track);
    three.windows.Form4.OptCD.choose();
    three.loop.advance(1s);
    three.media.log.clear();
    three.windows.Form4.play.click();
    EXPECT_EQ(three.media.log.front(), "play cd from 2");
}

// --- the end -------------------------------------------------------------------------------

TEST_F(PlayerInApplication, TheProgramsEndUnmutesTheDiscAndThePanelsUnloadMutesItAgain) {
    bench.application.start();
    EXPECT_TRUE(discMuted());
    std::vector<std::string> mutes;
    bench.mixer.onOperation = [&](const std::string& operation) {
        if (operation.starts_with("set 4101 20010002")) {
            mutes.push_back(operation);
        }
    };
    bench.media.log.clear();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.unload(); }));
    EXPECT_THAT(bench.media.log, ElementsAre("stop cd", "close capture", "close cd", //
                                             "stop cd", "close cd", "close all"));
    EXPECT_THAT(mutes,
                ElementsAre("set 4101 20010002 0", "set 4101 20010002 1", "set 4101 20010002 1"));
}

TEST_F(PlayerInApplication, TheProgramsEndLeavesTheDiscUnmutedIfThePanelIsClosed) {
    bench.application.start();
    panel.unload();
    EXPECT_TRUE(discMuted());
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.unload(); }));
    EXPECT_FALSE(discMuted());
    EXPECT_FALSE(panel.loaded());
}

TEST_F(PlayerInApplication, ExitUnloadsThePanelFirstAndLeavesTheDiscUnmuted) {
    bench.application.start();
    switchOnAndPlay();
    bench.media.log.clear();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.Command5.click(); }));
    EXPECT_THAT(bench.media.log, ElementsAre("stop cd", "close cd", "close all", //
                                             "stop cd", "close capture", "close cd"));
    EXPECT_FALSE(discMuted());
    EXPECT_TRUE(playerOff());
}

TEST_F(PlayerInApplication, TheProgramCanEndAtEveryYieldOfASwitchOff) {
    const std::pair<const char*, std::function<void(ApplicationBench&)>> jobs[] = {
        {"start of an action",
         [](ApplicationBench& run) {
             run.form.CmdSelectAction.click();
         }},
        {"off",
         [](ApplicationBench& run) {
             run.windows.Form4.optNoCD.choose();
         }},
        {"panel closed",
         [](ApplicationBench& run) {
             run.windows.Form4.unload();
         }},
    };
    const std::pair<const char*, std::function<void(ApplicationBench&)>> ends[] = {
        {"close",
         [](ApplicationBench& run) {
             run.form.unload();
         }},
        {"exit",
         [](ApplicationBench& run) {
             run.form.Command5.click();
         }},
        {"close within a close",
         [](ApplicationBench& run) {
             run.loop.atYield(3, [&run] { run.form.unload(); });
             run.form.unload();
         }},
    };
    for (const auto& [jobName, job] : jobs) {
        for (const auto& [endName, end] : ends) {
            for (int n = 1; n < 40; ++n) {
                SCOPED_TRACE(std::string(endName) + " at yield " + std::to_string(n) + " of " +
                             jobName);
                ApplicationBench run({60000, 60000});
                run.application.start();
                run.windows.Form4.OptCD.choose();
                run.loop.advance(1s);
                run.select("WAV Files");
                bool over = false;
                bool reached = false;
                run.loop.atYield(n, [&, &end = end] {
                    if (!over) {
                        reached = true;
                        end(run);
                    }
                });
                const bool ended = run.endsProgram([&, &job = job] { job(run); });
                over = true;
                EXPECT_EQ(ended, reached);
                if (!reached) {
                    break;
                }
                EXPECT_FALSE(run.disc.discOpen());
                EXPECT_FALSE(run.disc.recorderOpen());
                EXPECT_EQ(run.loop.yieldsAfterEnd(), 0);
            }
        }
    }
}

// --- the window's shape --------------------------------------------------------------------

TEST_F(PlayerInApplication, TheCubeChangesOnlyTheHeightAndOnlyUntilThePanelIsClosed) {
    bench.application.start();
    const Twips width = panel.width();
    panel.mnuCubeit.click();
    EXPECT_EQ(panel.height(), 3480_twips);
    EXPECT_EQ(panel.width(), width);
    bench.form.mnuCloseCD.click();
    bench.form.MnuOpenCD.click();
    EXPECT_EQ(panel.height(), bench.form.height());
}

} // namespace
} // namespace sonarith
