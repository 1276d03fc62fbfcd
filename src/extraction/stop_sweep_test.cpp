// SPDX-License-Identifier: GPL-3.0-or-later
// Tests every kind of stop at these moments: at each yield of a capture or an inspection, between
// two ticks, and inside each message box.
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/extraction_bench.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ExtractionBench;

struct StopKind {
    std::string name;
    std::function<void(ExtractionBench&)> stop;
};

/// Command8 stops everything, Command2 is the button "Cancel", Command1 the stop for too little
/// disk space, and Command12 the button "Stop playing CD".
std::vector<StopKind> stopKinds() {
    return {
        {"Command8",
         [](ExtractionBench& bench) {
             bench.form.Command8.click();
         }},
        {"Command2",
         [](ExtractionBench& bench) {
             bench.form.Command2.click();
         }},
        {"Command1",
         [](ExtractionBench& bench) {
             bench.monitor.Command1_Click();
         }},
        // Loses the capture; the monitor's ticks continue until Command8 is clicked.
        {"Command12",
         [](ExtractionBench& bench) {
             bench.form.Command12.click();
             bench.loop.after(30s, [&bench] { bench.form.Command8.click(); });
         }},
        {"Command8 twice",
         [](ExtractionBench& bench) {
             bench.form.Command8.click();
             bench.form.Command8.click();
         }},
        {"Command8 within Command8",
         [](ExtractionBench& bench) {
             bench.loop.atYield(1, [&bench] { bench.form.Command8.click(); });
             bench.form.Command8.click();
         }},
    };
}

/// Stops a capture or an inspection (the job) at the `n`-th yield from now, if the job yields that
/// often.
class StopAtYield {
  public:
    StopAtYield(ExtractionBench& bench, const StopKind& kind, int n) {
        bench.loop.atYield(n, [this, &bench, &kind] {
            if (!over_) {
                reached_ = true;
                kind.stop(bench);
            }
        });
    }
    StopAtYield(const StopAtYield&) = delete;
    StopAtYield& operator=(const StopAtYield&) = delete;

    /// Call when the job has ended. Returns whether the yield was reached.
    bool ended() {
        over_ = true;
        return reached_;
    }

  private:
    bool over_ = false;
    bool reached_ = false;
};

/// Three short tracks, all queued; each takes two ticks.
class ShortRun : public ExtractionBench {
  public:
    ShortRun() : ExtractionBench({200, 200, 200}) {
        insertDisc();
        choose({1, 2, 3});
        select("Selected Tracks");
    }
    void expectIdleRegained() {
        EXPECT_TRUE(idle());
        EXPECT_TRUE(commandsOpen());
        EXPECT_FALSE(form.tmrWarning.enabled());
        // Each saved capture exists as a file with a name of its own.
        for (std::size_t i = 0; i < disc.saved.size(); ++i) {
            EXPECT_TRUE(files.fileExists(disc.saved[i].path));
            for (std::size_t j = 0; j < i; ++j) {
                EXPECT_NE(disc.saved[i].path, disc.saved[j].path);
            }
        }
        // Nothing starts again later, and the displays are reset within 40 s.
        loop.advance(40s);
        EXPECT_TRUE(idle());
        EXPECT_FALSE(form.Timer1.enabled());
        EXPECT_EQ(form.Label3.caption(), "Next action:");
        EXPECT_EQ(form.caption(), "Sonarith v2.0");
    }
    void expectNextRunWorks() {
        const bool stopsAfterFirst = state.cancelRequested;
        disc.saved.clear();
        boxes.whileUp = nullptr;
        media.forgetAnswers();
        form.cmdStart.click();
        EXPECT_EQ(disc.saved.size(), stopsAfterFirst ? 1U : 3U);
        EXPECT_TRUE(idle());
        EXPECT_TRUE(commandsOpen());
    }
};

TEST(EveryStop, AtEveryYieldOfACaptureReturnsToIdleAndTheNextCaptureWorks) {
    for (const StopKind& kind : stopKinds()) {
        bool reached = true;
        int n = 0;
        while (reached) {
            ++n;
            SCOPED_TRACE(kind.name + " at yield " + std::to_string(n));
            ASSERT_LT(n, 200);
            ShortRun bench;
            bench.form.tmrWarning.setEnabled(true);
            StopAtYield stop(bench, kind, n);
            bench.form.cmdStart.click();
            reached = stop.ended();
            bench.expectIdleRegained();
            if (!reached) {
                EXPECT_EQ(bench.disc.saved.size(), 3U);
            }
            bench.expectNextRunWorks();
        }
        // A run yields at its start, in each tick, and at the end of each track. While the run
        // waits for a tick, each event of the loop counts as one more yield. In total, a run with
        // three tracks of two ticks has more than 20 yields.
        EXPECT_GT(n, 20) << kind.name;
    }
}

TEST(EveryStop, BetweenTwoTicksReturnsToIdleAndOnlyCommand12LosesTheCapturedPart) {
    for (const StopKind& kind : stopKinds()) {
        for (auto moment = 50ms; moment < 600ms; moment += 100ms) {
            SCOPED_TRACE(kind.name + " after " + std::to_string(moment.count()) + " ms");
            ShortRun bench;
            bench.loop.after(moment, [&] { kind.stop(bench); });
            bench.form.cmdStart.click();
            bench.expectIdleRegained();
            // The finished tracks are saved, and the current track, too, unless the stop loses it
            // (Command12).
            const auto finished = static_cast<std::size_t>(moment / 200ms);
            EXPECT_EQ(bench.disc.saved.size(), finished + (kind.name == "Command12" ? 0 : 1));
            bench.expectNextRunWorks();
        }
    }
}

TEST(EveryStop, InsideEveryMessageBoxEndsTheCapture) {
    const char* failures[] = {"open new type waveaudio alias capture", "set capture samplespersec",
                              "open cdaudio alias cd", "play cd"};
    for (const StopKind& kind : stopKinds()) {
        for (const char* failing : failures) {
            for (const auto before : {0ms, 150ms}) {
                for (const auto afterStop : {0ms, 150ms, 1000ms}) {
                    SCOPED_TRACE(kind.name + " in the box of '" + failing + "'");
                    ShortRun bench;
                    bench.media.answerPrefix(failing, {.status = 300});
                    int boxes = 0;
                    bench.boxes.whileUp = [&](const test::ShownBox&) {
                        ++boxes;
                        bench.loop.advance(before);
                        kind.stop(bench);
                        bench.loop.advance(afterStop);
                    };
                    bench.form.cmdStart.click();
                    EXPECT_EQ(boxes, 1);
                    EXPECT_TRUE(bench.idle());
                    // After a failed disc command, startDevices() disables the window's commands;
                    // after a recorder failure, it does not. In the program, ActionStarter enables
                    // the commands again. This bench has no ActionStarter, so the test does it.
                    const bool discFailed = std::string(failing).find("cd") != std::string::npos;
                    EXPECT_EQ(bench.commandsOpen(), !discFailed);
                    bench.form.Enablem();
                    bench.loop.advance(40s);
                    bench.expectIdleRegained();
                    bench.expectNextRunWorks();
                }
            }
        }
    }
}

TEST(EveryStop, InsideTheMessageBoxAboutAnEmptySelectionLeavesEverythingIdle) {
    for (const StopKind& kind : stopKinds()) {
        SCOPED_TRACE(kind.name);
        ShortRun bench;
        bench.form.lstRecord.clear();
        int boxes = 0;
        bench.boxes.whileUp = [&](const test::ShownBox&) {
            ++boxes;
            kind.stop(bench);
        };
        bench.form.cmdStart.click();
        EXPECT_EQ(boxes, 1);
        bench.expectIdleRegained();
        bench.choose({1, 2, 3});
        bench.expectNextRunWorks();
    }
}

TEST(EveryStop, AtEveryYieldOfAnInspectionLeavesADiscThatCanBeCaptured) {
    for (const StopKind& kind : stopKinds()) {
        bool reached = true;
        int n = 0;
        while (reached) {
            ++n;
            SCOPED_TRACE(kind.name + " at yield " + std::to_string(n));
            ASSERT_LT(n, 20);
            ExtractionBench bench({200, 200, 200});
            StopAtYield stop(bench, kind, n);
            bench.inspection.InspectCD();
            reached = stop.ended();
            EXPECT_TRUE(bench.idle());
            EXPECT_TRUE(bench.commandsOpen());
            bench.loop.advance(40s);
            // A stop may have closed the disc during the first inspection; the second inspection
            // reads all values.
            bench.inspection.InspectCD();
            bench.choose({1, 2, 3});
            bench.select("Selected Tracks");
            bench.form.cmdStart.click();
            EXPECT_EQ(bench.disc.saved.size(), bench.state.cancelRequested ? 1U : 3U);
            EXPECT_TRUE(bench.idle());
        }
        EXPECT_GT(n, 1) << kind.name;
    }
}

TEST(EveryStop, InsideAMessageBoxOfAnInspectionLeavesNoCaptureRunningAndTheNextInspectionWorks) {
    for (const char* tracks : {"0", "1"}) {
        for (const StopKind& kind : stopKinds()) {
            SCOPED_TRACE(kind.name + " in the box for a track count of " + tracks);
            ExtractionBench bench({200, 200, 200});
            bench.media.answer("status cd number of tracks", {.reply = tracks});
            int boxes = 0;
            bench.boxes.whileUp = [&](const test::ShownBox&) {
                ++boxes;
                kind.stop(bench);
            };
            bench.inspection.InspectCD();
            EXPECT_EQ(boxes, 1);
            EXPECT_FALSE(bench.form.tmrRecord.enabled());
            EXPECT_FALSE(bench.disc.recorderOpen());
            EXPECT_TRUE(bench.commandsOpen());
            bench.loop.advance(40s);
            bench.boxes.whileUp = nullptr;
            bench.media.forgetAnswers();
            bench.inspection.InspectCD();
            EXPECT_EQ(bench.form.lstTracks.listCount(), 3);
        }
    }
}

TEST(EveryStop, InsideAMessageBoxOfALaterTrackEndsTheCapture) {
    // The box is shown inside the tick that ended the previous track.
    const char* failures[] = {"open new type waveaudio alias capture", "set capture samplespersec",
                              "open cdaudio alias cd", "play cd"};
    for (const StopKind& kind : stopKinds()) {
        for (const char* failing : failures) {
            for (const auto afterStop : {0ms, 150ms, 1000ms}) {
                SCOPED_TRACE(kind.name + " in the box of '" + failing + "'");
                ShortRun bench;
                bench.loop.after(150ms,
                                 [&] { bench.media.answerPrefix(failing, {.status = 300}); });
                int boxes = 0;
                bench.boxes.whileUp = [&](const test::ShownBox&) {
                    ++boxes;
                    bench.loop.advance(150ms); // one tick is due in this time
                    kind.stop(bench);
                    bench.loop.advance(afterStop);
                };
                bench.form.cmdStart.click();
                EXPECT_EQ(boxes, 1);
                EXPECT_TRUE(bench.idle());
                ASSERT_FALSE(bench.disc.saved.empty());
                EXPECT_EQ(bench.disc.saved.front().path, test::savedAs(1));
                bench.form.Enablem();
                bench.loop.advance(40s);
                bench.expectIdleRegained();
                bench.expectNextRunWorks();
            }
        }
    }
}

TEST(EveryStop, OfOneTrackWithoutAQueueReturnsToIdle) {
    for (const StopKind& kind : stopKinds()) {
        bool reached = true;
        for (int n = 1; reached; ++n) {
            SCOPED_TRACE(kind.name + " at yield " + std::to_string(n));
            ExtractionBench bench({200, 200});
            bench.insertDisc();
            bench.select("Track  2 - 00:00:00");
            StopAtYield stop(bench, kind, n);
            bench.form.cmdStart.click();
            reached = stop.ended();
            EXPECT_TRUE(reached || n > 3) << "the capture of a track must yield several times";
            EXPECT_TRUE(bench.idle());
            EXPECT_TRUE(bench.commandsOpen());
            EXPECT_LE(bench.disc.saved.size(), 1U);
        }
    }
}

TEST(ASecondStart, DuringACaptureCannotOpenTheRecorderAndEndsTheCapture) {
    ShortRun bench;
    bench.loop.after(150ms, [&] { bench.form.cmdStart.click(); });
    bench.form.cmdStart.click();
    EXPECT_THAT(bench.boxes.texts(), testing::ElementsAre("Error opening waveaudio"));
    EXPECT_TRUE(bench.idle());
}

} // namespace
} // namespace sonarith
