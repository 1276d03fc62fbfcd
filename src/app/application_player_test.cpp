// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the window of the CD player (the panel) within the whole application: at the start of the
// program, in the menus, at the end of the program, and after the menu entry "Show as Cube", which
// reduces the panel's height.
#include "app/application.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "app/application_player_fixture.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ApplicationBench;
using testing::ElementsAre;

// --- the start -----------------------------------------------------------------------------

TEST_F(PlayerInApplication, IsLoadedInvisiblyBetweenReadingTheSettingsAndReadingTheDisc) {
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
    // The load of the panel reads four levels, sets two of them to the highest value, and tries to
    // set a control that does not exist ("none"). Then the disc is muted.
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

TEST_F(PlayerInApplication, MutesTheDiscAtTheStartOnlyIfTheMuteSettingIs1) {
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
    // The step that lists the destination folder already shows the main window. The panel is shown
    // before the last yield.
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

TEST_F(PlayerInApplication, OnAMachineWithoutAMixerOneMessageIsShownAndTheProgramStarts) {
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

// --- the end -------------------------------------------------------------------------------

TEST_F(PlayerInApplication, EndingTheProgramUnmutesTheDiscAndUnloadingThePanelMutesItAgain) {
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

TEST_F(PlayerInApplication, TheDiscIsUnmutedAfterTheProgramsEndIfThePanelWasClosedBefore) {
    bench.application.start();
    panel.unload();
    EXPECT_TRUE(discMuted());
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.unload(); }));
    EXPECT_FALSE(discMuted());
    EXPECT_FALSE(panel.loaded());
}

TEST_F(PlayerInApplication, ExitUnloadsThePanelBeforeTheMainWindowSoTheDiscIsUnmutedInTheEnd) {
    bench.application.start();
    switchOnAndPlay();
    bench.media.log.clear();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.Command5.click(); }));
    EXPECT_THAT(bench.media.log, ElementsAre("stop cd", "close cd", "close all", //
                                             "stop cd", "close capture", "close cd"));
    EXPECT_FALSE(discMuted());
    EXPECT_TRUE(playerOff());
}

TEST_F(PlayerInApplication, TheProgramCanEndAtEveryYieldWhileThePlayerIsBeingSwitchedOff) {
    const std::pair<const char*, std::function<void(ApplicationBench&)>> jobs[] = {
        {"start of an action",
         [](ApplicationBench& run) {
             run.form.CmdSelectAction.click();
         }},
        {"switch-off of the player",
         [](ApplicationBench& run) {
             run.windows.Form4.optNoCD.choose();
         }},
        {"close of the panel",
         [](ApplicationBench& run) {
             run.windows.Form4.unload();
         }},
    };
    const std::pair<const char*, std::function<void(ApplicationBench&)>> ends[] = {
        {"close of the main window",
         [](ApplicationBench& run) {
             run.form.unload();
         }},
        {"click on Exit",
         [](ApplicationBench& run) {
             run.form.Command5.click();
         }},
        {"second close of the main window within the first",
         [](ApplicationBench& run) {
             run.loop.atYield(3, [&run] { run.form.unload(); });
             run.form.unload();
         }},
    };
    for (const auto& [jobName, job] : jobs) {
        for (const auto& [endName, end] : ends) {
            for (int n = 1;; ++n) {
                ASSERT_LT(n, 40);
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
                    EXPECT_GT(n, 1);
                    break;
                }
                EXPECT_FALSE(run.disc.discOpen());
                EXPECT_FALSE(run.disc.recorderOpen());
                EXPECT_EQ(run.loop.yieldsAfterEnd(), 0);
            }
        }
    }
}

// --- the panel's height --------------------------------------------------------------------

TEST_F(PlayerInApplication, ShowAsCubeChangesOnlyTheHeightAndOnlyUntilThePanelIsClosed) {
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
