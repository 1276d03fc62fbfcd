// SPDX-License-Identifier: GPL-3.0-or-later
// The CD player on a machine of fakes with a simulated disc, in virtual time: the panel and its
// jobs as the program wires them, without the rest of the application. Base class of the player's
// tests.
//
//     disc.insert({60000, 30000});
//     switchOn();                                  // and one poll later
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

    /// All calls to devices, mixer ("mixer open") and wave input ("wave open"), oldest first;
    /// within operationsOf() also the yields ("yield").
    std::vector<std::string> operations;

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

    /// Only the device commands.
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

    /// The user's click on "on", and the poll a second later.
    void switchOn() {
        form.OptCD.choose();
        loop.advance(std::chrono::seconds(1));
        operations.clear();
    }
    /// Whether the panel uses nothing of the machine: no device or input is open, and no timer
    /// runs.
    [[nodiscard]] bool off() const {
        return !disc.discOpen() && !waveInput.isOpen && !waveInput.running &&
               waveInput.queue.empty() && !player.capture.running() && !form.Timer6.enabled() &&
               !form.Timer3.enabled() && !form.Timer1.enabled() && !form.Timer2.enabled() &&
               !form.Timer4.enabled();
    }
    [[nodiscard]] bool on() const {
        return disc.discOpen() && waveInput.running && player.capture.running() &&
               form.Timer6.enabled() && form.Timer3.enabled();
    }
    /// The transport's buttons that are enabled, by their names.
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
    /// Whether the panel shows that it is off.
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
