// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/basic_controls.h"

namespace sonarith {

void Label::setCaption(std::string caption) {
    if (caption != state_.caption) {
        assign(state_.caption, std::move(caption), Property::caption);
        run(onChange);
    }
}

Status CheckBox::setValue(std::int64_t value) {
    if (value != 0 && value != 1) {
        return {ErrorNumber::invalidPropertyValue, "A check box holds 0 or 1."};
    }
    if (value != state_.value) {
        assign(state_.value, static_cast<int>(value), Property::value);
        run(onClick);
    }
    return {};
}

void TextBox::setText(const std::string& text) {
    std::string kept = text.substr(0, text.find('\0'));
    if (kept != state_.text) {
        assign(state_.text, std::move(kept), Property::text);
        run(onChange);
    }
}

Status ProgressBar::setValue(std::int64_t value) {
    if (value < minimum_ || value > maximum_) {
        return {ErrorNumber::invalidPropertyValue, "The value lies outside the bar's range."};
    }
    assign(state_.value, static_cast<int>(value), Property::value);
    return {};
}

Status TabControl::setTab(int tab) {
    if (tab < 0 || tab >= static_cast<int>(captions_.size())) {
        return {ErrorNumber::invalidPropertyValue, "There is no tab with this number."};
    }
    assign(state_.tab, tab, Property::listIndex);
    return {};
}

} // namespace sonarith
