// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the form that owns the program's tray icon and the menu of that icon. The form is never
// shown. The folder desktop/ implements the form's behaviour.
#pragma once

#include <cstdint>

#include "platform/controls/basic_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/timer.h"
#include "platform/event_loop.h"

namespace sonarith {

class FrmPopup : public Form {
  public:
    /// The loop must outlive this object.
    explicit FrmPopup(EventLoop& loop);

    std::uint32_t Icon = 1; ///< the identifier of the tray icon

    Timer Timer1; ///< copies the main window's title to the tray icon's tool tip
    Timer Timer2; ///< copies the main window's title to this form's title

    MenuItem mnuStopencoding{*this, "mnuStopencoding", "Stop Conversion"};
    MenuItem Exit{*this, "Exit", "Restore Control panel"};
    MenuItem mnuspace1{*this, "mnuspace1", "-"};
    MenuItem mnuEnd{*this, "mnuEnd", "Shutdown program"};
    MenuItem Popup{*this, "Popup", "Popup", {&mnuStopencoding, &Exit, &mnuspace1, &mnuEnd}};
};

} // namespace sonarith
