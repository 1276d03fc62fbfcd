// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/start_action.h"

#include <functional>

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string t1 = "Track  1 - 00:03:05";

struct StartActionTest : test::WorkTreeWorld {
    ActionStarter& starter = jobs.starter;
    std::vector<std::string> log;

    StartActionTest() {
        disc({t1});
        tree.showfiles();
        process.stopRequested = true;
        form.Label5.setVisible(true);
        const auto note = [this](const std::string& what) {
            return [this, what] {
                log.push_back(what);
            };
        };
        windows.Form4.Command6.onClick = note("player off");
        form.mnuMinimize.onClick = note("minimize");
        form.cmdStart.onClick = note("cmdStart");
        form.CmdDecoder.onClick = note("CmdDecoder");
        windows.frmpopup.onUnload = note("tray removed");
    }
    void select(const std::string& text) {
        NodeRef chosen = node(text);
        if (!chosen) {
            chosen = addItem(view, node("WAV Files"), "p " + text, text).value();
        }
        view.setSelectedItem(chosen).passOver();
    }
    std::vector<std::string> start(const std::string& text) {
        log.clear();
        select(text);
        starter.CmdSelectAction_Click();
        return log;
    }
};

TEST_F(StartActionTest, TheTextOfTheSelectedNodeDeterminesTheAction) {
    EXPECT_THAT(start("Selected Tracks"), ElementsAre("cmdStart"));
    EXPECT_THAT(start("Available Tracks"), ElementsAre("cmdStart"));
    EXPECT_THAT(start(t1), ElementsAre("cmdStart"));
    EXPECT_THAT(start("c:\\music\\a.mp3"), ElementsAre("CmdDecoder"));
    EXPECT_THAT(start("Selected MP3 Files"), ElementsAre("CmdDecoder"));
    EXPECT_THAT(start("MP3 Files"), ElementsAre("CmdDecoder"));
}

TEST_F(StartActionTest, ANodeWhoseTextBelongsToNoActionStartsNothing) {
    for (const char* text : {"c:\\music\\a.wav", "WAV Files", "CD Tracks", "WAV Files Folder",
                             "MP3 Files Folder", "a.MP3", "amp3", "track 1.wav"}) {
        EXPECT_THAT(start(text), IsEmpty()) << text;
    }
}

TEST_F(StartActionTest, AFileNamedLikeATrackCountsAsATrack) {
    EXPECT_THAT(start("Track 1.mp3"), ElementsAre("cmdStart"));
    EXPECT_THAT(start("Trackless.wav"), ElementsAre("cmdStart"));
}

TEST_F(StartActionTest, EvenWithNothingSelectedTheWindowReturnsToIdle) {
    form.Disablem();
    form.hide();
    starter.CmdSelectAction_Click();
    EXPECT_THAT(log, IsEmpty());
    EXPECT_TRUE(form.Timer1.enabled());
    EXPECT_TRUE(form.mnuFile.enabled());
    EXPECT_TRUE(form.visible());
}

TEST_F(StartActionTest, SwitchesThePlayerOffOnlyIfItIsOpen) {
    EXPECT_THAT(start("WAV Files"), IsEmpty());
    process.PlayerOpen = true;
    EXPECT_THAT(start("WAV Files"), ElementsAre("player off"));
}

TEST_F(StartActionTest, RunsItsStepsInOrder) {
    process.PlayerOpen = true;
    process.settings.hdWarning = 1;
    process.settings.minimizeOnStart = 1;
    const auto look = [this](const std::string& step) {
        log.push_back(step + (form.Label5.visible() ? " label" : "") +
                      (form.tmrWarning.enabled() ? " tmrWarning" : "") +
                      (process.stopRequested ? " stop" : "") +
                      (form.Timer1.enabled() ? " Timer1" : ""));
    };
    windows.Form4.Command6.onClick = [&] {
        look("player off");
    };
    form.mnuMinimize.onClick = [&] {
        look("minimize");
        windows.frmpopup.load();
        form.hide();
    };
    form.cmdStart.onClick = [&] {
        look("action");
        form.tmrRecord.setEnabled(true);
        form.Disablem();
        EXPECT_FALSE(form.visible());
    };
    windows.frmpopup.onUnload = [&] {
        look("tray removed");
        EXPECT_FALSE(form.tmrRecord.enabled());
        EXPECT_FALSE(form.mnuFile.enabled());
        EXPECT_FALSE(form.visible());
    };
    const Connection showing = form.showRequested.connect(
        [&] { look(form.mnuFile.enabled() ? "shown, menu enabled" : "shown, menu disabled"); });
    EXPECT_THAT(start("Selected Tracks"),
                ElementsAre("player off label stop", "minimize tmrWarning", "action tmrWarning",
                            "tray removed Timer1", "shown, menu enabled Timer1"));
    EXPECT_TRUE(form.visible());
    EXPECT_TRUE(form.mnuFile.enabled());
    EXPECT_FALSE(windows.frmpopup.loaded());
}

TEST_F(StartActionTest, TheTimerOfTheDiskGuardRunsDuringTheActionIfTheWarningIsOn) {
    bool guarded = true;
    form.cmdStart.onClick = [&] {
        guarded = form.tmrWarning.enabled();
    };
    start(t1);
    EXPECT_FALSE(guarded);
    // Any value but 1 means off.
    process.settings.hdWarning = 2;
    start(t1);
    EXPECT_FALSE(guarded);
    process.settings.hdWarning = 1;
    start(t1);
    EXPECT_TRUE(guarded);
    EXPECT_FALSE(form.tmrWarning.enabled());
}

TEST_F(StartActionTest, MinimizesTheWindowOnlyIfMinimizeOnStartIsOne) {
    int minimized = 0;
    form.mnuMinimize.onClick = [&] {
        ++minimized;
    };
    for (const int value : {0, 2, -1}) {
        process.settings.minimizeOnStart = value;
        start(t1);
        EXPECT_EQ(minimized, 0) << value;
    }
    process.settings.minimizeOnStart = 1;
    start(t1);
    EXPECT_EQ(minimized, 1);
}

TEST_F(StartActionTest, ForAWavNodeNoActionStartsButTheWindowIsMinimizedAndRestored) {
    process.settings.minimizeOnStart = 1;
    form.mnuMinimize.onClick = [this] {
        log.push_back("minimize");
        windows.frmpopup.load();
        form.hide();
    };
    EXPECT_THAT(start("c:\\music\\a.wav"), ElementsAre("minimize", "tray removed"));
    EXPECT_TRUE(form.visible());
    EXPECT_TRUE(form.Timer1.enabled());
}

TEST_F(StartActionTest, NeitherLoadsNorUnloadsTheTrayFormIfItIsNotLoaded) {
    bool loaded = false;
    windows.frmpopup.onLoad = [&] {
        loaded = true;
    };
    EXPECT_THAT(start("WAV Files"), IsEmpty());
    EXPECT_FALSE(loaded);
}

TEST_F(StartActionTest, ReturnsToIdleOnlyAfterTheEndOfAStoppedAction) {
    form.tmrRecord.setEnabled(true);
    form.cmdStart.onClick = [this] {
        loop.after(10s, [this] { process.stopRequested = true; });
        loop.waitWhile([this] { return !process.stopRequested; });
        EXPECT_FALSE(form.Timer1.enabled());
        EXPECT_TRUE(form.tmrRecord.enabled());
    };
    start("Selected Tracks");
    EXPECT_TRUE(form.Timer1.enabled());
    EXPECT_FALSE(form.tmrRecord.enabled());
    EXPECT_TRUE(process.stopRequested);
}

TEST_F(StartActionTest, ASelectionDuringMinimizingDeterminesTheAction) {
    process.settings.minimizeOnStart = 1;
    form.mnuMinimize.onClick = [this] {
        select("MP3 Files");
    };
    EXPECT_THAT(start("Selected Tracks"), ElementsAre("CmdDecoder"));
}

TEST_F(StartActionTest, NoFurtherStepRunsAfterAnEndOfTheProgramInsideTheAction) {
    form.Timer1.setEnabled(false);
    form.cmdStart.onClick = [this] {
        loop.endProgram();
    };
    select("Selected Tracks");
    EXPECT_THROW(starter.CmdSelectAction_Click(), test::ProgramEnded);
    EXPECT_FALSE(form.Timer1.enabled());
    EXPECT_EQ(loop.yieldsAfterEnd(), 0);
}

TEST_F(StartActionTest, TheTreeAcceptsDoubleClicksDuringAnAction) {
    form.cmdStart.onClick = [this] {
        form.Disablem();
        loop.after(1s, [this] { doubleClick(t1); });
        loop.waitFor(2s);
    };
    start("Available Tracks");
    EXPECT_THAT(lines(form.lstRecord), ElementsAre(t1));
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(t1));
}

/// Adds an MP3 file to the tree and lets mnuStart2, an entry of the tree's popup menu, start the
/// action.
struct ActionAndTreeTest : StartActionTest {
    const std::string mp3 = "c:\\music\\a.mp3";

    ActionAndTreeTest() {
        disk.addFile(mp3, "a");
        finder.files[destination]["mp3"] = {mp3};
        view.clear();
        tree.showfiles();
        form.mnuStart2.onClick = [this] {
            starter.CmdSelectAction_Click();
        };
    }
    /// Runs `event` during an action, a second after its start.
    void during(const std::function<void()>& event) {
        form.cmdStart.onClick = [this, event] {
            form.Disablem();
            loop.after(1s, event);
            loop.waitFor(2s);
        };
        start("Available Tracks");
    }
};

TEST_F(ActionAndTreeTest,
       AfterALeftClickThePopupOfAnotherNodeStartsTheActionForTheLeftClickedNode) {
    click(t1);
    press(node(mp3), {.right = true});
    run(form.mnupopup.onOpen);
    EXPECT_TRUE(form.mnuStart2.enabled());
    // The mouse button is released before an entry is chosen. The release selects the node that the
    // left click has highlighted; this is intended.
    release(node(mp3), {.right = true});
    EXPECT_EQ(form.Label3.caption(), "Next Action:  Process  " + mp3);
    EXPECT_EQ(view.selectedItem(), node(t1));
    form.mnuStart2.click();
    EXPECT_THAT(log, ElementsAre("cmdStart"));
    // The entries that remove a file refer to the node on which the popup was opened.
    form.mnuRemoveDelete.click();
    EXPECT_FALSE(disk.fileExists(mp3));
    EXPECT_NE(node(t1), nullptr);
}

TEST_F(ActionAndTreeTest,
       WithoutAnEarlierLeftClickThePopupStartsTheActionForTheNodeOnWhichItWasOpened) {
    press(node(mp3), {.right = true});
    run(form.mnupopup.onOpen);
    release(node(mp3), {.right = true});
    form.mnuStart2.click();
    EXPECT_THAT(log, ElementsAre("CmdDecoder"));
}

TEST_F(ActionAndTreeTest, AFileCanBeRenamedDuringAnAction) {
    process.settings.showFullPath = 0;
    view.clear();
    tree.showfiles();
    during([this] {
        press(node("a.mp3"));
        view.finishLabelEdit("b.mp3");
        release(node("b.mp3"));
    });
    EXPECT_TRUE(disk.fileExists("c:\\music\\b.mp3"));
    EXPECT_FALSE(disk.fileExists(mp3));
    EXPECT_THAT(lines(form.List2), ElementsAre("c:\\music\\b.mp3"));
    EXPECT_THAT(childrenOf("MP3 Files"), ElementsAre("b.mp3"));
}

TEST_F(ActionAndTreeTest, NodesCanBeDraggedDuringAnActionButThePopupStaysClosed) {
    bool opened = false;
    const Connection popups = form.popupRequested.connect([&](const MenuItem&) { opened = true; });
    during([this] {
        beginDrag(mp3);
        dragOver("Selected MP3 Files");
        drop();
        beginDrag(t1);
        dragOver("Selected Tracks");
        drop();
        press(node(mp3), {.right = true});
    });
    EXPECT_THAT(lines(form.List4), ElementsAre(mp3));
    EXPECT_THAT(childrenOf("Selected MP3 Files"), ElementsAre(mp3));
    EXPECT_THAT(lines(form.lstRecord), ElementsAre(t1));
    EXPECT_THAT(childrenOf("Selected Tracks"), ElementsAre(t1));
    EXPECT_FALSE(opened);
}

} // namespace
} // namespace sonarith
