// SPDX-License-Identifier: GPL-3.0-or-later
// The model of a slider. Only a change by the user runs the handler; a change by code does not.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/controls/control.h"
#include "platform/result.h"

namespace sonarith {

struct SliderState {
    int value = 0;
};

class Slider : public ControlWith<SliderState> {
  public:
    Slider(Form& owner, std::string name, int minimum, int maximum)
        : ControlWith(owner, std::move(name)), minimum_(minimum), maximum_(maximum) {
        state_.value = minimum;
    }
    [[nodiscard]] int minimum() const { return minimum_; }
    [[nodiscard]] int maximum() const { return maximum_; }
    [[nodiscard]] int value() const { return state_.value; }
    /// Sets the value from code. Error: invalidPropertyValue if `value` is outside the range; the
    /// slider then keeps its value.
    Status setValue(std::int64_t value) {
        if (value < minimum_ || value > maximum_) {
            return {ErrorNumber::invalidPropertyValue,
                    "The value lies outside the slider's range."};
        }
        assign(state_.value, static_cast<int>(value), Property::value);
        return {};
    }

    /// The user has moved the slider.
    Handler<> onScroll;
    /// Call this when the user has moved the slider to `value`. Clamps `value` to the range, and
    /// runs the handler if the slider's value changes.
    void moveTo(int value) {
        const int held = std::clamp(value, minimum_, maximum_);
        if (held != state_.value) {
            assign(state_.value, held, Property::value);
            run(onScroll);
        }
    }

  private:
    int minimum_;
    int maximum_;
};

} // namespace sonarith
