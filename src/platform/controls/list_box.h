// SPDX-License-Identifier: GPL-3.0-or-later
// A list box: an ordered list of texts with a current line, marks and a number for each line. Many
// are never seen and serve as the program's stores.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "platform/controls/control.h"
#include "platform/result.h"

namespace sonarith {

class ListBox : public Control {
  public:
    explicit ListBox(std::string name) : Control(std::move(name)) {}

    [[nodiscard]] int listCount() const { return static_cast<int>(lines_.size()); }
    /// The text of a line counted from 0; empty outside the list.
    [[nodiscard]] std::string list(int index) const;
    /// subscriptOutOfRange, and no change, outside the list.
    Status setList(int index, const std::string& text);

    /// Adds at the end. A text is kept up to its first NUL, here and below.
    void addItem(const std::string& text);
    /// Adds before line `index`, 0 to listCount(); invalidProcedureCall outside that.
    Status addItem(const std::string& text, int index);
    /// subscriptOutOfRange outside the list.
    Status removeItem(int index);
    void clear();

    /// The current line, -1 for none. It follows its line through additions and removals before
    /// it, and becomes -1 when its line goes.
    [[nodiscard]] int listIndex() const { return listIndex_; }
    /// -1 to listCount() - 1; invalidPropertyValue, and no change, outside that.
    Status setListIndex(int index);
    /// The text of the current line; empty for none.
    [[nodiscard]] std::string text() const { return list(listIndex_); }

    /// Whether a line is marked; false outside the list.
    [[nodiscard]] bool selected(int index) const;
    Status setSelected(int index, bool selected);
    /// The number kept with a line; 0 outside the list.
    [[nodiscard]] std::int32_t itemData(int index) const;
    Status setItemData(int index, std::int32_t data);

    /// The current line was changed to another, by code or by a click.
    Handler<> onClick;

  private:
    struct Line {
        std::string text;
        std::int32_t data = 0;
        bool selected = false;
    };
    [[nodiscard]] bool holds(int index) const { return index >= 0 && index < listCount(); }

    /// Long lists are worked on at their front as well as at their end.
    std::deque<Line> lines_;
    int listIndex_ = -1;
};

/// Makes `text` the first line of `list`, by way of the scratch list, which is left filled.
void putOnTop(ListBox& list, const std::string& text, ListBox& scratch);

/// Turns the order of `list` round, by way of the scratch list, which is left filled.
void reverse(ListBox& list, ListBox& scratch);

} // namespace sonarith
