// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/mixer_panel.h"

#include <string>

namespace sonarith {

namespace {

/// The highest value of a level; the level's slider then has the value 0.
constexpr std::int32_t highest = 65535;

/// The number, 0 to 10, that is shown beside the slider for a level.
std::string numberOfLevel(std::int32_t value) {
    constexpr std::int32_t step = 6553;
    return std::to_string(value / step);
}

} // namespace

MixerPanel::MixerPanel(const Platform& platform, Form4& form, MixerAccess& access,
                       MixerState& state)
    : platform_(platform),
      form_(form),
      access_(access),
      state_(state),
      master_{form.sliderMasterVolume, form.txtMasterVolume, mixer_line::speakers,
              mixer_control::volume, state.VolCtrl},
      disc_{form.Slider1, form.Text1, mixer_line::compactDisc, mixer_control::volume,
            state.CDVolCtrl},
      bass_{form.BassSlider, form.BassText, mixer_line::speakers, mixer_control::bass,
            state.BassCtrl},
      treble_{form.trebleslider, form.Treblesliderte, mixer_line::speakers, mixer_control::treble,
              state.TrebleCtrl} {
    form_.Command2.onClick = [this] {
        Command2_Click();
    };
    form_.Command3.onClick = [this] {
        Command3_Click();
    };
    form_.Command4.onClick = [this] {
        Command4_Click();
    };
    form_.Command5.onClick = [this] {
        Command5_Click();
    };
    wireSliders();
    wireMutes();
}

void MixerPanel::wireSliders() {
    for (const Level* level : {&master_, &disc_, &bass_}) {
        level->slider.onScroll = [this, level] {
            sliderMoved(*level);
        };
    }
    form_.trebleslider.onScroll = [this] {
        trebleMoved();
    };
}

void MixerPanel::wireMutes() {
    form_.Option2.onClick = [this] {
        mute(mixer_line::speakers, state_.MuteCtrlB);
    };
    form_.Option1.onClick = [this] {
        unmute(mixer_line::speakers);
    };
    form_.Option4.onClick = [this] {
        mute(mixer_line::waveOut, state_.MuteCtrlA);
    };
    form_.Option3.onClick = [this] {
        unmute(mixer_line::waveOut);
    };
    form_.Option13.onClick = [this] {
        mute(mixer_line::compactDisc, state_.MuteCtrlB);
    };
    form_.Option14.onClick = [this] {
        unmute(mixer_line::compactDisc);
    };
}

bool MixerPanel::open() {
    state_.mixerResult = platform_.mixer.open(state_.hMixer);
    return state_.mixerResult == MixerResult::noError;
}

void MixerPanel::Command2_Click() {
    if (!open()) {
        platform_.boxes.show("Couldn't open the mixer please check if a audio mixer is installed "
                             "then retry.");
        return;
    }
    for (const Level* level : {&master_, &disc_, &bass_, &treble_}) {
        readLevel(*level);
    }
}

void MixerPanel::Command3_Click() {
    driveToHighest(state_.VolCtrl);
}

void MixerPanel::Command4_Click() {
    driveToHighest(state_.CDVolCtrl);
}

void MixerPanel::Command5_Click() {
    driveToHighest(state_.SpareCtrl);
}

void MixerPanel::SetMute() {
    unmute(mixer_line::compactDisc);
}

void MixerPanel::find(std::uint32_t line, std::uint32_t controlType, MixerControl& record) {
    state_.mixerFound = access_.GetMixerControl(state_.hMixer, line, controlType, record);
}

void MixerPanel::readLevel(const Level& level) {
    find(level.line, level.controlType, level.record);
    if (!state_.mixerFound) {
        return;
    }
    const std::int32_t value = access_.GetControlValue(state_.hMixer, level.record);
    if (value != -1) {
        level.number.setText(numberOfLevel(value));
        level.slider.setValue(std::int64_t{highest} - value).passOver();
    }
}

void MixerPanel::sliderMoved(const Level& level) {
    state_.Volume = highest - level.slider.value();
    // Deliberate: the number changes even if the card refuses the value.
    level.number.setText(numberOfLevel(state_.Volume));
    access_.SetControlValue(state_.hMixer, level.record, state_.Volume);
}

void MixerPanel::trebleMoved() {
    // Deliberate: only this slider looks up its mixer control at each move, and does nothing if
    // the card has no such control.
    find(treble_.line, treble_.controlType, treble_.record);
    if (state_.mixerFound) {
        sliderMoved(treble_);
    }
}

void MixerPanel::driveToHighest(const MixerControl& record) {
    state_.Volume = highest;
    access_.SetControlValue(state_.hMixer, record, state_.Volume);
}

// Deliberate: mute() and unmute() write even if find() has not found the control. They do not read
// mixerFound, in which find() stores its result.

void MixerPanel::mute(std::uint32_t line, MixerControl& record) {
    find(line, mixer_control::mute, record);
    access_.SetControlValue(state_.hMixer, record, 1);
}

void MixerPanel::unmute(std::uint32_t line) {
    find(line, mixer_control::mute, state_.MuteCtrlA);
    access_.SetMuteControl(state_.hMixer, state_.MuteCtrlA, true);
}

} // namespace sonarith
