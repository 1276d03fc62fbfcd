// SPDX-License-Identifier: GPL-3.0-or-later
// The model of a menu or of a menu entry. The view opens the menu.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"

namespace sonarith {

struct MenuItemState {
    bool checked = false;
};

/// The caption is constant; an item with the caption "-" is a separator. The entries of a menu are
/// not owned by the menu: they are members of another object.
class MenuItem : public ControlWith<MenuItemState> {
  public:
    MenuItem(Form& owner, std::string name, std::string caption,
             std::vector<MenuItem*> entries = {})
        : ControlWith(owner, std::move(name)),
          caption_(std::move(caption)),
          entries_(std::move(entries)) {}
    [[nodiscard]] const std::string& caption() const { return caption_; }
    [[nodiscard]] bool checked() const { return state_.checked; }
    void setChecked(bool checked) { assign(state_.checked, checked, Property::checked); }
    [[nodiscard]] const std::vector<MenuItem*>& entries() const { return entries_; }
    [[nodiscard]] bool isSeparator() const { return caption_ == "-"; }

    Handler<> onClick;
    /// Runs before a menu with entries opens.
    Handler<> onOpen;
    void click() { run(onClick); }

  private:
    std::string caption_;
    std::vector<MenuItem*> entries_;
};

} // namespace sonarith
