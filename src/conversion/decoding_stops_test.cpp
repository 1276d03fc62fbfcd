// SPDX-License-Identifier: GPL-3.0-or-later
// Tests every kind of stop, and the end of the program, at every yield of a decoding.
#include <functional>
#include <string>
#include <vector>

#include "support/conversion_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// Five MP3 files; decoding each of them takes several ticks of the worker's timer.
struct Decodings : test::ConversionWorld {
    Decodings() {
        std::vector<std::string> paths;
        for (const char* name : {"a", "b", "c", "d", "e"}) {
            paths.push_back(std::string("c:\\mp3\\") + name + ".mp3");
            mp3File(paths.back());
        }
        fill(form.List2, paths);
        fill(form.List4, paths);
        mp3.duration = 1200ms;
    }
    void TestBody() override {}

    /// Does the two steps by which the main window's Cancel stops a decoding.
    void stop() {
        process.stopRequested = true;
        windows.Form6.unload();
    }
    [[nodiscard]] bool idle() const {
        return !process.workerBusy && !windows.Form6.loaded() && !mp3.busy() &&
               !form.Command2.visible();
    }
};

struct StopKind {
    std::string name;
    bool ends; ///< ends the whole decoding, not only the current file
    std::function<void(Decodings&)> stop;
};

const std::vector<StopKind>& stopKinds() {
    static const std::vector<StopKind> kinds = {
        {"stop request and unload of Form6", true,
         [](Decodings& run) {
             run.stop();
         }},
        {"stop request alone", true,
         [](Decodings& run) {
             run.process.stopRequested = true;
         }},
        {"unload of Form6 alone", false,
         [](Decodings& run) {
             run.windows.Form6.unload();
         }},
        {"click on Cancel in Form6", true,
         [](Decodings& run) {
             if (run.windows.Form6.loaded()) {
                 run.windows.Form6.Command1.click();
             } else {
                 run.stop();
             }
         }},
        {"stop request and unload of Form6, twice", true,
         [](Decodings& run) {
             run.stop();
             run.stop();
         }},
    };
    return kinds;
}

TEST(StopOfADecoding, AtAnyYieldLeavesTheProgramIdleAndTheNextDecodingWorks) {
    for (const char* group : {"MP3 Files", "Selected MP3 Files", "c:\\mp3\\b.mp3"}) {
        for (const StopKind& kind : stopKinds()) {
            bool reached = true;
            int n = 0;
            while (reached) {
                ++n;
                SCOPED_TRACE(std::string(group) + ": " + kind.name + " at yield " +
                             std::to_string(n));
                ASSERT_LT(n, 200);
                reached = false;
                Decodings run;
                bool returned = false;
                std::size_t whole = 0;
                run.loop.atYield(n, [&] {
                    if (!returned) {
                        reached = true;
                        kind.stop(run);
                        whole = run.mp3.finished.size();
                    }
                });
                run.decode(group);
                returned = true;
                EXPECT_TRUE(run.idle());
                EXPECT_TRUE(run.process.stopRequested);
                EXPECT_TRUE(run.form.Timer1.enabled());
                if (reached && kind.ends) {
                    // If a stop does not unload Form6, the decoding continues until the next tick,
                    // and may complete one more file.
                    EXPECT_LE(run.mp3.finished.size(), whole + 1);
                }
                // Every completed file is in the tree.
                for (const std::string& path : run.mp3.finished) {
                    EXPECT_NE(run.node(path), nullptr) << path;
                }
                run.mp3.finished.clear();
                run.process.stopRequested = false;
                run.decode("MP3 Files");
                EXPECT_EQ(run.mp3.finished.size(), 5U);
                EXPECT_TRUE(run.idle());
                run.loop.advance(1s);
                // Only the timer that clears the displays is left.
                EXPECT_EQ(run.loop.wakeupCount(), 1U);
            }
            EXPECT_GT(n, 5) << kind.name;
        }
    }
}

TEST(StopOfADecoding, DuringTheSecondOfFiveFilesKeepsTheFirstAndAPartOfTheSecond) {
    for (const StopKind& kind : stopKinds()) {
        if (!kind.ends) {
            continue;
        }
        SCOPED_TRACE(kind.name);
        Decodings run;
        // The first file is complete when the timer ticks at 1500 ms. Cmaddfile2, which adds it to
        // the tree, then waits 300 ms. So the second file is being decoded at 2500 ms.
        run.loop.after(2500ms, [&] { kind.stop(run); });
        run.decode("MP3 Files");
        EXPECT_THAT(run.mp3.finished, ElementsAre("c:\\music\\a.wav"));
        EXPECT_EQ(run.disk.content("c:\\music\\a.wav")->size(), run.mp3.wholeBytes);
        EXPECT_EQ(run.disk.content("c:\\music\\b.wav")->size(), run.mp3.partialBytes);
        EXPECT_FALSE(run.disk.fileExists("c:\\music\\c.wav"));
        EXPECT_THAT(run.lines(run.form.List1), ElementsAre("c:\\music\\b.wav", "c:\\music\\a.wav"));
        EXPECT_TRUE(run.idle());
    }
}

TEST(EndOfTheProgram, IsPossibleAtEveryYieldOfADecoding) {
    bool reached = true;
    int n = 0;
    while (reached) {
        ++n;
        SCOPED_TRACE(n);
        ASSERT_LT(n, 200);
        reached = false;
        Decodings run;
        run.loop.atYield(n, [&] {
            reached = true;
            run.loop.endProgram();
        });
        bool ended = false;
        try {
            run.decode("Selected MP3 Files");
        } catch (const test::ProgramEnded&) {
            ended = true;
        }
        EXPECT_EQ(ended, reached);
        EXPECT_EQ(run.loop.yieldsAfterEnd(), 0);
    }
    EXPECT_GT(n, 20);
}

} // namespace
} // namespace sonarith
