// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/disk_guard.h"

#include <cstdint>
#include <limits>
#include <string>

#include "support/preferences_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct DiskGuardTest : test::PreferencesWorld {
    DiskGuardTest() {
        startWithAllOff();
        settings.hdWarning = 1;
        settings.hdStopDecoding = 1;
    }
    void freeOn(const std::string& root, std::int64_t freeBytes,
                DriveKind kind = DriveKind::fixed) {
        system.drives[root] = {kind, DiskSpace{500'000'000'000, freeBytes}, {}};
    }
    void tick() { Form1.tmrWarning.fire(); }
    [[nodiscard]] bool stopped() const { return process.stopRequested && Form1.Timer1.enabled(); }
};

// --- the list of drives ----------------------------------------------------------------------

TEST_F(DiskGuardTest, ListsEachFixedDriveWithItsFreeMegabytes) {
    freeOn("C:\\", 1'500'000'000);
    freeOn("D:\\", 0);
    preferences.guard.RefreshDriveSpace();
    EXPECT_EQ(form.Text6.text(), "C:\\ - 1500 MB available\r\nD:\\ - 0 MB available\r\n");
}

TEST_F(DiskGuardTest, RefreshingTheListRemovesDrivesThatNoLongerExist) {
    freeOn("D:\\", 1'000'000);
    preferences.guard.RefreshDriveSpace();
    system.drives.clear();
    preferences.guard.RefreshDriveSpace();
    EXPECT_EQ(form.Text6.text(), "");
}

TEST_F(DiskGuardTest, ListsOnlyFixedDrives) {
    for (const DriveKind kind : {DriveKind::removable, DriveKind::network, DriveKind::cdRom,
                                 DriveKind::ramDisk, DriveKind::unknown, DriveKind::noRoot}) {
        freeOn("C:\\", 7'000'000, kind);
        preferences.guard.RefreshDriveSpace();
        EXPECT_EQ(form.Text6.text(), "") << "drive kind " << static_cast<int>(kind);
        // Unchanged since start() loaded the form, when C: was a fixed drive.
        EXPECT_EQ(form.Label4.caption(), "200000");
    }
}

TEST_F(DiskGuardTest, ListsNoDriveWhoseSizeIsZeroOrCannotBeRead) {
    freeOn("D:\\", 5'000'000);
    system.drives["C:\\"].space = std::nullopt;
    system.drives["E:\\"].space = DiskSpace{0, 0};
    preferences.guard.RefreshDriveSpace();
    EXPECT_EQ(form.Text6.text(), "D:\\ - 5 MB available\r\n");
    EXPECT_EQ(process.DriveName, "E:\\");
    EXPECT_EQ(process.DriveTotalBytes, 0);
    EXPECT_EQ(process.DriveFreeBytes, 0);
}

TEST_F(DiskGuardTest, StoresTheFiguresOfTheLastDriveInTheProcessState) {
    freeOn("D:\\", 5'000'001);
    preferences.guard.RefreshDriveSpace();
    EXPECT_EQ(process.DriveName, "D:\\");
    EXPECT_EQ(process.DriveTotalBytes, 500'000'000'000);
    EXPECT_EQ(process.DriveFreeBytes, 5'000'001);
}

TEST_F(DiskGuardTest, NeverAccessesDriveA) {
    for (const char* floppy : {"A:\\", "a:\\"}) {
        system.drives = {{floppy, {}}, {"C:\\", {}}};
        system.spaceAsked.clear();
        preferences.guard.RefreshDriveSpace();
        preferences.guard.RefreshDriveSpace();
        EXPECT_THAT(system.spaceAsked, ElementsAre("C:\\", "C:\\"));
        EXPECT_EQ(form.Text6.text(), "C:\\ - 200000 MB available\r\n");
    }
}

TEST_F(DiskGuardTest, RoundsToTheNearestMegabyteWithTiesToTheEvenMegabyte) {
    struct Row {
        std::int64_t bytes;
        const char* megabytes;
    };
    for (const Row& row :
         {Row{499'999, "0"}, Row{500'000, "0"}, Row{500'001, "1"}, Row{1'499'999, "1"},
          Row{1'500'000, "2"}, Row{2'500'000, "2"}, Row{32'767'400'000, "32767"},
          Row{32'768'000'000, "32768"}, Row{2'147'483'647'000'000, "2147483647"},
          Row{2'147'483'648'000'000, "2147483648"}, Row{9'007'199'254'740'993'500, "9007199254741"},
          Row{std::numeric_limits<std::int64_t>::max(), "9223372036855"}}) {
        freeOn("C:\\", row.bytes);
        preferences.guard.RefreshDriveSpace();
        EXPECT_EQ(form.Label4.caption(), row.megabytes);
        EXPECT_EQ(form.Text6.text(), std::string("C:\\ - ") + row.megabytes + " MB available\r\n");
    }
}

TEST_F(DiskGuardTest, FindsTheDestinationsDriveByItsLetterInUpperOrLowerCase) {
    freeOn("D:\\", 77'000'000);
    freeOn("e:\\", 88'000'000);
    settings.decodePath = "d:\\music";
    preferences.guard.RefreshDriveSpace();
    EXPECT_EQ(form.Label3.caption(), "D:\\");
    EXPECT_EQ(form.Label4.caption(), "77");
    settings.decodePath = "E:\\music";
    preferences.guard.RefreshDriveSpace();
    EXPECT_EQ(form.Label3.caption(), "e:\\");
    EXPECT_EQ(form.Label4.caption(), "88");
}

TEST_F(DiskGuardTest, KeepsTheFiguresIfTheDestinationIsOnNoListedDrive) {
    preferences.guard.RefreshDriveSpace();
    for (const char* path : {"x:\\gone", "", "\\\\server\\share"}) {
        settings.decodePath = path;
        preferences.guard.RefreshDriveSpace();
        EXPECT_EQ(form.Label3.caption(), "C:\\") << path;
        EXPECT_EQ(form.Label4.caption(), "200000") << path;
    }
}

TEST_F(DiskGuardTest, MeasuresTwentyFiveDrivesWithoutWritingToTheStore) {
    for (char letter = 'B'; letter <= 'Z'; ++letter) {
        freeOn(std::string(1, letter) + ":\\", 1'000'000'000);
    }
    store.writes.clear();
    tick();
    EXPECT_EQ(system.spaceAsked.size(), 26U); // 25 by tick(), 1 when start() loaded the form
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST_F(DiskGuardTest, DoesNotNotifyViewsOfUnchangedFigures) {
    tick();
    int changes = 0;
    const Connection text = form.Text6.changed.connect([&](Property) { ++changes; });
    const Connection label = form.Label4.changed.connect([&](Property) { ++changes; });
    tick();
    EXPECT_EQ(changes, 0);
}

// --- the limits ----------------------------------------------------------------------------------

TEST_F(DiskGuardTest, StopsBelowTheStopLimitAtTheFirstTick) {
    freeOn("C:\\", 49'000'000);
    Form1.tmrWarning.setEnabled(true);
    loop.advance(1999ms);
    EXPECT_FALSE(process.stopRequested);
    loop.advance(1ms);
    EXPECT_TRUE(stopped());
    EXPECT_TRUE(Form1.Label5.visible());
    EXPECT_EQ(Form1.Label5.caption(), "Low Drive space");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(DiskGuardTest, WarnsButDoesNotStopIfTheFreeSpaceEqualsTheStopLimit) {
    freeOn("C:\\", 50'000'000);
    tick();
    EXPECT_TRUE(Form1.Label5.visible());
    EXPECT_FALSE(process.stopRequested);
    EXPECT_FALSE(Form1.Timer1.enabled());
    EXPECT_EQ(loop.yieldCount(), 1); // when start() loaded the form; none by tick()
}

TEST_F(DiskGuardTest, DoesNotWarnIfTheFreeSpaceEqualsTheWarningLimit) {
    freeOn("C:\\", 100'000'000);
    tick();
    EXPECT_FALSE(Form1.Label5.visible());
    freeOn("C:\\", 99'000'000);
    tick();
    EXPECT_TRUE(Form1.Label5.visible());
    // Only the next start of an action removes the warning.
    freeOn("C:\\", 900'000'000);
    tick();
    EXPECT_TRUE(Form1.Label5.visible());
}

TEST_F(DiskGuardTest, AStopShowsTheWarningThenClicksCommand8ThenStartsTimer1ThenYields) {
    freeOn("C:\\", 0);
    std::vector<std::string> steps;
    Form1.Command8.onClick = [&] {
        // tmrWarning_Timer() sets stopRequested and shows Label5 before it runs Command1_Click(),
        // which clicks Command8.
        steps.push_back("stop");
        EXPECT_TRUE(process.stopRequested);
        EXPECT_TRUE(Form1.Label5.visible());
        EXPECT_FALSE(Form1.Timer1.enabled());
    };
    loop.atYield(1, [&] {
        steps.push_back("yield");
        EXPECT_TRUE(Form1.Timer1.enabled());
    });
    tick();
    EXPECT_THAT(steps, ElementsAre("stop", "yield"));
}

TEST_F(DiskGuardTest, AStopUnloadsTheWindowOfTheConversionWorker) {
    freeOn("C:\\", 0);
    windows.Form6.load();
    tick();
    EXPECT_FALSE(windows.Form6.loaded());
}

TEST_F(DiskGuardTest, DoesNotShowTheWarningAgainAfterTheYieldOfAStop) {
    freeOn("C:\\", 0);
    loop.atYield(1, [&] { Form1.Label5.setVisible(false); });
    tick();
    EXPECT_FALSE(Form1.Label5.visible());
}

TEST_F(DiskGuardTest, ObeysTheWarningSwitchAndTheStopSwitch) {
    freeOn("C:\\", 0);
    settings.hdStopDecoding = 0;
    tick();
    EXPECT_FALSE(process.stopRequested);
    EXPECT_TRUE(Form1.Label5.visible());
    Form1.Label5.setVisible(false);
    settings.hdWarning = 0;
    tick();
    EXPECT_FALSE(Form1.Label5.visible());
    settings.hdStopDecoding = 1;
    tick();
    EXPECT_TRUE(stopped());
}

TEST_F(DiskGuardTest, NeitherWarnsNorStopsForALimitOfZeroOrLess) {
    freeOn("C:\\", 0);
    for (const std::int16_t limit : {std::int16_t{0}, std::int16_t{-1}, std::int16_t{-32768}}) {
        settings.hdStopNo = limit;
        settings.hdWarningNo = limit;
        tick();
        EXPECT_FALSE(process.stopRequested);
        EXPECT_FALSE(Form1.Label5.visible());
    }
}

TEST_F(DiskGuardTest, AcceptsTheLargestLimit) {
    settings.hdStopNo = 32767;
    freeOn("C:\\", 32'767'000'000);
    tick();
    EXPECT_FALSE(process.stopRequested);
    freeOn("C:\\", 32'766'000'000);
    tick();
    EXPECT_TRUE(process.stopRequested);
}

TEST_F(DiskGuardTest, StopsEvenIfTheStopLimitIsAboveTheWarningLimit) {
    settings.hdWarningNo = 10;
    settings.hdStopNo = 1000;
    freeOn("C:\\", 999'000'000);
    tick();
    EXPECT_TRUE(stopped());
}

TEST_F(DiskGuardTest, ADestinationOnNoFixedDriveCountsAsFullIfLabel4HasItsInitialText) {
    form.unload();
    system.drives["C:\\"].kind = DriveKind::removable;
    tick();
    EXPECT_EQ(form.Label3.caption(), "Label3");
    EXPECT_EQ(form.Label4.caption(), "Label4"); // is read as 0
    EXPECT_TRUE(stopped());
}

TEST_F(DiskGuardTest, ReadsTheFreeSpaceFromTheTextOfLabel4) {
    settings.decodePath = "x:\\";
    form.Label4.setCaption("51");
    tick();
    EXPECT_FALSE(process.stopRequested);
    form.Label4.setCaption("49 or so");
    tick();
    EXPECT_TRUE(process.stopRequested);
}

// --- opening and closing the preferences' window ---------------------------------------------

TEST_F(DiskGuardTest, LoadsTheClosedPreferencesWithoutShowingThemAndRunsTheirWholeLoadStep) {
    form.unload();
    muted.clear();
    settings.muteButton = 1;
    freeOn("C:\\", 60'000'000);
    tick();
    EXPECT_TRUE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_EQ(form.Label4.caption(), "60");
    EXPECT_THAT(muted, ElementsAre("Option13"));
    EXPECT_TRUE(Form1.Label5.visible());
}

TEST_F(DiskGuardTest, ToleratesThatThePreferencesAreClosedDuringTheYieldOfTheirLoad) {
    form.unload();
    freeOn("C:\\", 49'000'000);
    loop.atYield(1, [&] { form.unload(); });
    tick();
    EXPECT_TRUE(form.loaded()); // loaded again to read Label4
    EXPECT_TRUE(stopped());
}

TEST_F(DiskGuardTest, ToleratesThatThePreferencesAreReopenedDuringTheYieldOfAStop) {
    freeOn("C:\\", 0);
    loop.atYield(1, [&] {
        form.unload();
        form.show();
    });
    tick();
    EXPECT_TRUE(form.visible());
    EXPECT_TRUE(stopped());
}

TEST_F(DiskGuardTest, WarnsAfterTwoSecondsEvenIfTheClockJumps) {
    freeOn("C:\\", 99'000'000);
    Form1.tmrWarning.setEnabled(true);
    loop.setSecondsSinceMidnight(86399);
    loop.advance(1s);
    loop.setSecondsSinceMidnight(0);
    loop.advance(1s);
    EXPECT_TRUE(Form1.Label5.visible());
}

} // namespace
} // namespace sonarith
