// SPDX-License-Identifier: GPL-3.0-or-later
// A mixer for tests. Its lines and controls can be removed; it stores the values of the controls
// and logs every operation.
//
//     FakeMixer mixer;                                        // has all lines of the card
//     mixer.present = false;                                  // open() now fails
//     mixer.removeControl(mixer_line::speakers, mixer_control::bass);
//     EXPECT_EQ(mixer.value(mixer_line::compactDisc, mixer_control::mute), 1);
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/mixer.h"

namespace sonarith::test {

class FakeMixer final : public Mixer {
  public:
    /// Identifies a control: the type of its line, and its own type.
    using Place = std::pair<std::uint32_t, std::uint32_t>;

    FakeMixer() {
        using namespace mixer_line;
        for (const Place& place : {Place{speakers, mixer_control::volume},
                                   {speakers, mixer_control::bass},
                                   {speakers, mixer_control::treble},
                                   {speakers, mixer_control::mute},
                                   {compactDisc, mixer_control::volume},
                                   {compactDisc, mixer_control::mute},
                                   {waveOut, mixer_control::mute},
                                   {waveOut, mixer_control::peakMeter},
                                   {waveIn, mixer_control::peakMeter},
                                   {microphone, mixer_control::peakMeter}}) {
            values_[place] = startValue(place.second);
        }
    }

    /// Whether the machine has a mixer.
    bool present = true;
    /// If true, every read or write of a control's value fails.
    bool detailsFail = false;
    /// The operations, oldest first: "open", "line 4", "control 4 50030001", "get 4 50030001",
    /// "set 4 50030001 65535". The type of a line is decimal, that of a control hexadecimal. In
    /// "get" and "set", "none" replaces both types if the identifier is unknown: "set none 65535".
    std::vector<std::string> log;
    /// Called with each entry of the log.
    std::function<void(const std::string&)> onOperation;
    /// The arguments of the last read or write of a value.
    MixerControlDetails lastDetails;

    void removeLine(std::uint32_t line) {
        std::erase_if(values_, [&](const auto& entry) { return entry.first.first == line; });
    }
    void removeControl(std::uint32_t line, std::uint32_t control) {
        values_.erase({line, control});
    }
    void put(std::uint32_t line, std::uint32_t control, std::int32_t value) {
        values_[{line, control}] = value;
    }
    [[nodiscard]] std::int32_t value(std::uint32_t line, std::uint32_t control) const {
        return values_.at({line, control});
    }
    [[nodiscard]] int handlesOpened() const { return opened_; }

    MixerResult open(MixerHandle& mixer) override {
        note("open");
        if (!present) {
            return MixerResult::badDevice;
        }
        mixer = static_cast<MixerHandle>(++opened_);
        return MixerResult::noError;
    }
    MixerResult getLineInfo(MixerHandle mixer, MixerLine& line) override {
        note("line " + std::to_string(line.dwComponentType));
        if (line.cbStruct != mixerLineSize) {
            return MixerResult::invalidParameter;
        }
        if (!isOpen(mixer)) {
            return MixerResult::invalidHandle;
        }
        for (const auto& [place, value] : values_) {
            if (place.first == line.dwComponentType) {
                line.dwLineID = lineId(place.first);
                return MixerResult::noError;
            }
        }
        return MixerResult::invalidLine;
    }
    MixerResult getLineControls(MixerHandle mixer, MixerLineControls& controls) override {
        const std::uint32_t line = controls.dwLineID - lineId(0);
        note("control " + text({line, controls.dwControlType}));
        if (controls.cbStruct != mixerLineControlsSize || controls.cControls != 1 ||
            controls.cbmxctrl != mixerControlSize || controls.pamxctrl == nullptr) {
            return MixerResult::invalidParameter;
        }
        if (!isOpen(mixer)) {
            return MixerResult::invalidHandle;
        }
        const auto found = values_.find({line, controls.dwControlType});
        if (found == values_.end()) {
            return MixerResult::invalidControl;
        }
        const bool isMeter = controls.dwControlType == mixer_control::peakMeter;
        *controls.pamxctrl = {mixerControlSize, controlId(found->first), controls.dwControlType,
                              isMeter ? 1U : 0U};
        return MixerResult::noError;
    }
    MixerResult getControlDetails(MixerHandle mixer, MixerControlDetails& details) override {
        lastDetails = details;
        const auto found = find(details.dwControlID);
        note("get " + (found == values_.end() ? "none" : text(found->first)));
        if (const MixerResult result = check(mixer, details); result != MixerResult::noError) {
            return result;
        }
        if (found == values_.end()) {
            return MixerResult::invalidControl;
        }
        *details.paDetails = found->second;
        return MixerResult::noError;
    }
    MixerResult setControlDetails(MixerHandle mixer, const MixerControlDetails& details) override {
        lastDetails = details;
        const auto found = find(details.dwControlID);
        note("set " + (found == values_.end() ? "none" : text(found->first)) + " " +
             (details.paDetails ? std::to_string(*details.paDetails) : "-"));
        if (const MixerResult result = check(mixer, details); result != MixerResult::noError) {
            return result;
        }
        if (found == values_.end()) {
            return MixerResult::invalidControl;
        }
        found->second = *details.paDetails;
        return MixerResult::noError;
    }

  private:
    void note(const std::string& operation) {
        log.push_back(operation);
        if (onOperation) {
            onOperation(operation);
        }
    }
    static std::int32_t startValue(std::uint32_t control) {
        switch (control) {
        case mixer_control::volume:
            return 65535;
        case mixer_control::bass:
        case mixer_control::treble:
            return 32768;
        default:
            return 0;
        }
    }
    /// Differs from the component type, to detect a caller that passes the type as identifier.
    static std::uint32_t lineId(std::uint32_t line) { return line + 1'000'000; }
    static std::uint32_t controlId(const Place& place) {
        return place.first * 16 + (place.second & 0xF) + (place.second >> 28);
    }
    static std::string text(const Place& place) {
        static constexpr char digits[] = "0123456789ABCDEF";
        std::string type;
        for (int shift = 28; shift >= 0; shift -= 4) {
            type += digits[(place.second >> shift) & 0xF];
        }
        return std::to_string(place.first) + " " + type;
    }
    [[nodiscard]] bool isOpen(MixerHandle mixer) const {
        return mixer >= 1 && mixer <= static_cast<MixerHandle>(opened_);
    }
    [[nodiscard]] MixerResult check(MixerHandle mixer, const MixerControlDetails& details) const {
        if (details.cbStruct != mixerControlDetailsSize || details.cChannels != 1 ||
            details.cbDetails != sizeof(std::int32_t) || details.paDetails == nullptr) {
            return MixerResult::invalidParameter;
        }
        if (!isOpen(mixer)) {
            return MixerResult::invalidHandle;
        }
        return detailsFail ? MixerResult::invalidControl : MixerResult::noError;
    }
    std::map<Place, std::int32_t>::iterator find(std::uint32_t identifier) {
        for (auto entry = values_.begin(); entry != values_.end(); ++entry) {
            if (controlId(entry->first) == identifier) {
                return entry;
            }
        }
        return values_.end();
    }

    std::map<Place, std::int32_t> values_;
    int opened_ = 0;
};

} // namespace sonarith::test
