// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/form4.h"

namespace sonarith {

using namespace std::chrono_literals;

namespace {

void place(Control& control, Twips left, Twips top, Twips width, Twips height) {
    control.setLeft(left);
    control.setTop(top);
    control.setWidth(width);
    control.setHeight(height);
}

} // namespace

Form4::Form4(EventLoop& loop)
    : Form("Form4", "CD Player"),
      Timer6(*this, loop, "Timer6", 1000ms),
      Timer1(*this, loop, "Timer1", 1000ms),
      Timer2(*this, loop, "Timer2", 10ms),
      Timer4(*this, loop, "Timer4", 10ms),
      Timer3(*this, loop, "Timer3", 10ms, TimerAtLoad::off, TicksInTime::inSound) {
    OptCD.setToolTip("Open CD Player");
    optNoCD.setToolTip("CD Player Off");
    play.setToolTip("Play");
    pause.setToolTip("Pause");
    stopbtn.setToolTip("Stop");
    ftrack.setToolTip("Next Track");
    btrack.setToolTip("Previous Track");
    eject.setToolTip("Eject");
    for (CommandButton* button : {&play, &pause, &stopbtn, &ftrack, &btrack, &eject}) {
        button->setEnabled(false);
    }
    for (TextBox* box : {&CD, &timeWindow, &txtMasterVolume, &Text1, &BassText, &Treblesliderte}) {
        box->setLocked(true);
    }
    for (OptionButton* mute : {&Option2, &Option4, &Option13}) {
        mute->setToolTip("Mute");
    }
    for (OptionButton* unmute : {&Option1, &Option3, &Option14}) {
        unmute->setToolTip("Unmute");
    }
    picPeakVol.setToolTip("Sound Level Meter");
    place(picPeakVol, 45_twips, 45_twips, 2445_twips, 945_twips);
    place(Picture8, 2520_twips, 60_twips, 135_twips, 915_twips);
    place(Label4, -180_twips, 870_twips, 555_twips, 6000_twips);
    // One sweep of the trace draws a line for each 20 twips of the width: 123 lines.
    picPeakVol.reserveLines(128);

    Slider2.setToolTip("Pan Control");
    Slider2.setVisible(false);
    for (CheckBox* box : {&Check1, &Check2, &Check6}) {
        box->setVisible(false);
    }
    for (CommandButton* button : {&Command3, &Command4, &Command5, &Command6}) {
        button->setVisible(false);
    }
    mnupopup.setVisible(false);
    setDesignedSize(5100_twips, 5490_twips);
    keepDesign();
}

} // namespace sonarith
