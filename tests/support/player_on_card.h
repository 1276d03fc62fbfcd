// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the CD player on the program's own command interpreter, sound card, mixer and wave input,
// and on a drive that the caller provides. The event loop, the settings store and the message boxes
// are fakes; the caller fires the timers and advances the card. For tests and benchmarks.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "forms/windows.h"
#include "platform/linux/disc/disc.h"
#include "platform/linux/mci/interpreter.h"
#include "platform/linux/mci/machine_devices.h"
#include "platform/linux/sound/card_mixer.h"
#include "platform/linux/sound/card_wave_input.h"
#include "platform/linux/sound/sound_card.h"
#include "player/player.h"
#include "support/fake_machine.h"
#include "support/fake_notices.h"

namespace sonarith::test {

class PlayerOnCard {
  public:
    /// `now` is the clock of the card: the caller must pass times of this clock to
    /// card.advance().
    PlayerOnCard(std::shared_ptr<disc::Drive> drive, std::function<sound::SoundCard::Time()> now)
        : media(
              mci::devicesOf(mci::Machine{card, now, [drive] { return drive; },
                                          [] { return std::vector<std::filesystem::path>{}; },
                                          [](const std::string& path) { return path; }, notices})),
          mixer(&card, {}, now),
          waveInput(card, now) {
        form.load();
    }
    PlayerOnCard(const PlayerOnCard&) = delete;
    PlayerOnCard& operator=(const PlayerOnCard&) = delete;

    /// Switches the player on and runs the poll that detects the disc.
    void switchOn() {
        form.OptCD.choose();
        form.Timer6.fire();
    }

    FakeMachine machine;
    FakeNotices notices;
    sound::SoundCard card;
    mci::Interpreter media;
    sound::CardMixer mixer;
    sound::CardWaveInput waveInput;
    const Platform platform =
        machine.platformWith({.media = &media, .mixer = &mixer, .waveInput = &waveInput});
    ProcessState process;
    Windows windows{platform, process};
    Form4& form = windows.Form4;
    Player player{platform, process, windows};
};

} // namespace sonarith::test
