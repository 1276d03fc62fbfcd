// SPDX-License-Identifier: GPL-3.0-or-later
// A list box: an ordered list of lines, of which one can be the current line. Each line has a text,
// a mark and a number. Many list boxes are never shown and only store data.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "platform/controls/control.h"
#include "platform/controls/mouse_buttons.h"
#include "platform/result.h"

namespace sonarith {

/// What has changed in the lines. Sent to the views after the change.
struct ListChange {
    enum class Kind {
        inserted, ///< the line is new; the indices of the lines after it have increased by one
        removed,  ///< the line was removed; the indices after it have decreased by one
        edited,   ///< the line's text or mark has changed
        cleared,  ///< all lines were removed
    };
    Kind kind;
    int index = 0;
};

class ListBox : public Control {
  public:
    using Control::Control;

    [[nodiscard]] int listCount() const { return static_cast<int>(lines_.size()); }
    /// The text of line `index`, from 0; empty outside the list.
    [[nodiscard]] std::string list(int index) const;
    /// Error: subscriptOutOfRange if there is no line `index`; then nothing changes.
    Status setList(int index, const std::string& text);

    /// Appends a line. Every text that is added or set is truncated before its first NUL.
    void addItem(const std::string& text);
    /// Inserts before line `index`, 0 to listCount(). Error: invalidProcedureCall outside that
    /// range.
    Status addItem(const std::string& text, int index);
    /// Error: subscriptOutOfRange outside the list.
    Status removeItem(int index);
    void clear();

    /// The index of the current line, -1 for none. The same line stays current when lines before it
    /// are inserted or removed; no line is current after the current line was removed.
    [[nodiscard]] int listIndex() const { return listIndex_; }
    /// -1 to listCount() - 1. Error: invalidPropertyValue outside that range; then nothing changes.
    Status setListIndex(int index);
    /// The text of the current line; empty for none.
    [[nodiscard]] std::string text() const { return list(listIndex_); }

    /// Whether a line is marked; false outside the list.
    [[nodiscard]] bool selected(int index) const;
    Status setSelected(int index, bool selected);
    /// The number stored with a line; 0 outside the list.
    [[nodiscard]] std::int32_t itemData(int index) const;
    Status setItemData(int index, std::int32_t data);

    /// Runs when setListIndex() has changed which line is current; listIndex() may then be -1. Also
    /// runs when the user has chosen a line.
    Handler<> onClick;
    /// A mouse button was pressed on the list. A press of the left button chooses the line under
    /// the pointer before this handler runs.
    Handler<MouseButtons> onMouseDown;
    /// A user's click on a line: makes the line the current line and runs onClick, even if the line
    /// was already current. Does nothing for a line that does not exist.
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

    /// A deque, because lines of long lists are added and removed at both ends.
    std::deque<Line> lines_;
    int listIndex_ = -1;
};

// putOnTop() and reverse() keep only the texts of the lines: marks and numbers are lost, and no
// line is current afterwards.

/// Inserts `text` before the first line of `list`. Afterwards `scratch` has the same lines as
/// `list`.
void putOnTop(ListBox& list, const std::string& text, ListBox& scratch);

/// Reverses the order of `list`. Afterwards `scratch` has the same lines as `list`.
void reverse(ListBox& list, ListBox& scratch);

} // namespace sonarith
