// SPDX-License-Identifier: GPL-3.0-or-later
// Message boxes as the logic asks for them.
#pragma once

#include <string>

namespace sonarith {

enum class BoxIcon { none, critical, warning, exclamation, information };
enum class BoxButtons { ok, yesNoCancel };
enum class BoxAnswer { ok, yes, no, cancel };

class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;
    /// Shows the box and yields until it is answered. An empty title stands for the default one.
    virtual BoxAnswer show(const std::string& text, BoxIcon icon = BoxIcon::none,
                           BoxButtons buttons = BoxButtons::ok, const std::string& title = {}) = 0;
};

} // namespace sonarith
