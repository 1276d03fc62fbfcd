// SPDX-License-Identifier: GPL-3.0-or-later
// The handler of Timeravi plays the activity clip on the tool bar. Nothing starts this timer, so
// the program never plays the clip.
#pragma once

#include "forms/form1.h"
#include "platform/platform.h"

namespace sonarith {

class ActivityClip {
  public:
    /// Sets the handler of Timeravi. Both parameters must outlive this object.
    ActivityClip(const Platform& platform, Form1& form) : platform_(platform), form_(form) {
        form_.Timeravi.onTimer = [this] {
            Timeravi_Timer();
        };
    }
    ActivityClip(const ActivityClip&) = delete;
    ActivityClip& operator=(const ActivityClip&) = delete;

    /// Plays the clip "download.avi" inside Picture6. The clip is a file in the program folder. If
    /// the clip cannot be placed inside Picture6, a message is shown.
    void Timeravi_Timer();

  private:
    int send(const std::string& command);

    const Platform& platform_;
    Form1& form_;
};

} // namespace sonarith
