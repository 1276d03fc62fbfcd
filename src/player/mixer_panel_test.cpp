// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/mixer_panel.h"

#include "support/player_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* noMixer =
    "Couldn't open the mixer please check if a audio mixer is installed then retry.";

struct MixerPanelTest : test::PlayerWorld {
    MixerPanelTest() { operations.clear(); }
    void removeTone(std::uint32_t control) {
        mixer.removeControl(mixer_line::speakers, control);
        // Loads the panel again with new records: the control is not found, so its record has no
        // identifier.
        player.mixerState = {};
        form.unload();
        form.load();
        operations.clear();
    }
};

// --- reading -------------------------------------------------------------------------------

TEST_F(MixerPanelTest, Command2OpensTheMixerAndReadsFourLevelsInOrder) {
    EXPECT_THAT(operationsOf([&] { form.Command2.click(); }),
                ElementsAre("mixer open",                                                       //
                            "mixer line 4", "mixer control 4 50030001", "mixer get 4 50030001", //
                            "mixer line 4101", "mixer control 4101 50030001",
                            "mixer get 4101 50030001", "mixer line 4", "mixer control 4 50030002",
                            "mixer get 4 50030002", //
                            "mixer line 4", "mixer control 4 50030003", "mixer get 4 50030003"));
    EXPECT_THAT(boxes.shown, IsEmpty());
    EXPECT_TRUE(player.mixerState.mixerFound);
}

TEST_F(MixerPanelTest, ASliderIsInvertedAndItsNumberIsBetween0And10) {
    struct Row {
        int level;
        int slider;
        const char* number;
    };
    for (const Row& row :
         {Row{65535, 0, "10"}, Row{65530, 5, "10"}, Row{65529, 6, "9"}, Row{32768, 32767, "5"},
          Row{6553, 58982, "1"}, Row{6552, 58983, "0"}, Row{0, 65535, "0"}}) {
        SCOPED_TRACE(row.level);
        mixer.put(mixer_line::speakers, mixer_control::volume, row.level);
        mixer.put(mixer_line::compactDisc, mixer_control::volume, row.level);
        mixer.put(mixer_line::speakers, mixer_control::bass, row.level);
        mixer.put(mixer_line::speakers, mixer_control::treble, row.level);
        form.Command2.click();
        for (const Slider* slider :
             {&form.sliderMasterVolume, &form.Slider1, &form.BassSlider, &form.trebleslider}) {
            EXPECT_EQ(slider->value(), row.slider) << slider->name();
        }
        for (const TextBox* number :
             {&form.txtMasterVolume, &form.Text1, &form.BassText, &form.Treblesliderte}) {
            EXPECT_EQ(number->text(), row.number) << number->name();
        }
    }
}

TEST_F(MixerPanelTest, ReadingTheLevelsRunsNoHandlerOfASlider) {
    mixer.put(mixer_line::speakers, mixer_control::volume, 100);
    const std::vector<std::string> reading = operationsOf([&] { form.Command2.click(); });
    EXPECT_EQ(form.sliderMasterVolume.value(), 65435) << "the reading must move the slider";
    for (const std::string& operation : reading) {
        EXPECT_FALSE(operation.starts_with("mixer set")) << operation;
    }
}

TEST_F(MixerPanelTest, ALevelThatCannotBeReadChangesNeitherSliderNorNumber) {
    removeTone(mixer_control::bass);
    EXPECT_EQ(form.BassText.text(), "32768");
    EXPECT_EQ(form.BassSlider.value(), 0);
    EXPECT_EQ(form.Treblesliderte.text(), "5");
    removeTone(mixer_control::treble);
    EXPECT_EQ(form.Treblesliderte.text(), "32768");
    EXPECT_EQ(form.txtMasterVolume.text(), "10");

    mixer.put(mixer_line::speakers, mixer_control::volume, 0);
    mixer.detailsFail = true;
    form.Command2.click();
    EXPECT_EQ(form.txtMasterVolume.text(), "10");
    EXPECT_EQ(form.sliderMasterVolume.value(), 0);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(MixerPanelTest, AControlThatIsNotFoundIsNotRead) {
    // The records of the controls still have the identifiers that were found earlier. These must
    // not be used, because the controls no longer exist.
    mixer.removeControl(mixer_line::speakers, mixer_control::bass);
    mixer.removeControl(mixer_line::speakers, mixer_control::treble);
    EXPECT_THAT(operationsOf([&] { form.Command2.click(); }),
                ElementsAre("mixer open",                                                       //
                            "mixer line 4", "mixer control 4 50030001", "mixer get 4 50030001", //
                            "mixer line 4101", "mixer control 4101 50030001",
                            "mixer get 4101 50030001",                  //
                            "mixer line 4", "mixer control 4 50030002", //
                            "mixer line 4", "mixer control 4 50030003"));
}

TEST_F(MixerPanelTest, ALevelOutsideTheSlidersRangeDoesNotMoveTheSlider) {
    mixer.put(mixer_line::speakers, mixer_control::volume, 70000);
    form.Command2.click();
    EXPECT_EQ(form.sliderMasterVolume.value(), 0);
    EXPECT_EQ(form.txtMasterVolume.text(), "10");
}

TEST_F(MixerPanelTest, WithoutAMixerAMessageAppearsAndNothingIsRead) {
    mixer.present = false;
    EXPECT_THAT(operationsOf([&] { form.Command2.click(); }), ElementsAre("mixer open"));
    EXPECT_THAT(boxes.shown, ElementsAre(test::ShownBox{.text = noMixer}));
}

TEST_F(MixerPanelTest, EachOpenReturnsANewHandleButAFailedOpenKeepsThePreviousHandle) {
    const MixerHandle first = player.mixerState.hMixer;
    form.Command2.click();
    EXPECT_EQ(player.mixerState.hMixer, first + 1);
    mixer.present = false;
    form.Command2.click();
    EXPECT_EQ(player.mixerState.hMixer, first + 1);
    EXPECT_NE(player.mixerState.mixerResult, MixerResult::noError);
}

// --- the load ------------------------------------------------------------------------------

TEST_F(MixerPanelTest, TheLoadSetsMasterAndDiscToFullVolumeButTheSlidersShowThePreviousLevels) {
    mixer.put(mixer_line::speakers, mixer_control::volume, 20000);
    mixer.put(mixer_line::compactDisc, mixer_control::volume, 0);
    form.unload();
    const std::vector<std::string> sent = operationsOf([&] { form.load(); });
    ASSERT_EQ(sent.size(), 16U);
    EXPECT_THAT(std::vector(sent.begin() + 13, sent.end()),
                ElementsAre("mixer set 4 50030001 65535", "mixer set 4101 50030001 65535",
                            "mixer set none 65535"));
    EXPECT_EQ(mixer.value(mixer_line::speakers, mixer_control::volume), 65535);
    EXPECT_EQ(mixer.value(mixer_line::compactDisc, mixer_control::volume), 65535);
    EXPECT_EQ(form.sliderMasterVolume.value(), 45535);
    EXPECT_EQ(form.txtMasterVolume.text(), "3");
    EXPECT_EQ(form.Slider1.value(), 65535);
    EXPECT_EQ(form.Text1.text(), "0");
    EXPECT_EQ(player.mixerState.Volume, 65535);
}

TEST_F(MixerPanelTest, ALoadWithoutAMixerShowsOneMessageAndTheInitialSlidersAndNumbers) {
    form.unload();
    player.mixerState = {};
    mixer.present = false;
    form.load();
    EXPECT_THAT(boxes.texts(), ElementsAre(noMixer));
    for (const Slider* slider :
         {&form.sliderMasterVolume, &form.Slider1, &form.BassSlider, &form.trebleslider}) {
        EXPECT_EQ(slider->value(), 0) << slider->name();
    }
    for (const TextBox* number :
         {&form.txtMasterVolume, &form.Text1, &form.BassText, &form.Treblesliderte}) {
        EXPECT_EQ(number->text(), "32768") << number->name();
    }
    EXPECT_TRUE(form.loaded());
    EXPECT_TRUE(process.PlayerOpen);
}

TEST_F(MixerPanelTest, ALoadWithoutAMixerStillTriesItsThreeWrites) {
    form.unload();
    player.mixerState = {};
    mixer.present = false;
    EXPECT_THAT(operationsOf([&] { form.load(); }),
                ElementsAre("mixer open", "mixer set none 65535", "mixer set none 65535",
                            "mixer set none 65535"));
    EXPECT_EQ(process.mixerLastError, MixerResult::invalidHandle);
}

TEST_F(MixerPanelTest, TheSpareControlIsNeverLookedUpAndItsWriteHasNoEffect) {
    EXPECT_THAT(operationsOf([&] { form.Command5.click(); }), ElementsAre("mixer set none 65535"));
    EXPECT_EQ(player.mixerState.SpareCtrl.dwControlID, 0U);
    EXPECT_EQ(process.mixerLastError, MixerResult::invalidControl);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

// --- sliders -------------------------------------------------------------------------------

TEST_F(MixerPanelTest, AMovedSliderWritesItsLevelAndChangesItsNumber) {
    struct Row {
        Slider& slider;
        TextBox& number;
        std::string place;
    };
    const Row rows[] = {{form.sliderMasterVolume, form.txtMasterVolume, "4 50030001"},
                        {form.Slider1, form.Text1, "4101 50030001"},
                        {form.BassSlider, form.BassText, "4 50030002"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.slider.name());
        EXPECT_THAT(operationsOf([&] { row.slider.moveTo(65535); }),
                    ElementsAre("mixer set " + row.place + " 0"));
        EXPECT_EQ(row.number.text(), "0");
        EXPECT_THAT(operationsOf([&] { row.slider.moveTo(45535); }),
                    ElementsAre("mixer set " + row.place + " 20000"));
        EXPECT_EQ(row.number.text(), "3");
        EXPECT_EQ(player.mixerState.Volume, 20000);
    }
}

TEST_F(MixerPanelTest, TheTrebleSliderFindsItsControlAtEachMove) {
    for (const int place : {10, 20}) {
        EXPECT_THAT(operationsOf([&] { form.trebleslider.moveTo(place); }),
                    ElementsAre("mixer line 4", "mixer control 4 50030003",
                                "mixer set 4 50030003 " + std::to_string(65535 - place)));
    }
    EXPECT_EQ(form.Treblesliderte.text(), "9");
}

TEST_F(MixerPanelTest, WithoutItsControlTheTrebleSliderWritesNothingAndKeepsItsNumber) {
    removeTone(mixer_control::treble);
    player.mixerState.Volume = 77;
    EXPECT_THAT(operationsOf([&] { form.trebleslider.moveTo(30000); }),
                ElementsAre("mixer line 4", "mixer control 4 50030003"));
    EXPECT_EQ(form.Treblesliderte.text(), "32768");
    EXPECT_EQ(player.mixerState.Volume, 77);
}

TEST_F(MixerPanelTest, WithoutItsControlTheBassSliderWritesToNoControlButChangesItsNumber) {
    removeTone(mixer_control::bass);
    EXPECT_THAT(operationsOf([&] { form.BassSlider.moveTo(65535); }),
                ElementsAre("mixer set none 0"));
    EXPECT_EQ(form.BassText.text(), "0");
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(MixerPanelTest, AFailedWriteStillChangesTheNumber) {
    mixer.detailsFail = true;
    form.Slider1.moveTo(65535);
    EXPECT_EQ(form.Text1.text(), "0");
    EXPECT_EQ(mixer.value(mixer_line::compactDisc, mixer_control::volume), 65535);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(MixerPanelTest, ANumberChangesBeforeItsLevelIsWritten) {
    std::vector<std::string> numbers;
    mixer.onOperation = [&](const std::string& operation) {
        if (operation.starts_with("set ")) {
            numbers.push_back(operation + ": " + form.Text1.text() + form.BassText.text() +
                              form.Treblesliderte.text());
        }
    };
    form.Slider1.moveTo(65535);
    form.BassSlider.moveTo(65535);
    form.trebleslider.moveTo(65535);
    EXPECT_THAT(numbers, ElementsAre("set 4101 50030001 0: 055", "set 4 50030002 0: 005",
                                     "set 4 50030003 0: 000"));
}

TEST_F(MixerPanelTest, ThePanSliderAndTheThreeHiddenCheckBoxesDoNothing) {
    EXPECT_THAT(operationsOf([&] {
                    form.Slider2.moveTo(1);
                    for (CheckBox* box : {&form.Check1, &form.Check2, &form.Check6}) {
                        box->setValue(1).passOver();
                    }
                }),
                IsEmpty());
}

// --- mutes ---------------------------------------------------------------------------------

TEST_F(MixerPanelTest, AMuteSwitchFindsItsControlAndWritesAtOnce) {
    struct Row {
        OptionButton& button;
        std::uint32_t line;
        int value;
    };
    const Row rows[] = {
        {form.Option2, mixer_line::speakers, 1},     {form.Option1, mixer_line::speakers, 0},
        {form.Option4, mixer_line::waveOut, 1},      {form.Option3, mixer_line::waveOut, 0},
        {form.Option13, mixer_line::compactDisc, 1}, {form.Option14, mixer_line::compactDisc, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.button.name());
        const std::string line = std::to_string(row.line);
        EXPECT_THAT(operationsOf([&] { row.button.choose(); }),
                    ElementsAre("mixer line " + line, "mixer control " + line + " 20010002",
                                "mixer set " + line + " 20010002 " + std::to_string(row.value)));
        EXPECT_TRUE(row.button.selected());
        EXPECT_EQ(mixer.value(row.line, mixer_control::mute), row.value);
    }
}

TEST_F(MixerPanelTest, TheMuteSwitchesShareTwoScratchRecords) {
    const auto identifiers = [&](OptionButton& button) {
        player.mixerState.MuteCtrlA = {};
        player.mixerState.MuteCtrlB = {};
        button.click();
        return std::pair(player.mixerState.MuteCtrlA.dwControlID != 0,
                         player.mixerState.MuteCtrlB.dwControlID != 0);
    };
    for (OptionButton* button : {&form.Option1, &form.Option4, &form.Option3, &form.Option14}) {
        EXPECT_EQ(identifiers(*button), std::pair(true, false)) << button->name();
    }
    for (OptionButton* button : {&form.Option2, &form.Option13}) {
        EXPECT_EQ(identifiers(*button), std::pair(false, true)) << button->name();
    }
}

TEST_F(MixerPanelTest, AMissingMuteControlShowsNoMessage) {
    mixer.removeLine(mixer_line::compactDisc);
    player.mixerState.MuteCtrlB = {};
    EXPECT_THAT(operationsOf([&] { form.Option13.click(); }),
                ElementsAre("mixer line 4101", "mixer set none 1"));
    EXPECT_FALSE(player.mixerState.mixerFound);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(MixerPanelTest, AMuteSwitchWithoutItsControlWritesToTheControlThatAnotherSwitchFound) {
    // The write does not depend on the result of the look-up, and the record still contains the
    // control of another switch, because the switches share the records.
    mixer.removeLine(mixer_line::compactDisc);
    form.Option2.click();
    mixer.put(mixer_line::speakers, mixer_control::mute, 0);
    EXPECT_THAT(operationsOf([&] { form.Option13.click(); }),
                ElementsAre("mixer line 4101", "mixer set 4 20010002 1"));
    form.Option3.click();
    EXPECT_THAT(operationsOf([&] { form.Option14.click(); }),
                ElementsAre("mixer line 4101", "mixer set 4104 20010002 0"));
}

TEST_F(MixerPanelTest, SetMuteUnmutesTheDiscAsOption14Does) {
    mixer.put(mixer_line::compactDisc, mixer_control::mute, 1);
    const auto asButton = operationsOf([&] { form.Option14.click(); });
    mixer.put(mixer_line::compactDisc, mixer_control::mute, 1);
    EXPECT_EQ(operationsOf([&] { player.mixer.SetMute(); }), asButton);
    EXPECT_FALSE(discMuted());
}

TEST_F(MixerPanelTest, TheMuteSwitchesWorkWhileThePanelIsNotLoaded) {
    form.unload();
    form.Option13.click();
    EXPECT_TRUE(discMuted());
    form.Option14.click();
    EXPECT_FALSE(discMuted());
    EXPECT_FALSE(form.loaded());
}

} // namespace
} // namespace sonarith
