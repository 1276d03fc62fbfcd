// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/main_window.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "support/application_bench.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ApplicationBench;
using testing::ElementsAre;
using testing::IsEmpty;

// --- load ----------------------------------------------------------------------------------

TEST(FormLoad, ShowsTheWindowWithDiscAndFilesInItsTree) {
    ApplicationBench bench({185000, 61000});
    bench.disk.addFile("c:\\sonarith\\wavfiles\\a.wav");
    bench.application.start();
    EXPECT_TRUE(bench.form.loaded());
    EXPECT_TRUE(bench.form.visible());
    EXPECT_EQ(bench.form.caption(), "Sonarith v2.0");
    EXPECT_EQ(bench.form.lblNumTracks.caption(), "2");
    EXPECT_EQ(bench.form.Label2.caption(), "c:\\sonarith\\wavfiles\\");
    EXPECT_EQ(bench.form.List1.list(0), "c:\\sonarith\\wavfiles\\a.wav");
    std::vector<std::string> texts;
    for (int i = 1; i <= bench.form.TreeView1.count(); ++i) {
        texts.push_back(bench.form.TreeView1.node(i)->text());
    }
    EXPECT_THAT(texts, testing::IsSupersetOf({"Track  1 - 00:03:05", "Track  2 - 00:01:01",
                                              "c:\\sonarith\\wavfiles\\a.wav"}));
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
}

TEST(FormLoad, PlacesTheCentreOfTheWindowLeftOfTheScreensCentre) {
    ApplicationBench bench({1000, 1000});
    bench.form.setDesignedSize(4000_twips, 6000_twips);
    bench.application.start();
    EXPECT_EQ(bench.form.left(), Twips(28800 / 2 - 4000 / 2 - 1500));
    EXPECT_EQ(bench.form.top(), Twips(16200 / 2 - 6000 / 2));
}

TEST(FormLoad, RunsItsStepsInOrder) {
    ApplicationBench bench({1000, 1000});
    bench.form.ProgressBar1.setValue(50).passOver();
    std::vector<std::string> steps;
    bench.media.onCommand = [&](std::string_view command) {
        if (command == "open cdaudio alias cd") {
            steps.push_back("inspection");
            // The settings are loaded. The preferences' window (FrmPrefs), whose load sets the
            // destination, is not loaded yet.
            EXPECT_EQ(bench.form.ProgressBar1.value(), 0);
            EXPECT_EQ(bench.process.settings.hdWarningNo, 100);
            EXPECT_EQ(bench.process.settings.decodePath, "c:\\sonarith");
            EXPECT_THAT(bench.store.writes, IsEmpty());
            EXPECT_EQ(bench.pointer.shapes.back(), Pointer::hourglass);
            EXPECT_FALSE(bench.form.visible());
            EXPECT_THAT(bench.files.log, testing::Contains("changeFolder c:\\sonarith"));
        }
    };
    bench.disk.whileListing = [&] {
        steps.push_back("search");
        EXPECT_EQ(bench.form.Label2.caption(), "c:\\sonarith\\wavfiles\\");
        EXPECT_TRUE(bench.files.folderExists(ApplicationBench::destination));
        EXPECT_EQ(bench.form.lstTracks.listCount(), 2);
    };
    bench.form.TreeView1.setHeight(0_twips);
    bench.application.start();
    EXPECT_THAT(steps, ElementsAre("inspection", "search", "search"));
    EXPECT_EQ(bench.form.TreeView1.width(), designWidth - gripWidth);
    EXPECT_EQ(bench.form.TreeView1.height(), designHeight);
    EXPECT_EQ(bench.pointer.shapes.front(), Pointer::hourglass);
    EXPECT_EQ(bench.pointer.shapes.back(), Pointer::normal);
    // One yield in the inspection, one in the preferences' load, two in each of the two searches,
    // and three at the end.
    EXPECT_EQ(bench.loop.yieldCount(), 9);
}

TEST(FormLoad, StopsIfTheProgramFolderCannotBeEntered) {
    ApplicationBench bench({1000, 1000});
    bench.files.failWith(test::FakeFileSystem::Operation::changeFolder, "c:\\sonarith",
                         ErrorNumber::pathNotFound);
    bench.application.start();
    EXPECT_THAT(bench.pointer.shapes, ElementsAre(Pointer::hourglass, Pointer::normal));
    EXPECT_THAT(bench.media.log, IsEmpty());
    EXPECT_THAT(bench.store.readKeys, IsEmpty());
    EXPECT_EQ(bench.form.left(), 0_twips);
    EXPECT_FALSE(bench.form.visible());
}

TEST(FormLoad, ShowsTheWindowWithoutAMessageIfTheDiscCannotBeOpened) {
    ApplicationBench bench({});
    bench.media.answer("open cdaudio alias cd", {.status = 266});
    bench.application.start();
    EXPECT_TRUE(bench.form.visible());
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
    EXPECT_GT(bench.form.TreeView1.count(), 0);
}

// --- the window's own commands -------------------------------------------------------------

TEST(RefreshList, ReadsTheDiscAndTheDestinationFolderAgain) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.media.log.clear();
    bench.disk.listed.clear();
    bench.form.lstTracks.clear();
    bench.form.mnuRefreshlist.click();
    EXPECT_EQ(bench.media.log.at(2), "open cdaudio alias cd");
    EXPECT_EQ(bench.form.lstTracks.listCount(), 2);
    EXPECT_THAT(bench.disk.listed,
                ElementsAre("c:\\sonarith\\wavfiles\\*.*", "c:\\sonarith\\wavfiles\\*.*"));
}

TEST(Help, RequestsTheHelpFileInTheProgramFolder) {
    ApplicationBench bench({1000, 1000});
    bench.files.addFolder("c:\\elsewhere");
    bench.files.changeFolder("c:\\elsewhere").passOver();
    bench.form.Cmdhelp.click();
    EXPECT_THAT(bench.shell.helpShown, ElementsAre("c:\\sonarith\\sonarith.chm"));
    EXPECT_EQ(bench.files.currentFolder(), "c:\\sonarith");
    bench.form.mnuHelpfile.click();
    EXPECT_EQ(bench.shell.helpShown.size(), 2U);
}

TEST(Help, DoesNothingIfTheProgramFolderCannotBeEntered) {
    ApplicationBench bench({1000, 1000});
    bench.files.failWith(test::FakeFileSystem::Operation::changeFolder, "c:\\sonarith",
                         ErrorNumber::pathNotFound);
    bench.form.Cmdhelp.click();
    EXPECT_THAT(bench.shell.helpShown, IsEmpty());
}

TEST(MenuStart, ShowsTheHiddenToolBarAndStartsTheAction) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.form.Picture3.setHeight(600_twips);
    for (MenuItem* entry : {&bench.form.mnuStart, &bench.form.mnuStart2}) {
        bench.form.mnuToolbar.setChecked(false);
        bench.form.Picture3.setVisible(false);
        bench.disc.saved.clear();
        bench.select("Track  1 - 00:00:01");
        entry->click();
        EXPECT_TRUE(bench.form.mnuToolbar.checked());
        EXPECT_TRUE(bench.form.Picture3.visible());
        EXPECT_EQ(bench.form.TreeView1.top(), 600_twips);
        EXPECT_EQ(bench.disc.saved.size(), 1U);
    }
}

TEST(Timer1, ResetsTheActionLabelAfterFiveSecondsAndDisablesItself) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.form.Timer1.setEnabled(true);
    bench.form.Label3.setCaption("x");
    bench.loop.advance(4999ms);
    EXPECT_EQ(bench.form.Label3.caption(), "x");
    bench.loop.advance(1ms);
    EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
    EXPECT_FALSE(bench.form.Timer1.enabled());
}

TEST(MovingTheWindow, StartsAtAPressOnAnEmptyPartOfTheFormOrOnTheHandGrip) {
    ApplicationBench bench({1000, 1000});
    int grasped = 0;
    const Connection connection = bench.form.captionGrasped.connect([&] { ++grasped; });
    run(bench.form.onMouseDown, MouseButtons{.left = true});
    run(bench.form.Image3.onMouseDown, MouseButtons{.left = true});
    EXPECT_EQ(grasped, 2);
}

TEST(ShapeFromPicture, ShapesTheMainWindowButIsNotCalledWhenTheWindowLoads) {
    test::FakeMachine machine;
    ProcessState process;
    Windows windows(machine.platform, process);
    FinderScanner scanner(windows.frmsearch);
    WorkTreeJobs jobs(machine.platform, process, windows, scanner);
    Extraction extraction(machine.platform, process, windows, jobs.adder);
    MainWindow window(machine.platform, process, windows, extraction.inspection, jobs.tree);
    windows.Form1.setPicture(
        std::make_shared<PixelPicture>(2, 1, std::vector<PixelColour>{0, whitePixel}));
    windows.Form1.load();
    EXPECT_EQ(windows.Form1.windowRegion(), std::nullopt);
    window.ShapeFromPicture();
    EXPECT_EQ(windows.Form1.windowRegion(), (WindowRegion{{{0, 0, 1, 1}}}));
    EXPECT_EQ(process.WindowRegion, windows.Form1.windowRegion());
}

// --- the end -------------------------------------------------------------------------------

TEST(Close, StopsTheDevicesAndUnloadsThePlayerAndTheTrayIcon) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.windows.Form4.load();
    bench.windows.frmpopup.load();
    bench.media.log.clear();
    std::vector<std::string> steps;
    bench.media.onCommand = [&](std::string_view command) {
        steps.emplace_back(command);
    };
    bench.windows.Form4.onUnload = [&] {
        steps.emplace_back("Form4");
    };
    bench.windows.frmpopup.onUnload = [&] {
        steps.emplace_back("frmpopup");
    };
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.unload(); }));
    EXPECT_TRUE(bench.process.stopRequested);
    // The main window's unload sends the first three commands. Then the player's window (Form4) is
    // unloaded: this switches the player off, which sends the last two commands, and then runs
    // Form4.onUnload.
    EXPECT_THAT(steps, ElementsAre("stop cd", "close capture", "close cd", "stop cd", "close cd",
                                   "Form4", "frmpopup"));
    EXPECT_FALSE(bench.windows.Form4.loaded());
    EXPECT_FALSE(bench.windows.frmpopup.loaded());
    EXPECT_TRUE(bench.loop.ended());
}

TEST(Close, EndsTheProgramWithoutAMessageEvenIfEveryDeviceCommandFails) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.media.answerPrefix("", {.status = 263});
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.unload(); }));
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
}

TEST(Exit, UnloadsThePlayerFirstAndEndsTheProgram) {
    const std::pair<const char*, std::function<void(Form1&)>> exits[] = {
        {"Command5",
         [](Form1& form) {
             form.Command5.click();
         }},
        {"mnuExit",
         [](Form1& form) {
             form.mnuExit.click();
         }},
        {"mnuExit2",
         [](Form1& form) {
             form.mnuExit2.click();
         }},
    };
    for (const auto& [name, exit] : exits) {
        SCOPED_TRACE(name);
        ApplicationBench bench({1000, 1000});
        bench.application.start();
        bench.media.log.clear();
        EXPECT_TRUE(bench.endsProgram([&] { exit(bench.form); }));
        EXPECT_THAT(bench.media.log, ElementsAre("stop cd", "close cd", "close all", //
                                                 "stop cd", "close capture", "close cd"));
        EXPECT_FALSE(bench.windows.Form4.loaded());
    }
}

TEST(Exit, EndsTheProgramEvenIfTheWindowWasNeverLoaded) {
    ApplicationBench bench({1000, 1000});
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.Command5.click(); }));
    EXPECT_THAT(bench.media.log, IsEmpty());
}

} // namespace
} // namespace sonarith
