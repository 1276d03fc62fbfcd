// SPDX-License-Identifier: GPL-3.0-or-later
// Option buttons: of a group at most one is selected. Selecting one from code runs no handler; the
// logic names the handler to run.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"

namespace sonarith {

class OptionButton;

/// The buttons that exclude each other.
class OptionGroup {
  public:
    [[nodiscard]] const std::vector<OptionButton*>& buttons() const { return buttons_; }

  private:
    friend class OptionButton;
    std::vector<OptionButton*> buttons_;
};

struct OptionButtonState {
    std::string caption;
    bool selected = false;
};

class OptionButton : public ControlWith<OptionButtonState> {
  public:
    /// `group` outlives the button.
    OptionButton(Form& owner, OptionGroup& group, std::string name, std::string caption = {})
        : ControlWith(owner, std::move(name)), group_(group) {
        state_.caption = std::move(caption);
        group_.buttons_.push_back(this);
    }
    [[nodiscard]] const std::string& caption() const { return state_.caption; }
    [[nodiscard]] const OptionGroup& group() const { return group_; }

    [[nodiscard]] bool selected() const { return state_.selected; }
    /// Selecting it takes the selection from the others of its group. Code may leave none selected.
    void setSelected(bool selected) {
        if (selected) {
            for (OptionButton* other : group_.buttons_) {
                if (other != this) {
                    other->setSelected(false);
                }
            }
        }
        assign(state_.selected, selected, Property::value);
    }

    Handler<> onClick;
    /// A user's click: selects the button and runs the handler, also of a button that is selected
    /// already, since code may have undone what it stands for.
    void choose() {
        setSelected(true);
        click();
    }
    /// The handler alone: logic calls it as a procedure.
    void click() { run(onClick); }

  private:
    OptionGroup& group_;
};

} // namespace sonarith
