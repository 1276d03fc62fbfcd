// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/frm_popup.h"

namespace sonarith {

using namespace std::chrono_literals;

FrmPopup::FrmPopup(EventLoop& loop)
    // The capital V is intended, although the main window's title has a small v.
    : Form("frmpopup", "Sonarith V2.0"),
      Timer1(*this, loop, "Timer1", 1000ms, TimerAtLoad::on),
      Timer2(*this, loop, "Timer2", 1000ms, TimerAtLoad::on) {
    keepDesign();
}

} // namespace sonarith
