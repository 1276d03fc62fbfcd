// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the controls of the CD player's panel: transport, display, mixer and level meter. The
// folder player/ implements their behaviour.
#pragma once

#include "platform/controls/basic_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/option_button.h"
#include "platform/controls/picture_box.h"
#include "platform/controls/slider.h"
#include "platform/controls/timer.h"
#include "platform/event_loop.h"

namespace sonarith {

class Form4 : public Form {
  public:
    /// The loop must outlive this object.
    explicit Form4(EventLoop& loop);

    // Display.
    TextBox CD{*this, "CD", "OFF"};          ///< state of player and disc, in words
    TextBox timeWindow{*this, "timeWindow"}; ///< track and time, "[03] 01:05"
    Label tracktime{*this, "tracktime"};     ///< "Track time: " and the track's length

    // The power switch.
    OptionGroup power;
    OptionButton OptCD{*this, power, "OptCD"};
    OptionButton optNoCD{*this, power, "optNoCD"};

    // Transport buttons. Initially all are disabled: eject until the CD device is open, the others
    // until a disc is ready.
    CommandButton play{*this, "play"};
    CommandButton pause{*this, "pause"};
    CommandButton stopbtn{*this, "stopbtn"};
    CommandButton ftrack{*this, "ftrack"};
    CommandButton btrack{*this, "btrack"};
    CommandButton eject{*this, "eject"};

    // Mixer. The sliders are inverted: a slider at 0 stands for the mixer's highest level. The text
    // box beside a slider shows "32768" at first, and later the level, a number from 0 to 10.
    Slider sliderMasterVolume{*this, "sliderMasterVolume", 0, 65535};
    Slider Slider1{*this, "Slider1", 0, 65535}; ///< volume of the disc's line
    Slider BassSlider{*this, "BassSlider", 0, 65535};
    Slider trebleslider{*this, "trebleslider", 0, 65535};
    Slider Slider2{*this, "Slider2", 0, 65535}; ///< pan; it has no effect and is not shown
    TextBox txtMasterVolume{*this, "txtMasterVolume", "32768"};
    TextBox Text1{*this, "Text1", "32768"}; ///< beside Slider1
    TextBox BassText{*this, "BassText", "32768"};
    TextBox Treblesliderte{*this, "Treblesliderte", "32768"};

    // Mutes.
    Frame Master{*this, "Master", "Master"};
    Frame Wave{*this, "Wave", "Wave"};
    Frame Cd{*this, "Cd", "CD"};
    OptionGroup masterMute;
    OptionButton Option2{*this, masterMute, "Option2"};
    OptionButton Option1{*this, masterMute, "Option1"};
    OptionGroup waveMute;
    OptionButton Option4{*this, waveMute, "Option4"};
    OptionButton Option3{*this, waveMute, "Option3"};
    OptionGroup cdMute;
    OptionButton Option13{*this, cdMute, "Option13"};
    OptionButton Option14{*this, cdMute, "Option14"};
    CheckBox Check3{*this, "Check3",
                    "input"}; ///< a click starts (1) or stops (0) the meter's input
    // Check1, Check2 and Check6 are neither visible nor handled.
    CheckBox Check1{*this, "Check1"};
    CheckBox Check2{*this, "Check2"};
    CheckBox Check6{*this, "Check6"};

    CommandButton Command1{*this, "Command1", "EXIT"};
    CommandButton Command2{*this, "Command2", "MIXER"}; ///< reads the mixer into the sliders
    // Command3 to Command6 are never visible; code clicks them to call their handlers.
    CommandButton Command3{*this, "Command3"};
    CommandButton Command4{*this, "Command4"};
    CommandButton Command5{*this, "Command5"};
    CommandButton Command6{*this, "Command6"}; ///< switches the player off

    // Level meter, and surfaces with which the user drags the panel.
    PictureBox picPeakVol{*this, "picPeakVol"}; ///< the trace of the level over time
    PictureBox Picture8{*this, "Picture8"};     ///< clips Label4
    Label Label4{*this, "Label4"};              ///< the bar; its top shows the level
    PictureBox Picture3{*this, "Picture3"};
    PictureBox Picture4{*this, "Picture4"};
    PictureBox Picture10{*this, "Picture10"};

    Timer Timer6; ///< polls the disc
    Timer Timer1; ///< has the same handler as Timer6; nothing enables it
    Timer Timer2; ///< runs a second variant of the meter's step; nothing enables it
    Timer Timer4; ///< runs a third variant of the meter's step; nothing enables it
    Timer Timer3; ///< runs the meter's step

    MenuItem mnuCDon{*this, "mnuCDon", "CD On"};
    MenuItem mnuPlayCD{*this, "mnuPlayCD", "Play CD"};
    MenuItem mnuStopPlay{*this, "mnuStopPlay", "Stop Playing CD"};
    MenuItem mnuCDOff{*this, "mnuCDOff", "CD Off"};
    MenuItem mnuMinCD{*this, "mnuMinCD", "Minimize CD Player"};
    MenuItem mnuCubeit{*this, "mnuCubeit", "Show as Cube"};
    MenuItem mnuUnloadCD{*this, "mnuUnloadCD", "Close CD Player"};
    MenuItem mnuCD{
        *this,
        "mnuCD",
        "CD Menu",
        {&mnuCDon, &mnuPlayCD, &mnuStopPlay, &mnuCDOff, &mnuMinCD, &mnuCubeit, &mnuUnloadCD}};

    MenuItem mnuCDonp{*this, "mnuCDonp", "CD On"};
    MenuItem mnuPlayCDp{*this, "mnuPlayCDp", "Play CD"};
    MenuItem mnuStopPlayp{*this, "mnuStopPlayp",
                          "mnuStopPlay"}; ///< deliberate: the caption is the name of another entry
    MenuItem mnuCDOffp{*this, "mnuCDOffp", "CD Off"};
    MenuItem mnuMinimCDp{*this, "mnuMinimCDp", "Minimize CD Player"};
    MenuItem mnuCubeitp{*this, "mnuCubeitp", "Show as Cube"};
    MenuItem mnuCloseCDp{*this, "mnuCloseCDp", "Close CD Player"};
    MenuItem mnupopup{*this,
                      "mnupopup",
                      "PopupMenu",
                      {&mnuCDonp, &mnuPlayCDp, &mnuStopPlayp, &mnuCDOffp, &mnuMinimCDp, &mnuCubeitp,
                       &mnuCloseCDp}};
};

} // namespace sonarith
