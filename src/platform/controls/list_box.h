// SPDX-License-Identifier: GPL-3.0-or-later
// A list box: an ordered list of texts with a current line, marks and a number for each line. Many
// are never shown and serve as the program's stores.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "platform/controls/control.h"
#include "platform/controls/mouse_buttons.h"
#include "platform/result.h"

namespace sonarith {

/// What a view needs to know of a change of the lines. Sent after the change.
struct ListChange {
    enum class Kind {
        inserted, ///< the line is new; those from it on have moved up by one
        removed,  ///< the line is gone; those behind it have moved down by one
        edited,   ///< the line's text or mark is another one
        cleared,  ///< all lines are gone
    };
    Kind kind;
    int index = 0;
};

class ListBox : public Control {
  public:
    using Control::Control;

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

    /// The current line was changed to another by code, or chosen by the user.
    Handler<> onClick;
    /// A press on the list, after a left press has chosen its line.
    Handler<MouseButtons> onMouseDown;
    /// A user's click on a line makes it the current one and runs onClick, also on the line that is
    /// current already. Nothing for a line that does not exist.
    void choose(int index);

    Signal<ListChange> listChanged;

  protected:
    void atLoad() override;

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
