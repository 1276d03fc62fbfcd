// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/power_switch.h"

#include <string_view>
#include <utility>

namespace sonarith {

namespace {

constexpr std::string_view openCommand = "open cdaudio alias cd wait shareable";
constexpr std::string_view formatCommand = "set cd time format tmsf wait";

/// While this object exists, its procedure is counted as running. The destructor also runs when the
/// fake EventLoop::endProgram of the tests ends the procedure by an exception.
class UnderWay {
  public:
    explicit UnderWay(int& count) : count_(count) { ++count_; }
    ~UnderWay() { --count_; }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;

  private:
    int& count_;
};

} // namespace

PowerSwitch::PowerSwitch(EventLoop& loop, Form4& form, CdCommands& commands, MixerPanel& mixer,
                         MeterCapture& capture, LevelMeter& meter, DiscPoll& poll, DiscState& disc)
    : loop_(loop),
      form_(form),
      commands_(commands),
      mixer_(mixer),
      capture_(capture),
      meter_(meter),
      poll_(poll),
      disc_(disc) {
    form_.OptCD.onClick = [this] {
        OptCD_Click();
    };
    form_.optNoCD.onClick = [this] {
        optNoCD_Click();
    };
    form_.Command6.onClick = [this] {
        Command6_Click();
    };
}

void PowerSwitch::OptCD_Click() {
    if (switchingOff_ > 0) {
        // The user tries to switch the player on in a yield of a switch-off. Continuing would leave
        // the player partly on.
        form_.OptCD.setSelected(false);
        return;
    }
    discReleased_ = false;
    const int switchedOffBefore = timesSwitchedOff_;
    commands_.saveRunningCapture();
    if (timesSwitchedOff_ != switchedOffBefore) {
        return;
    }
    capture_.StartMeter();
    if (timesSwitchedOff_ != switchedOffBefore) {
        return;
    }
    form_.Option1.click();
    form_.Option14.click();
    ResetPlayer();
    commands_.SendMCI("stop voice1", CommandCheck::unchecked);
    commands_.SendMCI("close voice1", CommandCheck::unchecked);
    form_.Timer6.setEnabled(false);
    disc_.CDLoaded = false;
    openDisc(switchedOffBefore);
}

void PowerSwitch::openDisc(int switchedOffBefore) {
    if (!commands_.SendMCI(openCommand, CommandCheck::checked)) {
        form_.OptCD.setSelected(false);
        return;
    }
    commands_.SendMCI(formatCommand, CommandCheck::checked);
    // If formatCommand has failed, the panel was unloaded, which switched the player off.
    if (timesSwitchedOff_ != switchedOffBefore) {
        return;
    }
    form_.Timer6.setEnabled(true);
    form_.Timer3.setEnabled(true);
    form_.eject.setEnabled(true);
}

void PowerSwitch::ResetPlayer() {
    if (!mixer_.open()) {
        return;
    }
    meter_.prepare();
    form_.Timer6.setEnabled(false);
    closeDisc();
    disableTransport();
    clearDisplay();
}

void PowerSwitch::optNoCD_Click() {
    const UnderWay here(switchingOff_);
    ++timesSwitchedOff_;
    discReleased_ = false;
    capture_.StopMeter();
    form_.Option13.click();
    showOff();
    loop_.yield();
    for (Timer* timer : {&form_.Timer6, &form_.Timer4, &form_.Timer2, &form_.Timer3}) {
        timer->setEnabled(false);
    }
    // Repeated, because timers that ticked in that yield may have changed the displays.
    showOff();
    closeDisc();
    disableTransport();
    clearDisplay();
}

void PowerSwitch::Command6_Click() {
    const UnderWay here(switchingOff_);
    capture_.StopMeter();
    loop_.yield();
    showOff();
    loop_.yield();
    // If Check3 was ticked, setValue(0) runs its click handler.
    form_.Check3.setValue(0).passOver();
    loop_.yield();
    form_.optNoCD.choose();
    form_.optNoCD.setSelected(false);
    loop_.yield();
    loop_.yield();
    form_.Option13.click();
    form_.Option13.setSelected(false);
    loop_.yield();
}

void PowerSwitch::releaseDisc() {
    if (switchingOff_ > 0 || !form_.Timer6.enabled()) {
        return;
    }
    discReleased_ = true;
    // The poll is stopped: the main window is about to open the device with another time format,
    // and a poll would query that device.
    form_.Timer6.setEnabled(false);
    form_.eject.setEnabled(false);
    closeDisc();
    // Without an open device, UpdatePlayer() finds no medium. So it treats the previous disc as
    // removed.
    poll_.UpdatePlayer();
}

void PowerSwitch::openDiscAgain() {
    if (!std::exchange(discReleased_, false)) {
        return;
    }
    // Closes the device if the main window has left it open.
    closeDisc();
    // Unchecked: a missing drive must not close the panel while the Devices window is open.
    if (!commands_.SendMCI(openCommand, CommandCheck::unchecked)) {
        form_.optNoCD.choose();
        return;
    }
    commands_.SendMCI(formatCommand, CommandCheck::unchecked);
    form_.Timer6.setEnabled(true);
    form_.eject.setEnabled(true);
}

void PowerSwitch::closeDisc() {
    commands_.SendMCI("stop cd", CommandCheck::unchecked);
    commands_.SendMCI("close cd", CommandCheck::unchecked);
}

void PowerSwitch::disableTransport() {
    enableDiscButtons(form_, false);
    form_.eject.setEnabled(false);
}

void PowerSwitch::showOff() {
    meter_.clearTrace();
    form_.CD.setText("OFF");
    meter_.sinkBar();
}

void PowerSwitch::clearDisplay() {
    form_.timeWindow.setText("");
    form_.tracktime.setCaption("");
}

} // namespace sonarith
