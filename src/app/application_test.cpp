// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/application.h"

#include <functional>
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

// --- wiring --------------------------------------------------------------------------------

TEST(Application, MakesTheProgramsFolderTheCurrentFolderBeforeTheWindowLoads) {
    ApplicationBench bench({1000, 1000});
    EXPECT_FALSE(bench.form.loaded());
    EXPECT_THAT(bench.files.log, IsEmpty());
    bench.application.start();
    // The first change is made by start(), the second by the window's load.
    EXPECT_THAT(std::vector(bench.files.log.begin(), bench.files.log.begin() + 2),
                ElementsAre("changeFolder c:\\sonarith", "changeFolder c:\\sonarith"));
}

TEST(Application, ShowsTheOtherWindowsByTheirCommandsAndUnloadsThePlayerByItsCommand) {
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

TEST(Application, TogglesEachBarByItsMenuEntry) {
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

TEST(Application, LaysOutTheWindowAgainWhenItsSizeChanges) {
    ApplicationBench bench({1000, 1000});
    bench.form.setInnerSize(8000_twips, 9000_twips);
    EXPECT_EQ(bench.form.TreeView1.width(), 8000_twips - gripWidth);
    EXPECT_EQ(bench.form.TreeView1.height(), 9000_twips);
}

TEST(Application, SelectsATrackByAClickAndQueuesItByADoubleClick) {
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

TEST(Extraction, ExtractsTheQueuedTracksInReverseOrderOfTheirChoice) {
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
    // The track that was chosen last is extracted first.
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(3), 3 * 176400},
                            SavedCapture{ApplicationBench::savedAs(1), 2 * 176400}));
    EXPECT_TRUE(bench.idle());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_TRUE(bench.form.Timer1.enabled());
    EXPECT_FALSE(bench.form.tmrWarning.enabled());
    bench.loop.advance(5s);
    EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
}

TEST(Extraction, EndsByItselfAfterASecondStartAtAnyYield) {
    for (int n = 1;; ++n) {
        SCOPED_TRACE("at yield " + std::to_string(n));
        ASSERT_LT(n, 1000);
        ApplicationBench bench({300, 300});
        bench.application.start();
        bench.select("Available Tracks");
        bool reached = false;
        bench.loop.atYield(n, [&] {
            reached = true;
            // The first start is for all available tracks, this second start for one of them.
            bench.select("Track  1 - 00:00:00");
            bench.form.CmdSelectAction.click();
        });
        // This click throws if the action waits for a condition that no later event can change.
        bench.form.CmdSelectAction.click();
        EXPECT_TRUE(bench.idle());
        EXPECT_TRUE(bench.commandsOpen());
        if (!reached) {
            EXPECT_GT(n, 10);
            break;
        }
    }
}

TEST(Extraction, ASecondStartWithNothingToDoStopsTheCapturesTimerButNotItsRecording) {
    // "Start " stays enabled during an action, and the end of each action stops the capture's
    // timer. A second action with nothing to do therefore leaves the recording of the first action
    // running without this timer, which monitors it.
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

TEST(Extraction, ReportsTheDriveAsInUseFromTheFirstTrackToTheEndOfTheLast) {
    ApplicationBench bench({300, 300});
    bench.application.start();
    EXPECT_FALSE(bench.application.driveInUse());
    std::vector<bool> inUse;
    bench.disc.onSave = [&](const SavedCapture&) {
        inUse.push_back(bench.application.driveInUse());
    };
    bench.select("Available Tracks");
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(inUse, ElementsAre(true, true));
    EXPECT_FALSE(bench.application.driveInUse());
}

TEST(Extraction, SendsNothingToTheMixerIfStartedByCmdStart) {
    // Only the button "Start " (CmdSelectAction) mutes the disc's mixer line. The hidden button
    // cmdStart, which this test clicks, starts the capture without this step.
    ApplicationBench bench({300, 300});
    bench.application.start();
    bench.select("Available Tracks");
    bench.mixer.log.clear();
    bench.form.cmdStart.click();
    EXPECT_EQ(bench.disc.saved.size(), 2U);
    EXPECT_THAT(bench.mixer.log, IsEmpty());
}

TEST(Extraction, EnablesTheFileMenuAndThePreferencesButtonAgainAfterADeviceFailure) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.media.answer("play cd", {.status = 300});
    bench.select("Available Tracks");
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.boxes.texts(), ElementsAre("Error playing cd!"));
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_TRUE(bench.idle());
}

TEST(Extraction, IsStoppedByTheMenuAndSavesTheCapturedPart) {
    ApplicationBench bench({60000, 60000});
    bench.application.start();
    bench.select("Available Tracks");
    bench.loop.after(1s, [&] { bench.form.mnuStop.click(); });
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.disc.saved, ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 176400}));
    EXPECT_TRUE(bench.idle());
}

} // namespace
} // namespace sonarith
