// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/application.h"

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
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string savedAs(int track) {
    return ApplicationBench::destination + "\\24106954-" + std::to_string(track) + ".wav";
}

// --- wiring --------------------------------------------------------------------------------

TEST(Application, MakesTheProgramsFolderTheCurrentOneBeforeTheWindowLoads) {
    ApplicationBench bench({1000, 1000});
    EXPECT_FALSE(bench.form.loaded());
    EXPECT_THAT(bench.files.log, IsEmpty());
    bench.application.start();
    EXPECT_THAT(std::vector(bench.files.log.begin(), bench.files.log.begin() + 2),
                ElementsAre("changeFolder c:\\sonarith", "changeFolder c:\\sonarith"));
}

TEST(Application, ShowsAndUnloadsTheOtherWindowsByTheirCommands) {
    ApplicationBench bench({1000, 1000});
    Form1& form = bench.form;
    Windows& windows = bench.windows;
    struct Opening {
        std::function<void()> command;
        Form* window;
    };
    const Opening openings[] = {
        {[&] { form.C5555555.click(); }, &windows.frmPlayList},
        {[&] { form.mnuPlaylist.click(); }, &windows.frmPlayList},
        {[&] { form.C777.click(); }, &windows.frmsearch},
        {[&] { form.mnuSearch.click(); }, &windows.frmsearch},
        {[&] { form.Copt.click(); }, &windows.FrmPrefs},
        {[&] { form.mnuGetMainPrefs.click(); }, &windows.FrmPrefs},
        {[&] { form.MnuOpenCD.click(); }, &windows.Form4},
    };
    for (const Opening& opening : openings) {
        SCOPED_TRACE(opening.window->name());
        opening.window->unload();
        opening.command();
        EXPECT_TRUE(opening.window->loaded());
        EXPECT_TRUE(opening.window->visible());
    }
    form.mnuCloseCD.click();
    EXPECT_FALSE(windows.Form4.loaded());
}

TEST(Application, ShowsTheAboutBox) {
    ApplicationBench bench({1000, 1000});
    bench.form.mnuAbout.click();
    EXPECT_EQ(bench.shell.aboutBoxes, 1);
}

TEST(Application, TogglesTheBarsByTheirEntries) {
    ApplicationBench bench({1000, 1000});
    struct Toggle {
        MenuItem* entry;
        PictureBox* bar;
    };
    for (const Toggle& toggle : {Toggle{&bench.form.mnuToolbar, &bench.form.Picture3},
                                 Toggle{&bench.form.mnuCDbar, &bench.form.Picture4},
                                 Toggle{&bench.form.mnuActivityBar, &bench.form.Picture2},
                                 Toggle{&bench.form.mnuStatusbar, &bench.form.Picture1}}) {
        const bool before = toggle.bar->visible();
        toggle.entry->click();
        EXPECT_EQ(toggle.bar->visible(), !before) << toggle.entry->name();
    }
}

TEST(Application, LaysTheWindowOutAnewWhenItsSizeChanges) {
    ApplicationBench bench({1000, 1000});
    bench.form.setInnerSize(8000, 9000);
    EXPECT_EQ(bench.form.TreeView1.width(), 8000 - gripWidth);
    EXPECT_EQ(bench.form.TreeView1.height(), 9000);
}

TEST(Application, LetsTheTreeSelectAndMove) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    TreeView& tree = bench.form.TreeView1;
    bench.select("Track  2 - 00:00:01");
    const NodeRef track = tree.selectedItem();
    run(tree.onMouseDown, MouseButtons{.left = true}, track);
    EXPECT_FALSE(tree.editedNode());
    run(tree.onMouseUp, MouseButtons{.left = true}, track);
    EXPECT_EQ(bench.form.Label3.caption(), "Next Action:  Process  Track  2 - 00:00:01");
    EXPECT_EQ(bench.process.currentTrack, 2);
    run(tree.onDoubleClick);
    EXPECT_EQ(bench.form.lstRecord.list(0), "Track  2 - 00:00:01");
}

// --- extraction from end to end ------------------------------------------------------------

TEST(Extraction, TurnsAChosenQueueIntoFiles) {
    ApplicationBench bench({2000, 1000, 3000});
    bench.application.start();
    bench.media.log.clear();
    TreeView& tree = bench.form.TreeView1;
    for (const char* track : {"Track  1 - 00:00:02", "Track  3 - 00:00:03"}) {
        bench.select(track);
        run(tree.onMouseDown, MouseButtons{.left = true}, NodeRef(tree.selectedItem()));
        run(tree.onDoubleClick);
    }
    bench.select("Selected Tracks");
    bench.form.CmdSelectAction.click();
    // The last one chosen is extracted first.
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(3), 3 * 176400},
                                              SavedCapture{savedAs(1), 2 * 176400}));
    EXPECT_TRUE(bench.idle());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_TRUE(bench.form.Timer1.enabled());
    EXPECT_FALSE(bench.form.tmrWarning.enabled());
    bench.loop.advance(5s);
    EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
}

TEST(Extraction, ASecondStartAtAnyYieldOfARunEndsByItselfToo) {
    for (int n = 1;; ++n) {
        SCOPED_TRACE("at yield " + std::to_string(n));
        ASSERT_LT(n, 1000);
        ApplicationBench bench({300, 300});
        bench.application.start();
        bench.select("Available Tracks");
        bool reached = false;
        bench.loop.atYield(n, [&] {
            reached = true;
            // One track: the queue is at work already.
            bench.select("Track  1 - 00:00:00");
            bench.form.CmdSelectAction.click();
        });
        // A wait that no tick ends would throw here.
        bench.form.CmdSelectAction.click();
        EXPECT_TRUE(bench.idle());
        EXPECT_TRUE(bench.commandsOpen());
        if (!reached) {
            break;
        }
    }
}

TEST(Extraction, ASecondStartWithNothingToDoStopsTheWatchAndNotTheDevices) {
    // "Start " stays open during an action, and the end of each action stops the capture's timer. A
    // second action that has nothing to do thus leaves the first one's recording running,
    // unwatched.
    ApplicationBench bench({60000, 60000});
    bench.application.start();
    bench.select("Track  1 - 00:01:00");
    bench.loop.after(1s, [&] {
        EXPECT_TRUE(bench.form.CmdSelectAction.enabled());
        bench.select("WAV Files");
        bench.form.CmdSelectAction.click();
    });
    bench.form.CmdSelectAction.click();
    EXPECT_FALSE(bench.form.tmrRecord.enabled());
    EXPECT_TRUE(bench.disc.recording());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_THAT(bench.disc.saved, IsEmpty());
}

TEST(Extraction, OpensTheCommandsAgainAfterADeviceFailure) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.media.answer("play cd", {.status = 300});
    bench.select("Available Tracks");
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.boxes.texts(), ElementsAre("Error playing cd!"));
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_TRUE(bench.idle());
}

TEST(Extraction, IsStoppedByTheMenu) {
    ApplicationBench bench({60000, 60000});
    bench.application.start();
    bench.select("Available Tracks");
    bench.loop.after(1s, [&] { bench.form.mnuStop.click(); });
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(1), 176400}));
    EXPECT_TRUE(bench.idle());
}

// --- every end in every state --------------------------------------------------------------

struct EndKind {
    std::string name;
    std::function<void(ApplicationBench&)> end;
};

/// All of them end the program.
std::vector<EndKind> endKinds() {
    return {
        {"close",
         [](ApplicationBench& bench) {
             bench.form.unload();
         }},
        {"Command5",
         [](ApplicationBench& bench) {
             bench.form.Command5.click();
         }},
        {"close twice",
         [](ApplicationBench& bench) {
             bench.loop.atYield(1, [&bench] { bench.form.unload(); });
             bench.form.unload();
         }},
        {"Command5 while closing",
         [](ApplicationBench& bench) {
             bench.loop.atYield(1, [&bench] { bench.form.Command5.click(); });
             bench.form.unload();
         }},
        {"close while stopping",
         [](ApplicationBench& bench) {
             bench.loop.atYield(1, [&bench] { bench.form.unload(); });
             bench.form.Command8.click();
             // With nothing running the stop does not yield.
             bench.form.unload();
         }},
    };
}

void expectCleanEnd(ApplicationBench& bench) {
    EXPECT_TRUE(bench.loop.ended());
    EXPECT_EQ(bench.loop.yieldsAfterEnd(), 0);
    EXPECT_TRUE(bench.process.stopRequested);
    EXPECT_FALSE(bench.disc.discOpen());
    EXPECT_FALSE(bench.disc.recorderOpen());
    EXPECT_FALSE(bench.form.tmrRecord.enabled());
    for (const SavedCapture& saved : bench.disc.saved) {
        EXPECT_TRUE(bench.files.fileExists(saved.path));
    }
}

TEST(EveryEnd, AtEveryYieldOfARunEndsTheProgramForGood) {
    for (const EndKind& kind : endKinds()) {
        for (int n = 1;; ++n) {
            SCOPED_TRACE(kind.name + " at yield " + std::to_string(n));
            ASSERT_LT(n, 200);
            ApplicationBench bench({200, 200});
            bench.application.start();
            bench.select("Available Tracks");
            bool reached = false;
            bool wasCapturing = false;
            std::size_t savedBefore = 0;
            bench.loop.atYield(n, [&] {
                reached = true;
                wasCapturing = bench.form.tmrRecord.enabled() && bench.disc.recording();
                savedBefore = bench.disc.saved.size();
                kind.end(bench);
            });
            const bool ended = bench.endsProgram([&] { bench.form.CmdSelectAction.click(); });
            EXPECT_EQ(ended, reached);
            if (!reached) {
                EXPECT_GT(n, 10);
                break;
            }
            expectCleanEnd(bench);
            // A capture that ran is kept.
            EXPECT_EQ(bench.disc.saved.size(), savedBefore + (wasCapturing ? 1U : 0U));
        }
    }
}

TEST(EveryEnd, BetweenTwoTicksKeepsWhatWasCaptured) {
    for (const EndKind& kind : endKinds()) {
        for (auto moment = 50ms; moment < 400ms; moment += 100ms) {
            SCOPED_TRACE(kind.name + " after " + std::to_string(moment.count()) + " ms");
            ApplicationBench bench({200, 200});
            bench.application.start();
            bench.select("Available Tracks");
            bench.loop.after(moment, [&] { kind.end(bench); });
            EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
            expectCleanEnd(bench);
            EXPECT_EQ(bench.disc.saved.size(), static_cast<std::size_t>(moment / 200ms) + 1);
        }
    }
}

TEST(EveryEnd, InsideEveryMessageBoxEndsTheProgram) {
    const char* failures[] = {"open new type waveaudio alias capture", "set capture samplespersec",
                              "open cdaudio alias cd", "play cd"};
    for (const EndKind& kind : endKinds()) {
        for (const char* failing : failures) {
            for (const auto before : {0ms, 150ms}) {
                SCOPED_TRACE(kind.name + " in the box of '" + failing + "'");
                ApplicationBench bench({200, 200});
                bench.application.start();
                bench.select("Available Tracks");
                bench.media.answerPrefix(failing, {.status = 300});
                bench.boxes.whileUp = [&](const test::ShownBox&) {
                    bench.loop.advance(before);
                    kind.end(bench);
                };
                EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
                EXPECT_EQ(bench.boxes.shown.size(), 1U);
                expectCleanEnd(bench);
            }
        }
    }
}

TEST(EveryEnd, AtEveryYieldOfTheStartEndsTheProgram) {
    for (const EndKind& kind : endKinds()) {
        for (int n = 1;; ++n) {
            SCOPED_TRACE(kind.name + " at yield " + std::to_string(n));
            ASSERT_LT(n, 50);
            ApplicationBench bench({200, 200});
            bool reached = false;
            bench.loop.atYield(n, [&] {
                reached = true;
                kind.end(bench);
            });
            const bool ended = bench.endsProgram([&] { bench.application.start(); });
            EXPECT_EQ(ended, reached);
            if (!reached) {
                // Five yields of the load, and two of each search of the empty folder.
                EXPECT_EQ(n, 10);
                break;
            }
            EXPECT_EQ(bench.loop.yieldsAfterEnd(), 0);
            EXPECT_FALSE(bench.disc.discOpen());
        }
    }
}

TEST(EveryEnd, InsideTheInspectionsMessageBoxEndsTheProgram) {
    for (const EndKind& kind : endKinds()) {
        SCOPED_TRACE(kind.name);
        ApplicationBench bench({200});
        bench.boxes.whileUp = [&](const test::ShownBox&) {
            kind.end(bench);
        };
        EXPECT_TRUE(bench.endsProgram([&] { bench.application.start(); }));
        EXPECT_EQ(bench.boxes.shown.size(), 1U);
        // The disc that was left open is closed on the way out.
        EXPECT_FALSE(bench.disc.discOpen());
        EXPECT_EQ(bench.loop.yieldsAfterEnd(), 0);
    }
}

TEST(SecondClose, WaitsForTheFirstToEnd) {
    ApplicationBench bench({60000, 60000});
    bench.application.start();
    bench.select("Available Tracks");
    int closesReturned = 0;
    bench.loop.after(1s, [&] {
        bench.loop.after(100ms, [&] {
            // The first close is saving the capture.
            bench.form.unload();
            ++closesReturned;
        });
        bench.form.unload();
    });
    const auto start = bench.loop.now();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
    EXPECT_EQ(closesReturned, 1);
    EXPECT_EQ(bench.loop.now() - start, 1300ms);
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(1), 176400}));
}

TEST(ExitDuringAClose, EndsTheProgramAtOnce) {
    ApplicationBench bench({60000, 60000});
    bench.application.start();
    bench.select("Available Tracks");
    bench.loop.after(1s, [&] {
        bench.loop.after(100ms, [&] { bench.form.Command5.click(); });
        bench.form.unload();
    });
    const auto start = bench.loop.now();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
    EXPECT_EQ(bench.loop.now() - start, 1100ms);
    // What was captured had been saved before the close began to wait.
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{savedAs(1), 176400}));
}

/// The program with a capture of a minute under way, whose window is closed; while the close waits
/// for what was captured to enter the tree, "Start " is pressed again.
void startWithinAClose(ApplicationBench& bench) {
    bench.application.start();
    bench.select("Track  1 - 00:01:00");
    bench.loop.after(1s, [&bench] {
        bench.loop.after(100ms, [&bench] { bench.form.CmdSelectAction.click(); });
        bench.form.unload();
    });
}

TEST(StartWithinAClose, IsStoppedAndSavedByTheNextClose) {
    ApplicationBench bench({60000, 60000});
    startWithinAClose(bench);
    bench.loop.after(3s, [&] { bench.form.unload(); });
    const auto start = bench.loop.now();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
    EXPECT_LT(bench.loop.now() - start, 4s);
    EXPECT_THAT(bench.disc.saved, SizeIs(2));
}

TEST(StartWithinAClose, IsSavedByExitToo) {
    ApplicationBench bench({60000, 60000});
    startWithinAClose(bench);
    bench.loop.after(3s, [&] { bench.form.Command5.click(); });
    const auto start = bench.loop.now();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
    EXPECT_LT(bench.loop.now() - start, 4s);
    EXPECT_THAT(bench.disc.saved, SizeIs(2));
}

} // namespace
} // namespace sonarith
