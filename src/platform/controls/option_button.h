// SPDX-License-Identifier: GPL-3.0-or-later
// The model of an option button. At most one button of a group is selected. Selecting a button from
// code runs no handler; the logic calls click() if the handler is to run.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"

namespace sonarith {

class OptionButton;

/// A group of buttons of which at most one is selected.
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
    /// `group` must outlive the button.
    OptionButton(Form& owner, OptionGroup& group, std::string name, std::string caption = {})
        : ControlWith(owner, std::move(name)), group_(group) {
        state_.caption = std::move(caption);
        group_.buttons_.push_back(this);
    }
    [[nodiscard]] const std::string& caption() const { return state_.caption; }
    [[nodiscard]] const OptionGroup& group() const { return group_; }

    [[nodiscard]] bool selected() const { return state_.selected; }
    /// Selecting this button deselects the others of its group. Code may deselect all buttons
    /// of the group.
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
    /// A user's click: selects the button and runs the handler. The handler runs even if the button
    /// was already selected, because code may have changed the state that the button represents.
    void choose() {
        setSelected(true);
        click();
    }
    /// Runs the handler without selecting the button: the logic uses the handler as a procedure.
    void click() { run(onClick); }

  private:
    OptionGroup& group_;
};

} // namespace sonarith
