// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the base class of all controls of forms, with the properties that every control has:
// name, position, size, tool tip, visibility, and whether the control is enabled. Controls are
// models only; the views show them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/controls/form_part.h"
#include "platform/controls/signal.h"
#include "platform/controls/twips.h"

namespace sonarith {

/// Which property of a control has changed.
enum class Property : std::uint8_t {
    all, ///< any number of properties: the control was reset to its designed state
    visible,
    enabled,
    toolTip,
    left,
    top,
    width,
    height,
    caption,
    text,
    value,     ///< value of a check box, an option button, a slider or a bar
    checked,   ///< the check mark of a menu entry
    listIndex, ///< the current line or entry, or the current tab
    entries,   ///< of a combo box
    typingLimit,
    locked,
    fontSize,
    path,   ///< of a drive list or a folder list
    region, ///< the visible part of a window
};

class Control : public FormPart {
  public:
    /// Adds the control to `owner`, which never removes it: `owner` must not be used after the
    /// control is destroyed.
    Control(Form& owner, std::string name);

    [[nodiscard]] const std::string& name() const { return name_; }

    [[nodiscard]] bool visible() const { return common_.visible; }
    void setVisible(bool visible) { assign(common_.visible, visible, Property::visible); }
    [[nodiscard]] bool enabled() const { return common_.enabled; }
    void setEnabled(bool enabled) { assign(common_.enabled, enabled, Property::enabled); }
    [[nodiscard]] const std::string& toolTip() const { return common_.toolTip; }
    void setToolTip(std::string text) {
        assign(common_.toolTip, std::move(text), Property::toolTip);
    }

    [[nodiscard]] Twips left() const { return common_.left; }
    [[nodiscard]] Twips top() const { return common_.top; }
    [[nodiscard]] Twips width() const { return common_.width; }
    [[nodiscard]] Twips height() const { return common_.height; }
    void setLeft(Twips left) { assign(common_.left, left, Property::left); }
    void setTop(Twips top) { assign(common_.top, top, Property::top); }
    void setWidth(Twips width) { assign(common_.width, width, Property::width); }
    void setHeight(Twips height) { assign(common_.height, height, Property::height); }

    /// A property has changed its value.
    Signal<Property> changed;

  protected:
    /// For the class Form only: a form is a control, too, but has no owner.
    explicit Control(std::string name) : name_(std::move(name)) {}

    /// Stores the value and notifies of the change; does nothing if the property already has this
    /// value.
    template <typename T>
    void assign(T& property, T value, Property which) {
        if (property != value) {
            property = std::move(value);
            changed.emit(which);
        }
    }

    /// Sets the size, now and at each later load.
    void designSize(Twips width, Twips height) {
        designed_.width = width;
        designed_.height = height;
        setWidth(width);
        setHeight(height);
    }

    void keepDesign() override { designed_ = common_; }
    void atLoad() override {
        common_ = designed_;
        changed.emit(Property::all);
    }

  private:
    struct Common {
        std::string toolTip;
        bool visible = true;
        bool enabled = true;
        Twips left;
        Twips top;
        Twips width;
        Twips height;
    };

    std::string name_;
    Common common_;
    Common designed_;
};

/// A control whose additional properties are the members of one struct, State.
template <typename State>
class ControlWith : public Control {
  public:
    using Control::Control;

  protected:
    void keepDesign() override {
        designed_ = state_;
        Control::keepDesign();
    }
    void atLoad() override {
        state_ = designed_;
        Control::atLoad();
    }

    State state_;

  private:
    State designed_;
};

/// The single handler that the logic defines for an event. An event without a handler is ignored.
template <typename... Args>
using Handler = std::function<void(Args...)>;

template <typename... Args, typename... Actual>
void run(const Handler<Args...>& handler, Actual&&... args) {
    if (handler) {
        // A copy, since the handler may replace itself.
        const auto current = handler;
        current(std::forward<Actual>(args)...);
    }
}

} // namespace sonarith
