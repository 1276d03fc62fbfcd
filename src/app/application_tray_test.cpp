// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the tray icon through the whole application: minimizing the window to the icon, the effect
// of the icon's menu on a running job, and restoring the window.
#include "app/application.h"

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/application_bench.h"
#include "support/must_run.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ApplicationBench;
using test::SavedCapture;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

/// The program after its start, with a disc of two tracks of one minute each.
struct TrayBench : ApplicationBench {
    TrayBench() : ApplicationBench({60000, 60000}) {
        application.start();
        select("Track  1 - 00:01:00");
        minimized_ = form.minimizeRequested.connect([this] { ++minimized; });
    }
    [[nodiscard]] std::string tip() const {
        return tray.icons.empty() ? "no icon" : tray.icons.begin()->second;
    }

    FrmPopup& popup = windows.frmpopup;
    int minimized = 0;

  private:
    Connection minimized_;
};

TEST(Minimize, HidesTheWindowAndAddsTheIconOnlyOnce) {
    TrayBench bench;
    bench.form.mnuMinimize.click();
    EXPECT_TRUE(bench.popup.loaded());
    EXPECT_FALSE(bench.form.visible());
    EXPECT_TRUE(bench.form.loaded());
    EXPECT_EQ(bench.minimized, 0);
    EXPECT_THAT(bench.tray.log, ElementsAre("add Sonarith"));
    bench.form.mnuMinimize.click();
    EXPECT_THAT(bench.tray.log, ElementsAre("add Sonarith"));
}

TEST(Minimize, MinimizesTheWindowToTheTaskBarIfThereIsNoTrayHost) {
    TrayBench bench;
    bench.tray.setHost(false);
    bench.form.mnuMinimize.click();
    EXPECT_TRUE(bench.popup.loaded());
    EXPECT_TRUE(bench.form.visible());
    EXPECT_EQ(bench.minimized, 1);
}

TEST(MinimizeOnStartOfAnAction, HidesOrMinimizesTheWindowAndShowsTheActionInTheToolTip) {
    for (const bool host : {true, false}) {
        TrayBench bench;
        bench.tray.setHost(host);
        bench.process.settings.minimizeOnStart = 1;
        bool seen = false;
        bench.loop.after(5s, [&] {
            seen = true;
            EXPECT_EQ(bench.form.visible(), !host);
            EXPECT_EQ(bench.minimized, host ? 0 : 1);
            EXPECT_TRUE(bench.popup.loaded());
            EXPECT_THAT(bench.tip(), StartsWith("Extracting Track"));
            EXPECT_EQ(bench.popup.caption(), bench.form.caption());
        });
        bench.form.CmdSelectAction.click();
        EXPECT_TRUE(seen);
        EXPECT_FALSE(bench.popup.loaded());
        EXPECT_TRUE(bench.form.visible());
        EXPECT_THAT(bench.tray.icons, IsEmpty());
        EXPECT_THAT(bench.disc.saved, SizeIs(1));
    }
}

TEST(MinimizeOnStartOfAnAction, KeepsTheWindowVisibleIfTheSettingIs0) {
    TrayBench bench;
    bench.loop.after(5s, test::mustRun([&] { EXPECT_TRUE(bench.form.visible()); }));
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.tray.log, IsEmpty());
}

TEST(TheEndOfAnAction, RestoresTheProgramFromTheTray) {
    TrayBench bench;
    bench.loop.after(2s, [&] { bench.form.mnuMinimize.click(); });
    bench.loop.after(4s, test::mustRun([&] { EXPECT_FALSE(bench.form.visible()); }));
    bench.form.CmdSelectAction.click();
    EXPECT_TRUE(bench.form.visible());
    EXPECT_FALSE(bench.popup.loaded());
}

TEST(TrayMenuStopConversion, EndsACaptureAndSavesTheCapturedPart) {
    TrayBench bench;
    bench.process.settings.minimizeOnStart = 1;
    bench.loop.after(5s, [&] { bench.popup.mnuStopencoding.click(); });
    const auto start = bench.loop.now();
    bench.form.CmdSelectAction.click();
    EXPECT_LT(bench.loop.now() - start, 7s);
    EXPECT_TRUE(bench.form.visible());
    EXPECT_FALSE(bench.popup.loaded());
    EXPECT_TRUE(bench.process.cancelRequested);
    EXPECT_TRUE(bench.idle());
    EXPECT_THAT(bench.disc.saved, SizeIs(1));
}

TEST(TrayMenuStopConversion, ShowsTheWindowAndSetsCancelRequestedEvenIfNoActionRuns) {
    TrayBench bench;
    bench.form.mnuMinimize.click();
    bench.process.cancelRequested = false;
    bench.popup.mnuStopencoding.click();
    EXPECT_TRUE(bench.form.visible());
    EXPECT_TRUE(bench.process.cancelRequested);
    EXPECT_FALSE(bench.popup.loaded());
}

TEST(TrayMenuRestoreControlPanel, ShowsTheWindowAndDoesNotAffectTheAction) {
    TrayBench bench;
    bench.process.settings.minimizeOnStart = 1;
    bench.loop.after(5s, test::mustRun([&] {
                         bench.popup.Exit.click();
                         EXPECT_TRUE(bench.form.visible());
                         EXPECT_TRUE(bench.form.tmrRecord.enabled());
                     }));
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 10584000}));
}

TEST(RemovalOfTheTrayHost, MinimizesTheHiddenWindowDuringAnAction) {
    TrayBench bench;
    bench.process.settings.minimizeOnStart = 1;
    bench.loop.after(5s, test::mustRun([&] {
                         bench.tray.setHost(false);
                         EXPECT_TRUE(bench.form.visible());
                         EXPECT_EQ(bench.minimized, 1);
                         EXPECT_TRUE(bench.popup.loaded());
                     }));
    bench.form.CmdSelectAction.click();
    EXPECT_FALSE(bench.popup.loaded());
    EXPECT_THAT(bench.disc.saved, SizeIs(1));
}

TEST(TrayMenuShutdownProgram, DuringACaptureSavesTheCapturedPart) {
    TrayBench bench;
    bench.process.settings.minimizeOnStart = 1;
    bench.loop.after(5s, [&] { bench.popup.mnuEnd.click(); });
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.CmdSelectAction.click(); }));
    EXPECT_TRUE(bench.loop.ended());
    EXPECT_EQ(bench.loop.yieldsAfterEnd(), 0);
    ASSERT_THAT(bench.disc.saved, SizeIs(1));
    EXPECT_GT(bench.disc.saved.front().bytes, 4 * 176400);
    EXPECT_THAT(bench.tray.icons, IsEmpty());
    EXPECT_TRUE(bench.idle());
}

TEST(ClosingTheMinimizedMainWindow, RemovesTheIconAndThenTriesToRemoveItAgain) {
    TrayBench bench;
    bench.form.mnuMinimize.click();
    EXPECT_TRUE(bench.endsProgram([&] { bench.form.unload(); }));
    EXPECT_THAT(bench.tray.log, ElementsAre("add Sonarith", "remove", "remove failed"));
}

} // namespace
} // namespace sonarith
