// SPDX-License-Identifier: GPL-3.0-or-later
// Handles the mixer in the CD player's window: the sliders with their numbers, the mute switches,
// and the button that sets sliders and numbers to the card's levels. It processes no sound;
// level_meter.h handles the level meter.
#pragma once

#include <cstdint>

#include "forms/form4.h"
#include "platform/platform.h"
#include "player/mixer_access.h"
#include "player/mixer_state.h"

namespace sonarith {

class MixerPanel {
  public:
    /// Sets the handlers of the sliders, the mute switches and the buttons Command2, Command3,
    /// Command4 and Command5. All parameters must outlive this object.
    MixerPanel(const Platform& platform, Form4& form, MixerAccess& access, MixerState& state);
    MixerPanel(const MixerPanel&) = delete;
    MixerPanel& operator=(const MixerPanel&) = delete;

    /// Opens the mixer, even if it is already open; returns whether a mixer exists.
    bool open();

    /// The button "MIXER": opens the mixer and shows its levels in sliders and numbers. The slider
    /// and the number of a level that the card does not have stay unchanged. If there is no mixer,
    /// shows a message box, which yields.
    void Command2_Click();
    /// Sets the master volume to the maximum. The slider does not move.
    void Command3_Click();
    /// Sets the volume of the disc's line to the maximum. The slider does not move.
    void Command4_Click();
    /// Deliberate: sets the mixer control that the record `SpareCtrl` identifies to the maximum. No
    /// control is ever looked up for this record, so its identifier stays 0. No mixer control has
    /// this identifier, so no level changes.
    void Command5_Click();

    /// Unmutes the disc's line, as Option14 does. Only a test calls this function.
    void SetMute();

  private:
    /// A slider, the number beside it, and the mixer control whose level both show.
    struct Level {
        Slider& slider;
        TextBox& number;
        std::uint32_t line;
        std::uint32_t controlType;
        MixerControl& record;
    };

    void wireSliders();
    void wireMutes();
    void find(std::uint32_t line, std::uint32_t controlType, MixerControl& record);
    void readLevel(const Level& level);
    void sliderMoved(const Level& level);
    void trebleMoved();
    void driveToHighest(const MixerControl& record);
    void mute(std::uint32_t line, MixerControl& record);
    void unmute(std::uint32_t line);

    const Platform& platform_;
    Form4& form_;
    MixerAccess& access_;
    MixerState& state_;

    Level master_;
    Level disc_;
    Level bass_;
    Level treble_;
};

} // namespace sonarith
