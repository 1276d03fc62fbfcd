// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the editing of the tree and the decoding of MP3 files through the whole application.
// Several ways to stop a decoding and to end the program are tested at every yield of a decoding. A
// yield is a call in which a running handler lets the event loop handle the events that are due.
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "app/application.h"
#include "support/application_bench.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ApplicationBench;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string folder = ApplicationBench::destination;

/// The started program with three MP3 files in the destination folder. The tree shows their names
/// without the folder. Decoding a file takes 1.2 s, a few ticks of the timer that watches a
/// decoding.
struct DecodingBench : ApplicationBench {
    DecodingBench() : ApplicationBench({1000, 1000}) {
        for (const char* name : {"c", "b", "a"}) {
            const std::string path = folder + "\\" + name + ".mp3";
            files.addFile(path, std::string(200, 'm'));
            disk.addFile(path);
        }
        mp3.duration = 1200ms;
        store.put("Settings", "show full path", "0");
        application.start();
        mp3.log.clear();
    }
    TreeView& tree = form.TreeView1;

    [[nodiscard]] NodeRef node(const std::string& text) const {
        for (int i = 1; i <= tree.count(); ++i) {
            if (tree.node(i)->text() == text) {
                return tree.node(i);
            }
        }
        return nullptr;
    }
    void press(const std::string& text, MouseButtons buttons = {.left = true}) {
        run(tree.onMouseDown, buttons, node(text));
    }
    void start(const std::string& text) {
        select(text);
        form.CmdSelectAction.click();
    }
    [[nodiscard]] bool decodingIdle() const {
        return !process.workerBusy && !windows.Form6.loaded() && !mp3.busy() &&
               !form.Command2.visible() && commandsOpen();
    }
    [[nodiscard]] static std::vector<std::string> lines(const ListBox& list) {
        std::vector<std::string> all;
        for (int i = 0; i < list.listCount(); ++i) {
            all.push_back(list.list(i));
        }
        return all;
    }
};

// --- wiring --------------------------------------------------------------------------------------

TEST(TreeEditing, FilesAreDraggedRenamedDeletedRemovedAndAdded) {
    DecodingBench bench;
    ASSERT_NE(bench.node("a.mp3"), nullptr);
    bench.press("a.mp3");
    run(bench.tree.onMouseMove, MouseButtons{.left = true}, bench.node("a.mp3"));
    run(bench.tree.onDragOver, bench.node("Selected MP3 Files"));
    EXPECT_THAT(bench.lines(bench.form.List4), ElementsAre(folder + "\\a.mp3"));
    run(bench.tree.onDragDrop, NodeRef());
    EXPECT_EQ(bench.node("a.mp3")->parent(), bench.node("Selected MP3 Files"));

    bench.press("b.mp3");
    ASSERT_EQ(bench.tree.editedNode(), bench.node("b.mp3"));
    bench.tree.finishLabelEdit("new.mp3");
    EXPECT_TRUE(bench.files.fileExists(folder + "\\new.mp3"));

    bench.press("new.mp3", {.right = true});
    run(bench.form.mnupopup.onOpen);
    EXPECT_TRUE(bench.form.mnuRemoveDelete.enabled());
    bench.form.mnuRemoveDelete.click();
    EXPECT_FALSE(bench.files.fileExists(folder + "\\new.mp3"));

    bench.press("c.mp3", {.right = true});
    bench.form.mnuFileRemove.click();
    EXPECT_EQ(bench.node("c.mp3"), nullptr);
    EXPECT_TRUE(bench.files.fileExists(folder + "\\c.mp3"));

    bench.files.addFile("d:\\x.wav", std::string(200, 'w'));
    bench.dialog.choices = {"d:\\x.wav"};
    bench.form.mnuOpenfile.click();
    EXPECT_THAT(bench.lines(bench.form.List1), ElementsAre("d:\\x.wav"));
}

TEST(Decoding, DecodesOneFileThenAllFilesThenTheSelectedFiles) {
    DecodingBench bench;
    bench.start("b.mp3");
    EXPECT_THAT(bench.mp3.finished, ElementsAre(folder + "\\b.wav"));
    EXPECT_TRUE(bench.decodingIdle());
    EXPECT_EQ(bench.form.Label33.caption(), "100 %");
    EXPECT_NE(bench.node("b.wav"), nullptr);
    bench.loop.advance(5s);
    EXPECT_EQ(bench.form.Label33.caption(), "");
    EXPECT_EQ(bench.form.caption(), "Sonarith v2.0");

    bench.mp3.finished.clear();
    bench.start("MP3 Files");
    EXPECT_EQ(bench.mp3.finished.size(), 3U);
    EXPECT_TRUE(bench.decodingIdle());

    bench.press("a.mp3");
    run(bench.tree.onMouseMove, MouseButtons{.left = true}, bench.node("a.mp3"));
    run(bench.tree.onDragOver, bench.node("Selected MP3 Files"));
    run(bench.tree.onDragDrop, NodeRef());
    bench.mp3.finished.clear();
    bench.start("Selected MP3 Files");
    EXPECT_THAT(bench.mp3.finished, ElementsAre(folder + "\\a.wav"));
    EXPECT_TRUE(bench.decodingIdle());
}

TEST(Decoding, ReportsAnEmptyListOfSelectedFilesAndReturnsToIdle) {
    DecodingBench bench;
    bench.start("Selected MP3 Files");
    EXPECT_THAT(bench.boxes.texts(), ElementsAre("No files selected"));
    EXPECT_TRUE(bench.decodingIdle());
}

// --- every stop ----------------------------------------------------------------------------------

struct Ending {
    std::string name;
    std::function<void(DecodingBench&)> run;
};

/// Command2 is the button "Cancel"; Command8 is a hidden button that stops the current action.
std::vector<Ending> stops() {
    return {
        {"Command2",
         [](DecodingBench& bench) {
             bench.form.Command2.click();
         }},
        {"Command8",
         [](DecodingBench& bench) {
             bench.form.Command8.click();
         }},
        {"the menu entry mnuStop",
         [](DecodingBench& bench) {
             bench.form.mnuStop.click();
         }},
        {"Command2 twice",
         [](DecodingBench& bench) {
             bench.form.Command2.click();
             bench.form.Command2.click();
         }},
        {"Command2 and a new start",
         [](DecodingBench& bench) {
             bench.form.Command2.click();
             bench.start("c.mp3");
         }},
    };
}

TEST(StopOfADecodingAction, AtEveryYieldReturnsToIdleAndTheNextActionWorks) {
    for (const Ending& stop : stops()) {
        bool reached = true;
        int n = 0;
        while (reached) {
            ++n;
            SCOPED_TRACE(stop.name + " at yield " + std::to_string(n));
            ASSERT_LT(n, 200);
            reached = false;
            DecodingBench bench;
            bool returned = false;
            bench.loop.atYield(n, [&] {
                if (!returned) {
                    reached = true;
                    stop.run(bench);
                }
            });
            bench.start("MP3 Files");
            returned = true;
            EXPECT_TRUE(bench.decodingIdle());
            bench.loop.advance(40s);
            EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
            EXPECT_TRUE(bench.decodingIdle());
            EXPECT_THAT(bench.boxes.shown, IsEmpty());
            bench.mp3.finished.clear();
            bench.start("MP3 Files");
            EXPECT_EQ(bench.mp3.finished.size(), 3U);
            EXPECT_TRUE(bench.decodingIdle());
        }
        EXPECT_GT(n, 20) << stop.name;
    }
}

TEST(StopOfADecodingAction, KeepsTheDecodedFileAndTheDecodedPartOfTheNextFile) {
    DecodingBench bench;
    bench.loop.after(2500ms, [&] { bench.form.Command2.click(); });
    bench.start("MP3 Files");
    const std::vector<std::string> order = bench.lines(bench.form.List2);
    const auto wavOf = [](std::string path) {
        return path.replace(path.size() - 3, 3, "wav");
    };
    EXPECT_EQ(bench.files.content(wavOf(order.at(0)))->size(), bench.mp3.wholeBytes);
    EXPECT_EQ(bench.files.content(wavOf(order.at(1)))->size(), bench.mp3.partialBytes);
    EXPECT_FALSE(bench.files.fileExists(wavOf(order.at(2))));
    EXPECT_THAT(bench.lines(bench.form.List1), ElementsAre(wavOf(order[1]), wavOf(order[0])));
}

// --- every end -----------------------------------------------------------------------------------

TEST(EndDuringADecodingAction, AtEveryYieldEndsTheProgram) {
    // Command5 is the button "Exit".
    const Ending ends[] = {
        {"close",
         [](DecodingBench& bench) {
             bench.form.unload();
         }},
        {"Command5",
         [](DecodingBench& bench) {
             bench.form.Command5.click();
         }},
        {"Shutdown from the tray",
         [](DecodingBench& bench) {
             bench.form.mnuMinimize.click();
             bench.windows.frmpopup.mnuEnd.click();
         }},
    };
    for (const Ending& end : ends) {
        bool reached = true;
        int n = 0;
        while (reached) {
            ++n;
            SCOPED_TRACE(end.name + " at yield " + std::to_string(n));
            ASSERT_LT(n, 200);
            reached = false;
            DecodingBench bench;
            bench.loop.atYield(n, [&] {
                reached = true;
                end.run(bench);
            });
            EXPECT_EQ(bench.endsProgram([&] { bench.start("MP3 Files"); }), reached);
            EXPECT_EQ(bench.loop.yieldsAfterEnd(), 0);
        }
        EXPECT_GT(n, 20) << end.name;
    }
}

TEST(EndDuringADecodingAction, IsPossibleByClosingTheWindowIfAFileIsMissing) {
    DecodingBench bench;
    for (const std::string& path : bench.lines(bench.form.List2)) {
        bench.files.removeFile(path).passOver();
    }
    // The file is missing, so no decoding starts, but the driver waits until a decoding ends. The
    // button "Cancel" (Command2) does not end this wait. Closing the window ends the program.
    bench.loop.after(1h, [&] { bench.form.Command2.click(); });
    bench.loop.after(2h, [&] { bench.form.unload(); });
    const auto start = bench.loop.now();
    EXPECT_TRUE(bench.endsProgram([&] { bench.start("MP3 Files"); }));
    EXPECT_EQ(bench.loop.now() - start, 2h);
    EXPECT_EQ(bench.loop.yieldsAfterEnd(), 0);
}

} // namespace
} // namespace sonarith
