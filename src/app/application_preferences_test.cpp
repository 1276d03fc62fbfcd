// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the preferences and the disk guard through the whole application: at the start, in an
// extraction, in a decoding, and at the end of the program. The disk guard warns, or stops the
// action, when the disk is nearly full.
#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "app/application.h"
#include "support/application_bench.h"
#include "support/must_run.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ApplicationBench;
using test::SavedCapture;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

void leaveFree(ApplicationBench& bench, std::int64_t megabytes) {
    bench.system.drives["C:\\"].space = DiskSpace{500'000'000'000, megabytes * 1'000'000};
}

// --- start and end -------------------------------------------------------------------------------

TEST(PreferencesAtTheStart, StayHiddenAndAreLoadedAfterTheDiscIsReadButBeforeFilesAreSearched) {
    ApplicationBench bench({1000, 1000});
    std::vector<std::string> steps;
    bench.media.onCommand = [&](std::string_view command) {
        if (command == "open cdaudio alias cd") {
            steps.emplace_back("disc");
            EXPECT_FALSE(bench.windows.FrmPrefs.loaded());
        }
    };
    bench.loop.atYield(2, [&] {
        steps.emplace_back("preferences");
        EXPECT_TRUE(bench.windows.FrmPrefs.loaded());
        EXPECT_EQ(bench.form.Label2.caption(), "");
    });
    bench.disk.whileListing = [&] {
        steps.emplace_back("search");
        EXPECT_EQ(bench.form.Label2.caption(), "c:\\sonarith\\wavfiles\\");
    };
    bench.application.start();
    EXPECT_THAT(steps, ElementsAre("disc", "preferences", "search", "search"));
    EXPECT_TRUE(bench.windows.FrmPrefs.loaded());
    EXPECT_FALSE(bench.windows.FrmPrefs.visible());
    EXPECT_TRUE(bench.form.visible());
}

TEST(PreferencesAtTheStart, FillAnEmptyStoreInOneFileWrite) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    EXPECT_EQ(bench.store.fileWrites, 1);
    for (const char* key : {"HDWarning", "HDstopdecoding", "Delete WAV", "show full path",
                            "encode after extracting", "mute button"}) {
        EXPECT_EQ(bench.store.held("Settings", key), "1") << key;
    }
    EXPECT_EQ(bench.store.held("Settings", "DecodePath"), "c:\\sonarith\\WAVFiles");
}

TEST(PreferencesAtTheStart, DoNotEndTheMainWindowsLoadIfTheirOwnLoadFails) {
    for (const char* key : {"Encoding quality", "Encoding bitrate", "Audio format", "HDWarning",
                            "mute button", "desktop icon"}) {
        for (const char* bad : {"70", "-7", "32767"}) {
            SCOPED_TRACE(std::string(key) + "=" + bad);
            ApplicationBench bench({1000, 1000});
            bench.store.put("Settings", key, bad);
            bench.application.start();
            EXPECT_TRUE(bench.form.visible());
            // LoadSettings has set this destination; the preferences have not changed it.
            EXPECT_EQ(bench.form.Label2.caption(), "c:\\sonarith\\");
            EXPECT_GT(bench.form.TreeView1.count(), 0);
            bench.form.Copt.click();
            EXPECT_TRUE(bench.windows.FrmPrefs.visible());
        }
    }
}

TEST(PreferencesAtTheStart, OpenWithoutAMessageForAnyStoredText) {
    for (const char* key :
         {"Audio format", "Encoding quality", "Encoding bitrate", "HDWarning", "HDWarningNo",
          "HDstopdecoding", "HDStopNo", "desktop icon", "minimize onstart", "Delete WAV",
          "show full path", "encode after extracting", "mute button", "DecodePath"}) {
        for (const char* bad : {"", "-1", "32767", "32768", "70000", "letters", "caf\xe9\xff"}) {
            SCOPED_TRACE(std::string(key) + "=" + bad);
            ApplicationBench bench({1000, 1000});
            bench.store.put("Settings", key, bad);
            bench.application.start();
            EXPECT_TRUE(bench.form.visible());
            EXPECT_GT(bench.form.TreeView1.count(), 0);
            bench.form.Copt.click();
            EXPECT_TRUE(bench.windows.FrmPrefs.visible());
            bench.windows.FrmPrefs.unload();
            bench.form.Copt.click();
            EXPECT_TRUE(bench.windows.FrmPrefs.visible());
            EXPECT_THAT(bench.boxes.shown, IsEmpty());
        }
    }
}

TEST(PreferencesAtTheStart, MuteTheMixerLineOfTheDiscASecondTimeIfTheSettingIs1) {
    for (const char* muted : {"1", "0"}) {
        ApplicationBench bench({1000, 1000});
        bench.store.put("Settings", "mute button", muted);
        // How often the mute control was set to `muted` (1 mutes, 0 unmutes) before the preferences
        // are loaded.
        int first = -1;
        const auto changes = [&] {
            return std::count(bench.mixer.log.begin(), bench.mixer.log.end(),
                              std::string("set 4101 20010002 ") + muted);
        };
        bench.media.onCommand = [&](std::string_view) {
            if (first < 0) {
                first = static_cast<int>(changes());
            }
        };
        bench.application.start();
        EXPECT_EQ(first, 1);
        EXPECT_EQ(changes(),
                  *muted == '1' ? 2 : 1); // the preferences mute only if the setting is 1
    }
}

TEST(PreferencesAtTheStart, ShowTwoMessagesButDoNotEndTheStartIfTheDestinationCannotBeCreated) {
    ApplicationBench bench({1000, 1000});
    bench.store.put("Settings", "DecodePath", "x:\\gone\\wav");
    bench.application.start();
    EXPECT_EQ(bench.boxes.shown.size(), 2U);
    EXPECT_TRUE(bench.form.visible());
    EXPECT_EQ(bench.form.Label2.caption(), "x:\\gone\\wav\\");
}

TEST(PreferencesAtTheEnd, DoNotSaveTheChoicesOfTheThreeDropDownListsIfTheirWindowIsStillOpen) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    bench.form.Copt.click();
    bench.windows.FrmPrefs.Combo1.choose(7);
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.Command5.click(); }));
    for (const char* key : {"Encoding quality", "Encoding bitrate", "Audio format"}) {
        EXPECT_EQ(bench.store.held("Settings", key), std::nullopt) << key;
    }
}

// --- applied -------------------------------------------------------------------------------------

TEST(AppliedPreferences, ChooseTheFormatOfTheNextCapture) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    for (const int format : {0, 1}) {
        bench.windows.FrmPrefs.cbxFormat.choose(format);
        bench.media.log.clear();
        bench.select("Track  1 - 00:00:01");
        bench.form.CmdSelectAction.click();
        EXPECT_THAT(bench.media.log,
                    Contains(StartsWith("set capture samplespersec 44100 channels " +
                                        std::to_string(format + 1) + " ")));
    }
}

TEST(AppliedPreferences, ChooseTheFolderOfTheNextCapture) {
    ApplicationBench bench({1000, 1000});
    bench.application.start();
    FrmPrefs& prefs = bench.windows.FrmPrefs;
    prefs.Check2.setValue(1).passOver();
    prefs.Text9.setText("c:\\");
    prefs.Text10.setText("My Music");
    prefs.Co111.click();
    bench.select("Track  1 - 00:00:01");
    bench.form.CmdSelectAction.click();
    ASSERT_EQ(bench.disc.saved.size(), 1U);
    EXPECT_THAT(bench.disc.saved[0].path, StartsWith("c:\\my music\\"));
}

// --- the guard -----------------------------------------------------------------------------------

TEST(GuardOfAnExtraction, WarnsThenStopsTheCaptureAndTheCapturedPartIsSaved) {
    ApplicationBench bench({60000, 60000});
    bench.application.start();
    bench.loop.after(3s, [&] { leaveFree(bench, 99); });
    bench.loop.after(5s, [&] {
        EXPECT_TRUE(bench.form.Label5.visible());
        EXPECT_TRUE(bench.form.tmrRecord.enabled());
        leaveFree(bench, 49);
    });
    bench.select("Available Tracks");
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 6 * 176400}));
    EXPECT_TRUE(bench.idle());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_TRUE(bench.form.Label5.visible());
    EXPECT_FALSE(bench.form.tmrWarning.enabled());
    // The next start of an action hides the warning.
    leaveFree(bench, 5000);
    bench.select("Track  1 - 00:01:00");
    bench.loop.after(1s, test::mustRun([&] {
                         EXPECT_FALSE(bench.form.Label5.visible());
                         bench.form.Command8.click();
                     }));
    bench.form.CmdSelectAction.click();
}

TEST(GuardOfAnExtraction, StopsTheCaptureAtTheGuardsFirstTickIfTheDriveIsNearlyFull) {
    ApplicationBench bench({60000, 60000});
    leaveFree(bench, 49);
    bench.application.start();
    bench.select("Available Tracks");
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 2 * 176400}));
}

TEST(GuardOfAnExtraction, DoesNotStopTheCaptureIfTheWarningIsOff) {
    // The guard's timer starts only if the warning is on.
    ApplicationBench bench({5000, 5000});
    leaveFree(bench, 1);
    bench.store.put("Settings", "HDWarning", "0");
    bench.application.start();
    bench.select("Track  1 - 00:00:05");
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 5 * 176400}));
    EXPECT_FALSE(bench.form.Label5.visible());
}

TEST(GuardOfAnExtraction, RunsOnlyDuringTheFirstTrackOfAQueue) {
    ApplicationBench bench({5000, 5000});
    bench.application.start();
    bench.loop.after(6s, [&] { leaveFree(bench, 1); }); // during the second track
    bench.select("Available Tracks");
    bench.form.CmdSelectAction.click();
    EXPECT_EQ(bench.disc.saved.size(), 2U);
    EXPECT_FALSE(bench.form.Label5.visible());
}

TEST(GuardOfAnExtraction, WritesNothingToTheStore) {
    ApplicationBench bench({9000, 9000});
    bench.application.start();
    bench.store.writes.clear();
    bench.select("Track  1 - 00:00:09");
    bench.form.CmdSelectAction.click();
    EXPECT_GE(bench.system.spaceAsked.size(), 4U);
    EXPECT_THAT(bench.store.writes, IsEmpty());
}

TEST(GuardOfAnExtraction, LoadsThePreferencesAgainButHiddenIfTheyWereClosed) {
    ApplicationBench bench({9000, 9000});
    bench.application.start();
    bench.loop.after(1s, [&] { bench.windows.FrmPrefs.unload(); });
    bench.loop.after(3s, test::mustRun([&] {
                         EXPECT_TRUE(bench.windows.FrmPrefs.loaded());
                         EXPECT_FALSE(bench.windows.FrmPrefs.visible());
                     }));
    bench.select("Track  1 - 00:00:09");
    bench.form.CmdSelectAction.click();
    EXPECT_EQ(bench.disc.saved.size(), 1U);
    EXPECT_TRUE(bench.idle());
}

/// The state of the preferences' window before the guard's tick.
enum class PreferencesAre { kept, closed, reopened };

std::string nameOf(PreferencesAre window) {
    return window == PreferencesAre::kept     ? "preferences kept,"
           : window == PreferencesAre::closed ? "preferences closed,"
                                              : "preferences reopened,";
}

void putInState(FrmPrefs& form, PreferencesAre state) {
    if (state != PreferencesAre::kept) {
        form.unload();
    }
    if (state == PreferencesAre::reopened) {
        form.show();
    }
}

void runWithStopAtYield(int n, PreferencesAre window, bool& reached) {
    ApplicationBench bench({200, 200, 200});
    bench.application.start();
    bench.select("Available Tracks");
    bool over = false;
    bench.loop.atYield(n, [&] {
        if (!over) {
            reached = true;
            putInState(bench.windows.FrmPrefs, window);
            leaveFree(bench, 49);
            bench.form.tmrWarning.fire();
        }
    });
    bench.form.CmdSelectAction.click();
    over = true;
    EXPECT_TRUE(bench.idle());
    EXPECT_TRUE(bench.commandsOpen());
    EXPECT_FALSE(bench.form.tmrWarning.enabled());
    EXPECT_LE(bench.disc.saved.size(), 3U);
    for (const SavedCapture& saved : bench.disc.saved) {
        EXPECT_TRUE(bench.files.fileExists(saved.path));
    }
    leaveFree(bench, 5000);
    bench.disc.saved.clear();
    bench.form.mnuRefreshlist.click();
    bench.select("Available Tracks");
    bench.form.CmdSelectAction.click();
    EXPECT_EQ(bench.disc.saved.size(), 3U);
    bench.loop.advance(40s);
    EXPECT_TRUE(bench.idle());
    EXPECT_EQ(bench.form.Label3.caption(), "Next action:");
}

/// For each state of the preferences, calls `run` for yield 1, 2 and so on, until a run ends before
/// that yield. `run` stops the action in the given yield, and sets `reached` if the yield occurred.
void atEveryYield(void (*run)(int yield, PreferencesAre window, bool& reached)) {
    constexpr int mostYields = 300;
    for (const PreferencesAre window :
         {PreferencesAre::kept, PreferencesAre::closed, PreferencesAre::reopened}) {
        bool reached = true;
        int n = 0;
        while (reached) {
            ++n;
            SCOPED_TRACE(nameOf(window) + " yield " + std::to_string(n));
            ASSERT_LT(n, mostYields);
            reached = false;
            run(n, window, reached);
        }
        EXPECT_GT(n, 20);
    }
}

TEST(GuardOfAnExtraction, CanStopTheCaptureAtAnyYieldAndTheNextActionWorks) {
    atEveryYield(&runWithStopAtYield);
}

/// The started program with three MP3 files. Decoding a file takes 1.2 s.
struct GuardedDecoding : ApplicationBench {
    GuardedDecoding() : ApplicationBench({1000, 1000}) {
        for (const char* name : {"c", "b", "a"}) {
            const std::string path = destination + "\\" + name + ".mp3";
            files.addFile(path, std::string(200, 'm'));
            disk.addFile(path);
        }
        mp3.duration = 1200ms;
        application.start();
    }
    void decodeAll() {
        select("MP3 Files");
        form.CmdSelectAction.click();
    }
    [[nodiscard]] bool atRest() const {
        return !process.workerBusy && !windows.Form6.loaded() && !mp3.busy() &&
               !form.Command2.visible() && commandsOpen() && !form.tmrWarning.enabled();
    }
};

TEST(GuardOfADecoding, StopsTheDecodingAtTheGuardsFirstTickIfTheDriveIsNearlyFull) {
    GuardedDecoding bench;
    leaveFree(bench, 49);
    bench.decodeAll();
    EXPECT_TRUE(bench.atRest());
    // The guard's tick at 2 s stopped the decoding of the second file.
    EXPECT_EQ(bench.mp3.finished.size(), 1U);
    EXPECT_TRUE(bench.form.Label5.visible());
    EXPECT_TRUE(bench.process.stopRequested);
}

void decodeWithStopAtYield(int n, PreferencesAre window, bool& reached) {
    GuardedDecoding bench;
    bool over = false;
    bench.loop.atYield(n, [&] {
        if (!over) {
            reached = true;
            putInState(bench.windows.FrmPrefs, window);
            leaveFree(bench, 49);
            bench.form.tmrWarning.fire();
        }
    });
    bench.decodeAll();
    over = true;
    EXPECT_TRUE(bench.atRest());
    EXPECT_LE(bench.mp3.finished.size(), 3U);
    leaveFree(bench, 5000);
    bench.mp3.finished.clear();
    bench.decodeAll();
    EXPECT_EQ(bench.mp3.finished.size(), 3U);
    EXPECT_TRUE(bench.atRest());
}

TEST(GuardOfADecoding, CanStopTheDecodingAtAnyYieldAndTheNextDecodingWorks) {
    atEveryYield(&decodeWithStopAtYield);
}

} // namespace
} // namespace sonarith
