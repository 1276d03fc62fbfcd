// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/card_mixer.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/linux/sound/card_mixer_fixture.h"

namespace sonarith::sound {
namespace {

TEST_F(CardMixerTest, HasEachControlOnceWithItsOwnIdentifier) {
    std::set<std::uint32_t> identifiers;
    for (const ExpectedControl& expected : allControls()) {
        MixerControl found;
        ASSERT_EQ(find(expected.line, expected.type, found), MixerResult::noError);
        EXPECT_EQ(found.cbStruct, 152U);
        EXPECT_EQ(found.dwControlType, expected.type);
        EXPECT_EQ(found.cMultipleItems, 0U);
        EXPECT_NE(found.dwControlID, 0U);
        EXPECT_TRUE(identifiers.insert(found.dwControlID).second);
    }
}

TEST_F(CardMixerTest, InitiallyHasFullVolumesNoMutesNeutralToneAndZeroPeaks) {
    for (const ExpectedControl& expected : allControls()) {
        EXPECT_EQ(get(expected.line, expected.type), expected.initial)
            << "line type " << expected.line << ", control type " << expected.type;
    }
}

TEST_F(CardMixerTest, KeepsWrittenValuesAndRejectsValuesOutOfRange) {
    for (const ExpectedControl& expected : allControls()) {
        if (expected.highest < 0) {
            EXPECT_EQ(set(expected.line, expected.type, 0), MixerResult::invalidValue)
                << "a meter must not be settable";
            continue;
        }
        for (const std::int32_t value : {expected.highest, 0, 1}) {
            EXPECT_EQ(set(expected.line, expected.type, value), MixerResult::noError);
            EXPECT_EQ(get(expected.line, expected.type), value);
        }
        for (const std::int32_t value : {expected.highest + 1, -1, INT32_MIN, INT32_MAX}) {
            EXPECT_EQ(set(expected.line, expected.type, value), MixerResult::invalidValue) << value;
            EXPECT_EQ(get(expected.line, expected.type), 1);
        }
    }
}

TEST_F(CardMixerTest, ReportsAToneChangeOnlyForBassAndTreble) {
    for (const ExpectedControl& expected : allControls()) {
        static_cast<void>(set(expected.line, expected.type, 1));
    }
    EXPECT_EQ(toneChanges, 2);
    EXPECT_EQ(set(4, 0x50030002, 70'000), MixerResult::invalidValue);
    EXPECT_EQ(toneChanges, 2);
}

TEST_F(CardMixerTest, RejectsLinesAndControlsThatDoNotExist) {
    MixerLine line{mixerLineSize, 99, 0x1004};
    EXPECT_EQ(mixer.getLineInfo(handle, line), MixerResult::invalidLine);
    EXPECT_EQ(line.dwLineID, 99U);
    MixerControl found{1, 2, 3, 4};
    EXPECT_EQ(find(0x1005, 0x50030002, found), MixerResult::invalidControl)
        << "the disc's line must have no bass control";
    EXPECT_EQ(find(4, 0x10020001, found), MixerResult::invalidControl)
        << "the speakers' line must have no peak meter";
    MixerLineControls controls{mixerLineControlsSize, 4, 0x50030001, 1, mixerControlSize, &found};
    EXPECT_EQ(mixer.getLineControls(handle, controls), MixerResult::invalidLine)
        << "a component type must not be accepted as the identifier of a line";
    EXPECT_EQ(found.dwControlID, 2U);
    for (const std::uint32_t identifier : {0U, 11U, 0xFFFFFFFFU}) {
        std::int32_t value = 5;
        MixerControlDetails record = details(identifier, value);
        EXPECT_EQ(mixer.getControlDetails(handle, record), MixerResult::invalidControl);
        EXPECT_EQ(mixer.setControlDetails(handle, record), MixerResult::invalidControl);
        EXPECT_EQ(value, 5);
    }
}

TEST_F(CardMixerTest, RefusesRecordsWithAWrongSizeAWrongCountOrANullPointer) {
    MixerLine line{mixerLineSize - 1, 99, 4};
    EXPECT_EQ(mixer.getLineInfo(handle, line), MixerResult::invalidParameter);
    EXPECT_EQ(line.dwLineID, 99U);
    MixerControl found;
    const MixerLineControls good{mixerLineControlsSize, lineOfType(4), 0x50030001, 1,
                                 mixerControlSize,      &found};
    for (int wrong = 0; wrong < 4; ++wrong) {
        MixerLineControls controls = good;
        (wrong == 0   ? controls.cbStruct
         : wrong == 1 ? controls.cControls
                      : controls.cbmxctrl) += wrong < 3 ? 1 : 0;
        controls.pamxctrl = wrong == 3 ? nullptr : &found;
        EXPECT_EQ(mixer.getLineControls(handle, controls), MixerResult::invalidParameter)
            << "wrong = " << wrong;
    }
    EXPECT_EQ(found.dwControlID, 0U);
    std::int32_t value = 5;
    const MixerControlDetails whole = details(control(4, 0x50030001), value);
    for (int wrong = 0; wrong < 4; ++wrong) {
        MixerControlDetails record = whole;
        (wrong == 0   ? record.cbStruct
         : wrong == 1 ? record.cChannels
                      : record.cbDetails) += wrong < 3 ? 1 : 0;
        record.paDetails = wrong == 3 ? nullptr : &value;
        EXPECT_EQ(mixer.getControlDetails(handle, record), MixerResult::invalidParameter)
            << "wrong = " << wrong;
        EXPECT_EQ(mixer.setControlDetails(handle, record), MixerResult::invalidParameter)
            << "wrong = " << wrong;
    }
    EXPECT_EQ(value, 5);
    EXPECT_EQ(card.masterVolume(), 65535);
}

TEST_F(CardMixerTest, AcceptsEveryOpenedHandleAndNoOther) {
    MixerHandle second = 0;
    EXPECT_EQ(mixer.open(second), MixerResult::noError);
    EXPECT_NE(second, handle);
    MixerLine line{mixerLineSize, 0, 4};
    EXPECT_EQ(mixer.getLineInfo(handle, line), MixerResult::noError);
    EXPECT_EQ(mixer.getLineInfo(second, line), MixerResult::noError);
    std::int32_t value = 1;
    MixerControlDetails record = details(control(4, 0x50030001), value);
    MixerControl found;
    MixerLineControls controls{mixerLineControlsSize, line.dwLineID, 0x50030001, 1,
                               mixerControlSize,      &found};
    for (const MixerHandle none : {0U, second + 1}) {
        EXPECT_EQ(mixer.getLineInfo(none, line), MixerResult::invalidHandle);
        EXPECT_EQ(mixer.getLineControls(none, controls), MixerResult::invalidHandle);
        EXPECT_EQ(mixer.getControlDetails(none, record), MixerResult::invalidHandle);
        EXPECT_EQ(mixer.setControlDetails(none, record), MixerResult::invalidHandle);
    }
    EXPECT_EQ(card.masterVolume(), 65535);
}

TEST(CardMixer, CannotBeOpenedWithoutACard) {
    CardMixer none(nullptr);
    MixerHandle handle = 42;
    EXPECT_EQ(none.open(handle), MixerResult::badDevice);
    EXPECT_EQ(handle, 42U);
    MixerLine line{mixerLineSize, 0, 4};
    EXPECT_EQ(none.getLineInfo(handle, line), MixerResult::invalidHandle);
    std::int32_t value = 0;
    MixerControlDetails record{mixerControlDetailsSize, 1, 1, 0, 4, &value};
    EXPECT_EQ(none.getControlDetails(handle, record), MixerResult::invalidHandle);
    EXPECT_EQ(none.setControlDetails(handle, record), MixerResult::invalidHandle);
}

} // namespace
} // namespace sonarith::sound
