// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the CD player within the whole application: how the player and the actions of the
// main window affect each other.
#include "app/application.h"

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "app/application_player_fixture.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using test::ApplicationBench;
using test::SavedCapture;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(PlayerInApplication, IsSwitchedOffAndTheDiscIsMutedBeforeAnActionCapturesTheWholeTrack) {
    bench.store.put("Settings", muteKey, "0");
    bench.application.start();
    switchOnAndPlay();
    bench.loop.advance(5s);
    EXPECT_FALSE(discMuted());
    bench.media.log.clear();
    bool mutedAtRecording = false;
    bench.media.onCommand = [&](std::string_view command) {
        if (command == "record capture overwrite") {
            mutedAtRecording = discMuted() && playerOff();
        }
    };
    bench.select("Track  1 - 00:01:00");
    bench.form.CmdSelectAction.click();
    EXPECT_TRUE(mutedAtRecording);
    EXPECT_THAT(std::vector(bench.media.log.begin(), bench.media.log.begin() + 2),
                ElementsAre("stop cd", "close cd"));
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 60 * 176400}));
    EXPECT_THAT(bench.boxes.shown, IsEmpty());
    // The disc's line stays muted after the action, although the setting says not to mute it.
    bench.loop.advance(10s);
    EXPECT_TRUE(discMuted());
    EXPECT_TRUE(panel.loaded());
    EXPECT_EQ(panel.CD.text(), "OFF");
    // Switching the player on unmutes the line.
    switchOnAndPlay();
    EXPECT_FALSE(discMuted());
}

TEST_F(PlayerInApplication, AChosenDiscIsReadByTheMainWindowAndByThePlayerThatIsOn) {
    bench.application.start();
    switchOnAndPlay();
    bench.disc.insert({5000, 6000, 7000});
    bench.application.readChosenDisc();
    EXPECT_EQ(bench.form.lstTracks.listCount(), 3);
    EXPECT_EQ(panel.CD.text(), "No CD");
    bench.loop.advance(1s);
    EXPECT_EQ(panel.CD.text(), "Cd Ready");
    EXPECT_EQ(panel.tracktime.caption(), "Track time: 00:05:00");
    EXPECT_TRUE(bench.boxes.shown.empty());

    // If the drive is empty, the main window leaves the CD device open and shows a message box. The
    // player must show "No CD" while the box is shown, and later read the next disc.
    bench.disc.remove();
    bench.boxes.whileUp = [&](const test::ShownBox&) {
        bench.loop.advance(3s);
        EXPECT_EQ(panel.CD.text(), "No CD");
    };
    bench.application.readChosenDisc();
    EXPECT_EQ(bench.boxes.shown.size(), 1U);
    bench.disc.insert({8000, 9000});
    bench.loop.advance(1s);
    EXPECT_EQ(panel.CD.text(), "Cd Ready");
    EXPECT_EQ(panel.tracktime.caption(), "Track time: 00:08:00");
}

TEST_F(PlayerInApplication, MutesTheDiscForAnActionEvenIfThePlayerIsAlreadyOff) {
    bench.store.put("Settings", muteKey, "0");
    bench.application.start();
    EXPECT_FALSE(discMuted());
    bench.select("WAV Files");
    bench.form.CmdSelectAction.click();
    EXPECT_TRUE(discMuted());
}

TEST_F(PlayerInApplication, DoesNotMuteTheDiscForAnActionWhileThePlayersPanelIsClosed) {
    bench.store.put("Settings", muteKey, "0");
    bench.application.start();
    panel.unload();
    panel.Option14.click();
    bench.select("Track  1 - 00:01:00");
    bench.form.CmdSelectAction.click();
    EXPECT_FALSE(discMuted());
    EXPECT_FALSE(panel.loaded());
    EXPECT_EQ(bench.disc.saved.size(), 1U);
}

TEST_F(PlayerInApplication, StaysOnIfTheCaptureIsStartedByCmdStart) {
    // The button "Start " (CmdSelectAction) switches the player off. The hidden button
    // cmdStart must leave the player on, although the capture then finds the disc in use.
    bench.application.start();
    switchOnAndPlay();
    bench.select("Track  1 - 00:01:00");
    bench.form.cmdStart.click();
    EXPECT_FALSE(discMuted());
    EXPECT_TRUE(panel.Timer6.enabled());
}

TEST_F(PlayerInApplication, SavesARunningCaptureBeforeThePlayerIsSwitchedOn) {
    bench.application.start();
    bench.select("Track  1 - 00:01:00");
    bench.loop.after(10s, [&] { panel.OptCD.choose(); });
    bench.form.CmdSelectAction.click();
    EXPECT_THAT(bench.disc.saved,
                ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 10 * 176400}));
    EXPECT_FALSE(bench.form.tmrRecord.enabled());
    EXPECT_TRUE(panel.Timer6.enabled());
    bench.loop.advance(1s);
    EXPECT_EQ(panel.CD.text(), "Cd Ready");
}

TEST_F(PlayerInApplication, SavesARunningCaptureBeforeThePanelIsClosed) {
    const std::function<void()> closes[] = {[&] { bench.form.mnuCloseCD.click(); },
                                            [&] { panel.Command1.click(); },
                                            [&] {
                                                panel.mnuUnloadCD.click();
                                            }};
    bench.application.start();
    for (const auto& close : closes) {
        panel.show();
        bench.disc.saved.clear();
        bench.select("Track  1 - 00:01:00");
        bench.loop.after(10s, close);
        bench.form.CmdSelectAction.click();
        EXPECT_THAT(bench.disc.saved,
                    ElementsAre(SavedCapture{ApplicationBench::savedAs(1), 10 * 176400}));
        EXPECT_FALSE(panel.loaded());
        EXPECT_TRUE(bench.idle());
        EXPECT_TRUE(bench.commandsOpen());
    }
}

TEST_F(PlayerInApplication, PlaysTheTrackThatIsSelectedInTheTree) {
    ApplicationBench three({60000, 60000, 60000});
    three.application.start();
    TreeView& tree = three.form.TreeView1;
    three.select("Track  2 - 00:01:00");
    const NodeRef track = tree.selectedItem();
    run(tree.onMouseDown, MouseButtons{.left = true}, track);
    run(tree.onMouseUp, MouseButtons{.left = true}, track);
    three.windows.Form4.OptCD.choose();
    three.loop.advance(1s);
    three.media.log.clear();
    three.windows.Form4.play.click();
    EXPECT_EQ(three.media.log.front(), "play cd from 2");
}

} // namespace
} // namespace sonarith
