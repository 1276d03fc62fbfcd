// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the order of steps in the transport's handlers: the panel's state at the time of each
// command. The commands themselves are tested in transport_test.cpp.
#include "player/transport.h"

#include <functional>

#include "support/player_world.h"

namespace sonarith {
namespace {

/// The player is switched on and has read a disc of three one-minute tracks.
struct TransportOrderTest : test::PlayerWorld {
    DiscState& state = player.disc;

    TransportOrderTest() { switchOn(); }
    /// Clicks `button` and runs `look` when `command` is sent. Returns how often `command` was
    /// sent.
    int lookAt(const std::string& command, CommandButton& button,
               const std::function<void()>& look) {
        int times = 0;
        media.onCommand = [&](std::string_view sent) {
            if (sent == command) {
                ++times;
                look();
            }
        };
        button.click();
        media.onCommand = nullptr;
        return times;
    }
};

TEST_F(TransportOrderTest, AStopKeepsEjectEnabledThroughout) {
    ASSERT_TRUE(form.eject.enabled());
    for (const char* command : {"stop cd wait", "seek cd to 1", "status cd position"}) {
        EXPECT_EQ(lookAt(command, form.stopbtn, [&] { EXPECT_TRUE(form.eject.enabled()); }), 1)
            << command;
    }
}

TEST_F(TransportOrderTest, AStopClearsTheFlagPlayingAfterItsStopAndSeekCommands) {
    for (const char* command : {"stop cd wait", "seek cd to 1"}) {
        form.play.click();
        EXPECT_EQ(lookAt(command, form.stopbtn, [&] { EXPECT_TRUE(state.Playing); }), 1) << command;
        EXPECT_FALSE(state.Playing);
    }
}

TEST_F(TransportOrderTest, AResumeClearsThePauseBeforeItsCommandAndShowsPlayingAfterwards) {
    form.play.click();
    form.pause.click();
    EXPECT_EQ(lookAt("play cd", form.play,
                     [&] {
                         EXPECT_FALSE(process.CDPaused);
                         EXPECT_FALSE(state.Playing);
                         EXPECT_EQ(form.CD.text(), "Cd Ready");
                     }),
              1);
    EXPECT_TRUE(state.Playing);
    EXPECT_EQ(form.CD.text(), "Playing");
}

TEST_F(TransportOrderTest, APauseIsStoredAfterItsCommandEvenIfTheCommandFails) {
    form.play.click();
    media.answer("pause cd", {.status = 275});
    EXPECT_EQ(lookAt("pause cd", form.pause,
                     [&] {
                         EXPECT_FALSE(process.CDPaused);
                         EXPECT_TRUE(state.Playing);
                     }),
              1);
    EXPECT_FALSE(form.loaded()) << "the failed command must close the player";
    EXPECT_TRUE(process.CDPaused);
    EXPECT_FALSE(state.Playing);
}

} // namespace
} // namespace sonarith
