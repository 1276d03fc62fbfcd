// SPDX-License-Identifier: GPL-3.0-or-later
// The model of a drop-down list of texts. At most one entry is selected. The user cannot type a
// text.
#pragma once

#include <string>
#include <vector>

#include "platform/controls/control.h"
#include "platform/result.h"

namespace sonarith {

struct ComboBoxState {
    std::vector<std::string> entries;
    int listIndex = -1;
};

class ComboBox : public ControlWith<ComboBoxState> {
  public:
    using ControlWith::ControlWith;

    [[nodiscard]] int listCount() const { return static_cast<int>(state_.entries.size()); }
    /// The text of entry `index` (the first entry has index 0); empty outside the list.
    [[nodiscard]] std::string list(int index) const;
    void addItem(const std::string& text);
    /// Removes all entries; no entry is selected afterwards. Runs no handler.
    void clear();

    /// The index of the selected entry; -1 for none.
    [[nodiscard]] int listIndex() const { return state_.listIndex; }
    /// Selects an entry, or none if `index` is -1. Runs onClick if the selection changes. Error:
    /// invalidPropertyValue outside the range -1 to listCount() - 1; then nothing changes.
    Status setListIndex(int index);
    /// The text of the selected entry; empty for none.
    [[nodiscard]] std::string text() const { return list(state_.listIndex); }

    /// Code has changed the selection, or the user has chosen an entry.
    Handler<> onClick;
    /// Called when the user has chosen an entry: selects it and runs onClick, even if the entry was
    /// already selected. Does nothing for an index beyond the last entry.
    void choose(int index);
};

} // namespace sonarith
