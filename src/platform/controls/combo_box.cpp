// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/combo_box.h"

namespace sonarith {

std::string ComboBox::list(int index) const {
    return index >= 0 && index < listCount() ? state_.entries[static_cast<std::size_t>(index)]
                                             : std::string();
}

void ComboBox::addItem(const std::string& text) {
    state_.entries.push_back(text);
    changed.emit(Property::entries);
}

void ComboBox::clear() {
    state_.listIndex = -1;
    state_.entries.clear();
    changed.emit(Property::entries);
}

Status ComboBox::setListIndex(int index) {
    if (index < -1 || index >= listCount()) {
        return {ErrorNumber::invalidPropertyValue, "The list has no entry with this number."};
    }
    if (index != state_.listIndex) {
        assign(state_.listIndex, index, Property::listIndex);
        run(onClick);
    }
    return {};
}

void ComboBox::choose(int index) {
    if (index == state_.listIndex) {
        run(onClick);
    } else {
        setListIndex(index).passOver();
    }
}

} // namespace sonarith
