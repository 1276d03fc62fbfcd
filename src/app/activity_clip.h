// SPDX-License-Identifier: GPL-3.0-or-later
// The activity clip on the tool bar: what its timer does. It stands ready; nothing starts the
// timer.
#pragma once

#include "forms/form1.h"
#include "platform/platform.h"

namespace sonarith {

class ActivityClip {
  public:
    ActivityClip(const Platform& platform, Form1& form) : platform_(platform), form_(form) {}

    /// Opens the clip "download.avi" of the program's folder in Picture6 and plays it; a message
    /// tells of a clip that cannot be placed there.
    void Timeravi_Timer();

  private:
    int send(const std::string& command);

    Platform platform_;
    Form1& form_;
};

} // namespace sonarith
