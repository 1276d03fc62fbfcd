// SPDX-License-Identifier: GPL-3.0-or-later
// The conversion worker's window, which is never shown: one load of it is the conversion of one
// file. What it does is the business of the folder conversion/.
#pragma once

#include "platform/active_mp3.h"
#include "platform/controls/active_mp3_host.h"
#include "platform/controls/basic_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/timer.h"
#include "platform/event_loop.h"

namespace sonarith {

class Form6 : public Form {
  public:
    /// Both outlive this.
    Form6(EventLoop& loop, Mp3Controls& mp3Controls);

    ActiveMp3Host ActiveMP31;
    CommandButton Command1{*this, "Command1", "Cancel"};
    Timer Timer1; ///< the second start; on at load
    Timer Timer2; ///< progress
};

} // namespace sonarith
