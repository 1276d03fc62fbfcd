// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/level_meter.h"

#include "player/meter_scale.h"

namespace sonarith {

LevelMeter::LevelMeter(const Platform& platform, Form4& form, MixerAccess& access,
                       MixerState& state, MeterCapture& capture)
    : platform_(platform), form_(form), access_(access), state_(state), capture_(capture) {
    form_.Timer3.onTimer = [this] {
        Timer3_Timer();
    };
    form_.Timer2.onTimer = [this] {
        Timer2_Timer();
    };
    form_.Timer4.onTimer = [this] {
        Timer4_Timer();
    };
}

void LevelMeter::prepare() {
    const auto find = [this](std::uint32_t line, MixerControl& record) {
        state_.mixerFound =
            access_.GetMixerControl(state_.hMixer, line, mixer_control::peakMeter, record);
    };
    find(mixer_line::waveIn, state_.InputMeterCtrl);
    if (!state_.mixerFound) {
        find(mixer_line::microphone, state_.InputMeterCtrl);
    }
    find(mixer_line::waveOut, state_.WaveMeterCtrl);
    reading_ = 0;
    MeterDetails.cbStruct = mixerControlDetailsSize;
    MeterDetails.cChannels = 1;
    MeterDetails.cbDetails = sizeof(reading_);
    MeterDetails.paDetails = &reading_;
}

void LevelMeter::clearTrace() {
    form_.picPeakVol.clear();
}

void LevelMeter::sinkBar() {
    form_.Label4.setTop(form_.Picture8.height());
}

void LevelMeter::Timer3_Timer() {
    if (capture_.running()) {
        capture_.requeueDoneBuffers();
    }
    draw({state_.InputMeterCtrl, 950, 20, Drawing::joined});
}

void LevelMeter::Timer2_Timer() {
    draw({state_.WaveMeterCtrl, 950, 0, Drawing::none});
}

void LevelMeter::Timer4_Timer() {
    draw({state_.WaveMeterCtrl, 150, 50, Drawing::apart});
}

void LevelMeter::readLevel(const MixerControl& control) {
    MeterDetails.dwControlID = control.dwControlID;
    MeterDetails.cMultipleItems = control.cMultipleItems;
    state_.mixerResult = platform_.mixer.getControlDetails(state_.hMixer, MeterDetails);
    // Volume is set even if the read has failed: the meter then shows its last reading, not a value
    // that a slider has stored in Volume.
    state_.Volume = reading_;
}

void LevelMeter::draw(const Variant& variant) {
    readLevel(variant.control);
    if (state_.Volume < 0) {
        state_.Volume = negated(state_.Volume);
    }
    form_.Label4.setTop(barTop(form_.Picture8.height(), state_.Volume));
    TraceY = traceHeight(state_.Volume, variant.silenceAt);
    state_.Volume = negated(state_.Volume);
    if (variant.drawing != Drawing::none) {
        form_.picPeakVol.line({static_cast<double>(TraceX - variant.step), PrevTraceY},
                              {static_cast<double>(TraceX), TraceY});
    }
    // With Drawing::apart, the height at which the next line starts does not change. Otherwise the
    // next line starts at TraceY, the height of the level that was just read.
    if (variant.drawing != Drawing::apart) {
        PrevTraceY = TraceY;
    }
    TraceX += variant.step;
    if (form_.picPeakVol.width() <= Twips(TraceX)) {
        clearTrace();
        TraceX = 0;
    }
}

} // namespace sonarith
