// SPDX-License-Identifier: GPL-3.0-or-later
// Provides the mixer of a sound card whose time the test advances, and a list of the controls that
// the mixer must have. For tests only.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "platform/linux/sound/card_mixer.h"
#include "support/fake_sound.h"

namespace sonarith::sound {

/// A mixer and its card. A test advances the card in virtual time.
class CardMixerTest : public testing::Test {
  protected:
    CardMixerTest() { EXPECT_EQ(mixer.open(handle), MixerResult::noError); }

    std::uint32_t lineOfType(std::uint32_t type) {
        MixerLine line{mixerLineSize, 0, type};
        EXPECT_EQ(mixer.getLineInfo(handle, line), MixerResult::noError) << "line of type " << type;
        return line.dwLineID;
    }
    MixerResult find(std::uint32_t line, std::uint32_t type, MixerControl& control) {
        MixerLineControls controls{mixerLineControlsSize, lineOfType(line), type, 1,
                                   mixerControlSize,      &control};
        return mixer.getLineControls(handle, controls);
    }
    std::uint32_t control(std::uint32_t line, std::uint32_t type) {
        MixerControl found;
        EXPECT_EQ(find(line, type, found), MixerResult::noError)
            << "line type " << line << ", control type " << type;
        return found.dwControlID;
    }
    MixerControlDetails details(std::uint32_t identifier, std::int32_t& value) {
        return {mixerControlDetailsSize, identifier, 1, 0, 4, &value};
    }
    std::int32_t get(std::uint32_t line, std::uint32_t type) {
        std::int32_t value = -77;
        MixerControlDetails record = details(control(line, type), value);
        EXPECT_EQ(mixer.getControlDetails(handle, record), MixerResult::noError);
        return value;
    }
    MixerResult set(std::uint32_t line, std::uint32_t type, std::int32_t value) {
        return mixer.setControlDetails(handle, details(control(line, type), value));
    }
    void play(Line line, std::shared_ptr<SampleSource> source) {
        card.attach(line, std::move(source), now);
    }
    /// Advances the card by `time` and returns the sound that the speakers received.
    std::vector<StereoFrame> hear(SoundCard::Time time) {
        const auto speakers = std::make_shared<fakes::MemorySink>();
        card.setSpeakers(speakers);
        now += time;
        card.advance(now);
        return speakers->frames();
    }

    SoundCard card;
    SoundCard::Time now{};
    int toneChanges = 0;
    CardMixer mixer{&card, [this] { ++toneChanges; },
                    [this] {
                        return now;
                    }};
    MixerHandle handle = 0;
};

struct ExpectedControl {
    std::uint32_t line;
    std::uint32_t type;
    std::int32_t initial; ///< the value in a new mixer
    std::int32_t highest; ///< the greatest value; -1: the control cannot be set
};

inline const std::vector<ExpectedControl>& allControls() {
    static const std::vector<ExpectedControl> all{
        {4, 0x50030001, 65535, 65535},      // master volume
        {4, 0x50030002, 32768, 65535},      // bass
        {4, 0x50030003, 32768, 65535},      // treble
        {4, 0x20010002, 0, 1},              // master mute
        {0x1005, 0x50030001, 65535, 65535}, // disc volume
        {0x1005, 0x20010002, 0, 1},         // disc mute
        {0x1008, 0x20010002, 0, 1},         // wave mute
        {0x1008, 0x10020001, 0, -1},        // wave peak
        {7, 0x10020001, 0, -1},             // recorder peak
        {0x1003, 0x10020001, 0, -1},        // external input peak
    };
    return all;
}

} // namespace sonarith::sound
