// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/basic_controls.h"

namespace sonarith {

void Label::setCaption(std::string caption) {
    if (caption != caption_) {
        assign(caption_, std::move(caption));
        run(onChange);
    }
}

Status CheckBox::setValue(int value) {
    if (value != 0 && value != 1) {
        return {ErrorNumber::invalidPropertyValue, "A check box holds 0 or 1."};
    }
    if (value != value_) {
        assign(value_, value);
        run(onClick);
    }
    return {};
}

void TextBox::setText(const std::string& text) {
    std::string kept = text.substr(0, text.find('\0'));
    if (kept != text_) {
        assign(text_, std::move(kept));
        run(onChange);
    }
}

Status ProgressBar::setValue(std::int64_t value) {
    if (value < minimum_ || value > maximum_) {
        return {ErrorNumber::invalidPropertyValue, "The value lies outside the bar's range."};
    }
    assign(value_, static_cast<int>(value));
    return {};
}

} // namespace sonarith
