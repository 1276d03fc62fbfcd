// SPDX-License-Identifier: GPL-3.0-or-later
// A fixture for tests of the CD player within the whole application.
#pragma once

#include <chrono>

#include <gtest/gtest.h>

#include "support/application_bench.h"

namespace sonarith {

/// The key of the setting that mutes the disc, in the section "Settings" of the store.
inline constexpr const char* muteKey = "mute button";

struct PlayerInApplication : testing::Test {
    test::ApplicationBench bench{{60000, 60000}};
    Form4& panel = bench.windows.Form4;

    [[nodiscard]] bool discMuted() const {
        return bench.mixer.value(mixer_line::compactDisc, mixer_control::mute) == 1;
    }
    void switchOnAndPlay() {
        panel.OptCD.choose();
        bench.loop.advance(std::chrono::seconds(1));
        panel.play.click();
        EXPECT_TRUE(bench.disc.playing());
    }
    [[nodiscard]] bool playerOff() const {
        return !bench.waveInput.isOpen && !panel.Timer6.enabled() && !panel.Timer3.enabled();
    }
};

} // namespace sonarith
