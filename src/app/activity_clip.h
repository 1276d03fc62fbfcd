// SPDX-License-Identifier: GPL-3.0-or-later
// The activity clip on the tool bar: what its timer does. It stands ready; nothing starts the
// timer.
#pragma once

#include "forms/form1.h"
#include "platform/platform.h"

namespace sonarith {

class ActivityClip {
  public:
    /// Becomes the handler of Timeravi. Both outlive this.
    ActivityClip(const Platform& platform, Form1& form) : platform_(platform), form_(form) {
        form_.Timeravi.onTimer = [this] {
            Timeravi_Timer();
        };
    }
    ActivityClip(const ActivityClip&) = delete;
    ActivityClip& operator=(const ActivityClip&) = delete;

    /// Opens the clip "download.avi" of the program's folder in Picture6 and plays it; a message
    /// tells of a clip that cannot be placed there.
    void Timeravi_Timer();

  private:
    int send(const std::string& command);

    const Platform& platform_;
    Form1& form_;
};

} // namespace sonarith
