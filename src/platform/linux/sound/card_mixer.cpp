// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/card_mixer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <utility>

namespace sonarith::sound {

namespace {

/// The functions that get and set the value of a mixer control on the card. `set` is null for a
/// meter.
struct Access {
    std::int32_t (*get)(SoundCard& card, SoundCard::Time now);
    void (*set)(SoundCard& card, std::int32_t value);
};

struct Control {
    std::uint32_t line; ///< component type of the control's line
    std::uint32_t type;
    std::int32_t highest; ///< values from 0 to this one can be set; unused for a meter
    Access access;
};

constexpr std::int32_t muteOn = 1;

template <Line line>
constexpr Access lineVolume{
    [](SoundCard& card, SoundCard::Time) -> std::int32_t { return card.volume(line); },
    [](SoundCard& card, std::int32_t value) {
        card.setVolume(line, value);
    }};

template <Line line>
constexpr Access lineMute{
    [](SoundCard& card, SoundCard::Time) -> std::int32_t { return card.muted(line) ? muteOn : 0; },
    [](SoundCard& card, std::int32_t value) {
        card.setMuted(line, value == muteOn);
    }};

template <Line line>
constexpr Access linePeak{
    [](SoundCard& card, SoundCard::Time now) -> std::int32_t { return card.linePeak(line, now); },
    nullptr};

constexpr Access masterVolume{
    [](SoundCard& card, SoundCard::Time) -> std::int32_t { return card.masterVolume(); },
    [](SoundCard& card, std::int32_t value) {
        card.setMasterVolume(value);
    }};

constexpr Access masterMute{[](SoundCard& card, SoundCard::Time) -> std::int32_t {
                                return card.masterMuted() ? muteOn : 0;
                            },
                            [](SoundCard& card, std::int32_t value) {
                                card.setMasterMuted(value == muteOn);
                            }};

constexpr Access bass{
    [](SoundCard& card, SoundCard::Time) -> std::int32_t { return card.tone().bass(); },
    [](SoundCard& card, std::int32_t value) {
        card.tone().setBass(value);
    }};

constexpr Access treble{
    [](SoundCard& card, SoundCard::Time) -> std::int32_t { return card.tone().treble(); },
    [](SoundCard& card, std::int32_t value) {
        card.tone().setTreble(value);
    }};

constexpr Access recorderPeak{
    [](SoundCard& card, SoundCard::Time now) -> std::int32_t { return card.recorderPeak(now); },
    nullptr};

/// The whole mixer. A control's identifier is its index here, counted from 1.
constexpr Control controlTable[] = {
    {mixer_line::speakers, mixer_control::volume, fullVolume, masterVolume},
    {mixer_line::speakers, mixer_control::bass, ToneControl::highest, bass},
    {mixer_line::speakers, mixer_control::treble, ToneControl::highest, treble},
    {mixer_line::speakers, mixer_control::mute, muteOn, masterMute},
    {mixer_line::waveIn, mixer_control::peakMeter, 0, recorderPeak},
    {mixer_line::compactDisc, mixer_control::volume, fullVolume, lineVolume<Line::compactDisc>},
    {mixer_line::compactDisc, mixer_control::mute, muteOn, lineMute<Line::compactDisc>},
    {mixer_line::waveOut, mixer_control::mute, muteOn, lineMute<Line::waveOut>},
    {mixer_line::waveOut, mixer_control::peakMeter, 0, linePeak<Line::waveOut>},
    {mixer_line::microphone, mixer_control::peakMeter, 0, linePeak<Line::externalInput>},
};

/// This offset makes line identifiers different from component types and control identifiers, so
/// that a call with the wrong kind of identifier fails.
constexpr std::uint32_t lineIdBase = 0x00010000;

constexpr std::uint32_t lineId(std::uint32_t componentType) {
    return lineIdBase + componentType;
}

/// Null for an unknown identifier.
const Control* controlOf(std::uint32_t identifier) {
    const bool exists = identifier >= 1 && identifier <= std::size(controlTable);
    return exists ? &controlTable[identifier - 1] : nullptr;
}

bool lineExists(std::uint32_t identifier) {
    return std::any_of(std::begin(controlTable), std::end(controlTable),
                       [&](const Control& control) { return lineId(control.line) == identifier; });
}

} // namespace

CardMixer::CardMixer(SoundCard* card, std::function<void()> toneChanged, SoundCardThread::Clock now)
    : card_(card), toneChanged_(std::move(toneChanged)), now_(std::move(now)) {}

MixerResult CardMixer::open(MixerHandle& mixer) {
    if (card_ == nullptr) {
        return MixerResult::badDevice;
    }
    mixer = ++opened_;
    return MixerResult::noError;
}

MixerResult CardMixer::getLineInfo(MixerHandle mixer, MixerLine& line) {
    if (line.cbStruct != mixerLineSize) {
        return MixerResult::invalidParameter;
    }
    if (!isOpen(mixer)) {
        return MixerResult::invalidHandle;
    }
    const std::uint32_t identifier = lineId(line.dwComponentType);
    if (!lineExists(identifier)) {
        return MixerResult::invalidLine;
    }
    line.dwLineID = identifier;
    return MixerResult::noError;
}

MixerResult CardMixer::getLineControls(MixerHandle mixer, MixerLineControls& controls) {
    if (controls.cbStruct != mixerLineControlsSize || controls.cControls != 1 ||
        controls.cbmxctrl != mixerControlSize || controls.pamxctrl == nullptr) {
        return MixerResult::invalidParameter;
    }
    if (!isOpen(mixer)) {
        return MixerResult::invalidHandle;
    }
    if (!lineExists(controls.dwLineID)) {
        return MixerResult::invalidLine;
    }
    const auto* const found =
        std::find_if(std::begin(controlTable), std::end(controlTable), [&](const Control& control) {
            return lineId(control.line) == controls.dwLineID &&
                   control.type == controls.dwControlType;
        });
    if (found == std::end(controlTable)) {
        return MixerResult::invalidControl;
    }
    const auto place = static_cast<std::uint32_t>(found - std::begin(controlTable));
    *controls.pamxctrl = {mixerControlSize, place + 1, found->type, 0};
    return MixerResult::noError;
}

MixerResult CardMixer::check(MixerHandle mixer, const MixerControlDetails& details) const {
    if (details.cbStruct != mixerControlDetailsSize || details.cChannels != 1 ||
        details.cbDetails != sizeof(std::int32_t) || details.paDetails == nullptr) {
        return MixerResult::invalidParameter;
    }
    if (!isOpen(mixer)) {
        return MixerResult::invalidHandle;
    }
    return controlOf(details.dwControlID) == nullptr ? MixerResult::invalidControl
                                                     : MixerResult::noError;
}

MixerResult CardMixer::getControlDetails(MixerHandle mixer, MixerControlDetails& details) {
    if (const MixerResult result = check(mixer, details); result != MixerResult::noError) {
        return result;
    }
    *details.paDetails = controlOf(details.dwControlID)->access.get(*card_, now_());
    return MixerResult::noError;
}

MixerResult CardMixer::setControlDetails(MixerHandle mixer, const MixerControlDetails& details) {
    if (const MixerResult result = check(mixer, details); result != MixerResult::noError) {
        return result;
    }
    const Control& control = *controlOf(details.dwControlID);
    const std::int32_t value = *details.paDetails;
    if (control.access.set == nullptr || value < 0 || value > control.highest) {
        return MixerResult::invalidValue;
    }
    control.access.set(*card_, value);
    const bool isTone =
        control.type == mixer_control::bass || control.type == mixer_control::treble;
    if (isTone && toneChanged_) {
        toneChanged_();
    }
    return MixerResult::noError;
}

} // namespace sonarith::sound
