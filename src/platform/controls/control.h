// SPDX-License-Identifier: GPL-3.0-or-later
// What all form controls have in common: a name, a place, whether they are seen and open.
// Models only; a widget adapter elsewhere shows them.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/controls/signal.h"

namespace sonarith {

/// Window measure: 1440 to the inch.
using Twips = int;

class Control {
  public:
    explicit Control(std::string name) : name_(std::move(name)) {}
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }

    [[nodiscard]] bool visible() const { return visible_; }
    void setVisible(bool visible) { assign(visible_, visible); }
    [[nodiscard]] bool enabled() const { return enabled_; }
    void setEnabled(bool enabled) { assign(enabled_, enabled); }
    [[nodiscard]] const std::string& toolTip() const { return toolTip_; }
    void setToolTip(std::string text) { assign(toolTip_, std::move(text)); }

    [[nodiscard]] Twips left() const { return left_; }
    [[nodiscard]] Twips top() const { return top_; }
    [[nodiscard]] Twips width() const { return width_; }
    [[nodiscard]] Twips height() const { return height_; }
    void setLeft(Twips left) { assign(left_, left); }
    void setTop(Twips top) { assign(top_, top); }
    void setWidth(Twips width) { assign(width_, width); }
    void setHeight(Twips height) { assign(height_, height); }

    /// Something that can be seen has changed.
    Signal<> changed;

  protected:
    ~Control() = default;

    /// Stores a property and tells of it, unless it is the value that stands already.
    template <typename T>
    void assign(T& property, T value) {
        if (property != value) {
            property = std::move(value);
            changed.emit();
        }
    }

  private:
    std::string name_;
    std::string toolTip_;
    bool visible_ = true;
    bool enabled_ = true;
    Twips left_ = 0;
    Twips top_ = 0;
    Twips width_ = 0;
    Twips height_ = 0;
};

/// The product's single handler of an event; an event without one passes.
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
