// SPDX-License-Identifier: GPL-3.0-or-later
// The panel's mixer: the sliders with their numbers, the mute switches, and the button that reads
// the card's levels into them. It handles no sound; level_meter.h is the meter.
#pragma once

#include <cstdint>

#include "forms/form4.h"
#include "platform/platform.h"
#include "player/mixer_access.h"
#include "player/mixer_state.h"

namespace sonarith {

class MixerPanel {
  public:
    /// Sets the handlers of sliders, mute switches and Command2 to Command5. All must outlive this.
    MixerPanel(const Platform& platform, Form4& form, MixerAccess& access, MixerState& state);
    MixerPanel(const MixerPanel&) = delete;
    MixerPanel& operator=(const MixerPanel&) = delete;

    /// Opens the mixer again; returns whether there is one.
    bool open();

    /// "MIXER": opens the mixer and shows its levels in sliders and numbers. If the card does not
    /// have a level, its slider and number stay unchanged. Without a mixer a message appears, which
    /// yields.
    void Command2_Click();
    /// Sets the master volume to the maximum. The slider does not move.
    void Command3_Click();
    /// Sets the volume of the disc's line to the maximum. The slider does not move.
    void Command4_Click();
    /// Deliberate: writes the maximum to a control that is never looked up; this has no effect.
    void Command5_Click();

    /// Unmutes the disc's line, as Option14 does. Nothing calls it.
    void SetMute();

  private:
    /// A slider, the number beside it, and the mixer control of both.
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
