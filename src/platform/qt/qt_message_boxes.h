// SPDX-License-Identifier: GPL-3.0-or-later
// Implements MessageBoxes with Qt's message box. A box runs its own event loop until the user
// answers it, so timers continue to run while it is open.
#pragma once

#include "platform/message_box.h"

namespace sonarith {

class QtMessageBoxes : public MessageBoxes {
  public:
    /// `defaultTitle` is shown if the caller passes no title.
    explicit QtMessageBoxes(std::string defaultTitle) : defaultTitle_(std::move(defaultTitle)) {}

    /// Escape and closing the box mean "cancel" if the box has a Cancel button, otherwise "ok".
    BoxAnswer show(const std::string& text, BoxIcon icon = BoxIcon::none,
                   BoxButtons buttons = BoxButtons::ok, const std::string& title = {}) override;

  private:
    std::string defaultTitle_;
};

} // namespace sonarith
