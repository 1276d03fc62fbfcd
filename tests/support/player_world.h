// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the CD player's panel and the objects that control it (player/player.h), connected as in
// the program. The devices are fakes (fake_machine.h), the disc is simulated (simulated_disc.h),
// and time is virtual. Of the rest of the application, only the forms are created. PlayerWorld is
// the base class of the player's tests.
//
//     disc.insert({60000, 30000});
//     switchOn();                                  // returns after the first poll of the disc
//     EXPECT_EQ(form.CD.text(), "Cd Ready");
//     EXPECT_THAT(operationsOf([&] { form.play.click(); }), ElementsAre("play cd from 1", ...));
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "forms/windows.h"
#include "platform/controls/option_button.h"
#include "player/player.h"
#include "support/fake_machine.h"
#include "support/simulated_disc.h"

namespace sonarith::test {

struct PlayerBench : FakeMachine {
    explicit PlayerBench(std::vector<std::int32_t> lengthsMs = {60000, 60000, 60000})
        : disc(loop, std::move(lengthsMs)) {
        media.device = disc.device();
        media.onCommand = [this](std::string_view command) {
            operations.emplace_back(command);
        };
        mixer.onOperation = [this](const std::string& operation) {
            operations.push_back("mixer " + operation);
        };
        waveInput.onOperation = [this](const std::string& operation) {
            operations.push_back("wave " + operation);
        };
        form.load();
    }

    /// The device commands, and the operations of the mixer ("mixer open") and the wave input
    /// ("wave open"), oldest first. During operationsOf() the first 20 yields are recorded, too
    /// ("yield"). operationsOf() and switchOn() clear this list.
    std::vector<std::string> operations;

    /// Runs `step` and returns the operations during `step`.
    template <typename Step>
    std::vector<std::string> operationsOf(Step step) {
        operations.clear();
        const int recording = ++recordings_;
        for (int n = 1; n <= 20; ++n) {
            loop.atYield(n, [this, recording] {
                if (recording == recordings_) {
                    operations.emplace_back("yield");
                }
            });
        }
        step();
        ++recordings_;
        return operations;
    }

    /// Runs `step` and returns only the device commands during `step`.
    template <typename Step>
    std::vector<std::string> commandsOf(Step step) {
        std::vector<std::string> commands;
        for (const std::string& operation : operationsOf(step)) {
            if (operation != "yield" && !operation.starts_with("mixer ") &&
                !operation.starts_with("wave ")) {
                commands.push_back(operation);
            }
        }
        return commands;
    }

    /// Simulates the user's click on the power switch, and advances the time by one second, so that
    /// the disc is polled. Clears `operations`.
    void switchOn() {
        form.OptCD.choose();
        loop.advance(std::chrono::seconds(1));
        operations.clear();
    }
    /// Whether the disc and the input are closed, and no timer of the panel runs. The mixer may be
    /// open.
    [[nodiscard]] bool off() const {
        return !disc.discOpen() && !waveInput.isOpen && !waveInput.running &&
               waveInput.queue.empty() && !player.capture.running() && !form.Timer6.enabled() &&
               !form.Timer3.enabled() && !form.Timer1.enabled() && !form.Timer2.enabled() &&
               !form.Timer4.enabled();
    }
    /// Whether the disc is open, and the input, Timer6 and Timer3 run.
    [[nodiscard]] bool on() const {
        return disc.discOpen() && waveInput.running && player.capture.running() &&
               form.Timer6.enabled() && form.Timer3.enabled();
    }
    /// The names of the transport buttons that are enabled.
    [[nodiscard]] std::vector<std::string> enabledButtons() const {
        std::vector<std::string> names;
        for (const CommandButton* button :
             {&form.play, &form.pause, &form.stopbtn, &form.ftrack, &form.btrack, &form.eject}) {
            if (button->enabled()) {
                names.push_back(button->name());
            }
        }
        return names;
    }
    /// Whether the panel shows that the player is off.
    [[nodiscard]] bool looksOff() const {
        return form.CD.text() == "OFF" && form.timeWindow.text().empty() &&
               form.tracktime.caption().empty() && enabledButtons().empty() &&
               !form.OptCD.selected() && form.picPeakVol.lines().empty() &&
               form.Label4.top() >= form.Picture8.height();
    }
    [[nodiscard]] bool discMuted() const {
        return mixer.value(mixer_line::compactDisc, mixer_control::mute) == 1;
    }

    SimulatedDisc disc;
    ProcessState process;
    Windows windows{platform, process};
    Form4& form = windows.Form4;
    Form1& main = windows.Form1;
    Player player{platform, process, windows};

  private:
    int recordings_ = 0;
};

struct PlayerWorld : testing::Test, PlayerBench {};

} // namespace sonarith::test
