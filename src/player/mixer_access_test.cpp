// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/mixer_access.h"

#include <gmock/gmock.h>

#include "support/fake_mixer.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

struct MixerAccessTest : testing::Test {
    test::FakeMixer mixer;
    ProcessState process;
    MixerAccess access{mixer, process};
    MixerHandle handle = 0;
    MixerControl record;

    MixerAccessTest() { mixer.open(handle); }
    bool find(std::uint32_t line, std::uint32_t control) {
        return access.GetMixerControl(handle, line, control, record);
    }
};

TEST_F(MixerAccessTest, FindsAControlByItsLineAndType) {
    EXPECT_TRUE(find(mixer_line::speakers, mixer_control::volume));
    EXPECT_NE(record.dwControlID, 0U);
    EXPECT_EQ(record.dwControlType, mixer_control::volume);
    EXPECT_EQ(record.cbStruct, 152U);
    EXPECT_EQ(record.cMultipleItems, 0U);
    EXPECT_THAT(mixer.log, ElementsAre("open", "line 4", "control 4 50030001"));
    EXPECT_TRUE(find(mixer_line::waveIn, mixer_control::peakMeter));
    EXPECT_EQ(record.cMultipleItems, 1U);
}

TEST_F(MixerAccessTest, ALookUpOnAMissingLineDoesNotChangeTheControlRecord) {
    mixer.removeLine(mixer_line::speakers);
    EXPECT_FALSE(find(mixer_line::speakers, mixer_control::volume));
    EXPECT_EQ(record.cbStruct, 0U);
    EXPECT_EQ(record.dwControlID, 0U);
    EXPECT_EQ(mixer.log.back(), "line 4");
}

TEST_F(MixerAccessTest, ALookUpOfAMissingControlSetsOnlyTheSizeOfTheControlRecord) {
    mixer.removeControl(mixer_line::speakers, mixer_control::bass);
    EXPECT_FALSE(find(mixer_line::speakers, mixer_control::bass));
    EXPECT_EQ(record.cbStruct, 152U);
    EXPECT_EQ(record.dwControlID, 0U);
}

TEST_F(MixerAccessTest, AFailedLookUpKeepsThePreviousControl) {
    find(mixer_line::speakers, mixer_control::mute);
    const std::uint32_t master = record.dwControlID;
    mixer.removeControl(mixer_line::compactDisc, mixer_control::mute);
    EXPECT_FALSE(find(mixer_line::compactDisc, mixer_control::mute));
    EXPECT_EQ(record.dwControlID, master);
}

TEST_F(MixerAccessTest, ReadsAndWritesAValueAndStoresTheResultCodeOfTheMixer) {
    find(mixer_line::compactDisc, mixer_control::volume);
    mixer.put(mixer_line::compactDisc, mixer_control::volume, 12345);
    EXPECT_EQ(access.GetControlValue(handle, record), 12345);
    EXPECT_TRUE(access.SetControlValue(handle, record, 0));
    EXPECT_EQ(mixer.value(mixer_line::compactDisc, mixer_control::volume), 0);
    EXPECT_EQ(process.mixerLastError, MixerResult::noError);

    mixer.detailsFail = true;
    EXPECT_EQ(access.GetControlValue(handle, record), -1);
    EXPECT_EQ(process.mixerLastError, MixerResult::invalidControl);
    EXPECT_FALSE(access.SetControlValue(handle, record, 7));
    EXPECT_EQ(mixer.value(mixer_line::compactDisc, mixer_control::volume), 0);

    mixer.detailsFail = false;
    EXPECT_EQ(access.GetControlValue(handle, record), 0);
    EXPECT_EQ(process.mixerLastError, MixerResult::noError);
}

TEST_F(MixerAccessTest, UsesOneChannelAndNoItemsEvenForAControlThatHasItems) {
    find(mixer_line::waveIn, mixer_control::peakMeter);
    ASSERT_EQ(record.cMultipleItems, 1U);
    EXPECT_EQ(access.GetControlValue(handle, record), 0);
    EXPECT_EQ(mixer.lastDetails.cChannels, 1U);
    EXPECT_EQ(mixer.lastDetails.cMultipleItems, 0U);
    access.SetControlValue(handle, record, 7);
    EXPECT_EQ(mixer.lastDetails.cMultipleItems, 0U);
    EXPECT_EQ(mixer.lastDetails.dwControlID, record.dwControlID);
}

TEST_F(MixerAccessTest, EveryAccessWithAnInvalidMixerHandleFails) {
    handle = 99;
    EXPECT_FALSE(find(mixer_line::speakers, mixer_control::volume));
    EXPECT_EQ(access.GetControlValue(handle, record), -1);
    EXPECT_EQ(process.mixerLastError, MixerResult::invalidHandle);
    EXPECT_FALSE(access.SetControlValue(handle, record, 1));
}

TEST_F(MixerAccessTest, WritingToAControlThatWasNeverFoundFails) {
    EXPECT_FALSE(access.SetControlValue(handle, record, 65535));
    EXPECT_EQ(process.mixerLastError, MixerResult::invalidControl);
    EXPECT_EQ(mixer.log.back(), "set none 65535");
}

TEST_F(MixerAccessTest, SetMuteControlUnmutesWithEitherArgument) {
    find(mixer_line::waveOut, mixer_control::mute);
    for (const bool state : {true, false}) {
        mixer.put(mixer_line::waveOut, mixer_control::mute, 1);
        EXPECT_TRUE(access.SetMuteControl(handle, record, state));
        EXPECT_EQ(mixer.value(mixer_line::waveOut, mixer_control::mute), 0);
    }
    mixer.detailsFail = true;
    EXPECT_FALSE(access.SetMuteControl(handle, record, true));
}

} // namespace
} // namespace sonarith
