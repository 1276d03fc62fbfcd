// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/form4.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "support/virtual_event_loop.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

struct Form4Test : testing::Test {
    test::VirtualEventLoop loop;
    Form4 form{loop};
};

std::vector<std::string> captionsOf(const MenuItem& menu) {
    std::vector<std::string> captions;
    for (const MenuItem* entry : menu.entries()) {
        captions.push_back(entry->caption());
    }
    return captions;
}

TEST_F(Form4Test, HasTheTitleCdPlayerAndIsSwitchedOff) {
    EXPECT_EQ(form.name(), "Form4");
    EXPECT_EQ(form.caption(), "CD Player");
    EXPECT_EQ(form.CD.text(), "OFF");
    EXPECT_EQ(form.timeWindow.text(), "");
    EXPECT_EQ(form.tracktime.caption(), "");
    for (const OptionGroup* group : {&form.power, &form.masterMute, &form.waveMute, &form.cdMute}) {
        EXPECT_EQ(group->buttons().size(), 2U);
        for (const OptionButton* button : group->buttons()) {
            EXPECT_FALSE(button->selected()) << button->name();
        }
    }
    for (const CommandButton* button :
         {&form.play, &form.pause, &form.stopbtn, &form.ftrack, &form.btrack, &form.eject}) {
        EXPECT_FALSE(button->enabled()) << button->name();
        EXPECT_TRUE(button->visible()) << button->name();
    }
}

TEST_F(Form4Test, HasItsToolTipsAndCaptions) {
    const std::pair<const Control*, const char*> tips[] = {
        {&form.OptCD, "Open CD Player"},
        {&form.optNoCD, "CD Player Off"},
        {&form.play, "Play"},
        {&form.pause, "Pause"},
        {&form.stopbtn, "Stop"},
        {&form.ftrack, "Next Track"},
        {&form.btrack, "Previous Track"},
        {&form.eject, "Eject"},
        {&form.picPeakVol, "Sound Level Meter"},
        {&form.Slider2, "Pan Control"},
        {&form.Option2, "Mute"},
        {&form.Option4, "Mute"},
        {&form.Option13, "Mute"},
        {&form.Option1, "Unmute"},
        {&form.Option3, "Unmute"},
        {&form.Option14, "Unmute"},
    };
    for (const auto& [control, tip] : tips) {
        EXPECT_EQ(control->toolTip(), tip) << control->name();
    }
    EXPECT_EQ(form.Check3.caption(), "input");
    EXPECT_EQ(form.Command1.caption(), "EXIT");
    EXPECT_EQ(form.Command2.caption(), "MIXER");
    EXPECT_EQ(form.Master.caption(), "Master");
    EXPECT_EQ(form.Wave.caption(), "Wave");
    EXPECT_EQ(form.Cd.caption(), "CD");
}

TEST_F(Form4Test, SlidersRangeFrom0To65535AndTheirLockedBoxesShow32768) {
    for (const Slider* slider : {&form.sliderMasterVolume, &form.Slider1, &form.BassSlider,
                                 &form.trebleslider, &form.Slider2}) {
        EXPECT_EQ(slider->minimum(), 0) << slider->name();
        EXPECT_EQ(slider->maximum(), 65535) << slider->name();
    }
    for (const TextBox* number :
         {&form.txtMasterVolume, &form.Text1, &form.BassText, &form.Treblesliderte}) {
        EXPECT_EQ(number->text(), "32768") << number->name();
        EXPECT_TRUE(number->locked()) << number->name();
    }
    EXPECT_TRUE(form.CD.locked());
    EXPECT_TRUE(form.timeWindow.locked());
}

TEST_F(Form4Test, PositionsTheMeter) {
    struct Row {
        const Control& control;
        Twips left, top, width, height;
    };
    for (const Row& row : {Row{form.picPeakVol, 45_twips, 45_twips, 2445_twips, 945_twips},
                           Row{form.Picture8, 2520_twips, 60_twips, 135_twips, 915_twips},
                           Row{form.Label4, Twips(-180), 870_twips, 555_twips, 6000_twips}}) {
        EXPECT_EQ(row.control.left(), row.left) << row.control.name();
        EXPECT_EQ(row.control.top(), row.top) << row.control.name();
        EXPECT_EQ(row.control.width(), row.width) << row.control.name();
        EXPECT_EQ(row.control.height(), row.height) << row.control.name();
    }
}

TEST_F(Form4Test, TimersHaveTheirIntervalsAndAreOffAfterTheLoad) {
    const std::pair<const Timer*, EventLoop::Duration> timers[] = {{&form.Timer6, 1000ms},
                                                                   {&form.Timer1, 1000ms},
                                                                   {&form.Timer2, 10ms},
                                                                   {&form.Timer3, 10ms},
                                                                   {&form.Timer4, 10ms}};
    form.load();
    for (const auto& [timer, interval] : timers) {
        EXPECT_FALSE(timer->enabled()) << timer->name();
        EXPECT_EQ(timer->interval(), interval) << timer->name();
    }
}

TEST_F(Form4Test, HasAMenuAndAPopupMenuWhoseEntriesDifferOnlyInTheThirdCaption) {
    EXPECT_EQ(form.mnuCD.caption(), "CD Menu");
    EXPECT_THAT(captionsOf(form.mnuCD),
                ElementsAre("CD On", "Play CD", "Stop Playing CD", "CD Off", "Minimize CD Player",
                            "Show as Cube", "Close CD Player"));
    EXPECT_EQ(form.mnupopup.caption(), "PopupMenu");
    EXPECT_FALSE(form.mnupopup.visible());
    // Deliberate: the third caption is "mnuStopPlay", which is the name() of mnuCD's third entry,
    // and not "Stop Playing CD", the caption of that entry.
    EXPECT_THAT(captionsOf(form.mnupopup),
                ElementsAre("CD On", "Play CD", "mnuStopPlay", "CD Off", "Minimize CD Player",
                            "Show as Cube", "Close CD Player"));
}

TEST_F(Form4Test, AnotherLoadRestoresTheDesignedState) {
    form.load();
    form.CD.setText("Cd Ready");
    form.timeWindow.setText("[01] 00:00");
    form.timeWindow.setFontSize(18);
    form.tracktime.setCaption("Track time: 01:00:00");
    form.OptCD.setSelected(true);
    form.Option13.setSelected(true);
    form.play.setEnabled(true);
    form.Check3.setValue(1).passOver();
    form.sliderMasterVolume.setValue(5).passOver();
    form.Label4.setTop(0_twips);
    form.picPeakVol.line({0, 0}, {1, 1});
    form.Timer6.setEnabled(true);
    form.unload();
    EXPECT_FALSE(form.Timer6.enabled());
    form.load();
    EXPECT_EQ(form.CD.text(), "OFF");
    EXPECT_EQ(form.timeWindow.text(), "");
    EXPECT_EQ(form.timeWindow.fontSize(), 0);
    EXPECT_EQ(form.tracktime.caption(), "");
    EXPECT_FALSE(form.OptCD.selected());
    EXPECT_FALSE(form.Option13.selected());
    EXPECT_FALSE(form.play.enabled());
    EXPECT_EQ(form.Check3.value(), 0);
    EXPECT_EQ(form.sliderMasterVolume.value(), 0);
    EXPECT_EQ(form.Label4.top(), 870_twips);
    EXPECT_TRUE(form.picPeakVol.lines().empty());
}

} // namespace
} // namespace sonarith
