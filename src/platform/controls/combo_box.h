// SPDX-License-Identifier: GPL-3.0-or-later
// A drop-down list of texts, of which one or none is selected. Nothing can be typed into it.
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
    /// The text of an entry counted from 0; empty outside the list.
    [[nodiscard]] std::string list(int index) const;
    void addItem(const std::string& text);
    /// Also leaves nothing selected. Runs no handler.
    void clear();

    /// The selected entry, -1 for none.
    [[nodiscard]] int listIndex() const { return state_.listIndex; }
    /// -1 to listCount() - 1; invalidPropertyValue, and no change, outside that. Runs onClick if
    /// the selection is another one.
    Status setListIndex(int index);
    /// The text of the selected entry; empty for none.
    [[nodiscard]] std::string text() const { return list(state_.listIndex); }

    /// An entry was selected, by code or by the user.
    Handler<> onClick;
    /// A user's choice. Runs onClick, also for the entry that is selected already.
    void choose(int index);
};

} // namespace sonarith
