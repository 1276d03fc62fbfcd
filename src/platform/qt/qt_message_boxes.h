// SPDX-License-Identifier: GPL-3.0-or-later
// Message boxes of the desktop. They run a loop of their own until answered, so timers and jobs go
// on beneath them.
#pragma once

#include "platform/message_box.h"

namespace sonarith {

class QtMessageBoxes : public MessageBoxes {
  public:
    /// `defaultTitle` is shown where the caller gives none.
    explicit QtMessageBoxes(std::string defaultTitle) : defaultTitle_(std::move(defaultTitle)) {}

    /// Escape and the window's close answer cancel where there is one, and ok otherwise.
    BoxAnswer show(const std::string& text, BoxIcon icon = BoxIcon::none,
                   BoxButtons buttons = BoxButtons::ok, const std::string& title = {}) override;

  private:
    std::string defaultTitle_;
};

} // namespace sonarith
