// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the logic shows message boxes.
#pragma once

#include <string>

namespace sonarith {

enum class BoxIcon { none, critical, warning, exclamation, information };
enum class BoxButtons { ok, yesNoCancel };
enum class BoxAnswer { ok, yes, no, cancel };

class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;
    /// Shows a message box and yields until the user answers it. An empty `title` means the default
    /// title.
    virtual BoxAnswer show(const std::string& text, BoxIcon icon = BoxIcon::none,
                           BoxButtons buttons = BoxButtons::ok, const std::string& title = {}) = 0;
};

} // namespace sonarith
