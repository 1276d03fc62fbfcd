// SPDX-License-Identifier: GPL-3.0-or-later
// Tests every way to end the program: during a capture, inside message boxes, during the start and
// during a close.
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
using testing::SizeIs;

struct EndKind {
    std::string name;
    std::function<void(ApplicationBench&)> end;
};

/// The ways in which the user can end the program. Command5 is the button "Exit", mnuEnd the entry
/// "Shutdown program" of the tray icon's menu. Command8 is a hidden button that stops the current
/// action.
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
        {"Shutdown",
         [](ApplicationBench& bench) {
             bench.windows.frmpopup.mnuEnd.click();
         }},
        {"Shutdown from the tray",
         [](ApplicationBench& bench) {
             bench.form.mnuMinimize.click();
             bench.windows.frmpopup.mnuEnd.click();
         }},
        {"Shutdown while closing",
         [](ApplicationBench& bench) {
             bench.loop.atYield(1, [&bench] { bench.windows.frmpopup.mnuEnd.click(); });
             bench.form.unload();
         }},
        {"close while stopping",
         [](ApplicationBench& bench) {
             bench.loop.atYield(1, [&bench] { bench.form.unload(); });
             bench.form.Command8.click();
             // If nothing is running, the stop does not yield, and the next line closes the window.
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

TEST(EveryEnd, AtEveryYieldOfACaptureEndsTheProgram) {
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
            // A running capture is saved.
            EXPECT_EQ(bench.disc.saved.size(), savedBefore + (wasCapturing ? 1U : 0U));
        }
    }
}

TEST(EveryEnd, BetweenTwoTicksDuringACaptureSavesTheCapturedPart) {
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

TEST(EveryEnd, InsideAMessageBoxOfACaptureEndsTheProgram) {
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
                // Nine yields: five in the load of Form1 itself, and two in each of its two
                // searches of the destination folder, which is empty.
                EXPECT_EQ(n, 10);
                break;
            }
            EXPECT_EQ(bench.loop.yieldsAfterEnd(), 0);
            EXPECT_FALSE(bench.disc.discOpen());
        }
    }
}

TEST(EveryEnd, InsideTheMessageBoxOfTheDiscInspectionEndsTheProgram) {
    for (const EndKind& kind : endKinds()) {
        SCOPED_TRACE(kind.name);
        // The inspection reads the disc's tracks. It shows a message box for a disc with one track.
        ApplicationBench bench({200});
        bench.boxes.whileUp = [&](const test::ShownBox&) {
            kind.end(bench);
        };
        EXPECT_TRUE(bench.endsProgram([&] { bench.application.start(); }));
        EXPECT_EQ(bench.boxes.shown.size(), 1U);
        // The inspection left the disc open; the end of the program closes it.
        EXPECT_FALSE(bench.disc.discOpen());
        EXPECT_EQ(bench.loop.yieldsAfterEnd(), 0);
    }
}

TEST(SecondClose, ReturnsAndLeavesTheEndOfTheProgramToTheFirstClose) {
    ApplicationBench bench({60000, 60000});
    bench.application.start();
    bench.select("Available Tracks");
    int closesReturned = 0;
    bench.loop.after(1s, [&] {
        bench.loop.after(100ms, [&] {
            // The first close has saved the capture and waits 300 ms before it adds the file to the
            // tree.
            bench.form.unload();
            ++closesReturned;
        });
        bench.form.unload();
    });
    const auto start = bench.loop.now();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
    EXPECT_EQ(closesReturned, 1);
    EXPECT_EQ(bench.loop.now() - start, 1300ms);
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 176400}));
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
    // The captured audio was saved before the close started to wait.
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 176400}));
}

/// Starts the program and selects a track of one minute; the caller then begins to capture the
/// track. 1 s later the window is closed. After another 100 ms, while the close waits before it
/// adds the captured file to the tree, "Start " is pressed and begins a second capture.
void startWithinAClose(ApplicationBench& bench) {
    bench.application.start();
    bench.select("Track  1 - 00:01:00");
    bench.loop.after(1s, [&bench] {
        bench.loop.after(100ms, [&bench] { bench.form.CmdSelectAction.click(); });
        bench.form.unload();
    });
}

TEST(CaptureStartedWithinAClose, IsStoppedAndSavedByTheNextClose) {
    ApplicationBench bench({60000, 60000});
    startWithinAClose(bench);
    bench.loop.after(3s, [&] { bench.form.unload(); });
    const auto start = bench.loop.now();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
    EXPECT_LT(bench.loop.now() - start, 4s);
    EXPECT_THAT(bench.disc.saved, SizeIs(2));
}

TEST(CaptureStartedWithinAClose, IsStoppedAndSavedByExit) {
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
