// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the window of the conversion worker. It is never shown; each load of the window converts
// one file. The folder conversion/ implements its behaviour.
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
    /// Both parameters must outlive this object.
    Form6(EventLoop& loop, Mp3Controls& mp3Controls);

    ActiveMp3Host ActiveMP31;
    CommandButton Command1{*this, "Command1", "Cancel"};
    /// Enabled at each load. Its first tick disables Timer1 and starts to decode the same file
    /// again, whatever the first decoding does.
    Timer Timer1;
    Timer Timer2; ///< shows the progress
};

} // namespace sonarith
