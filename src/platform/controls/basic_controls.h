// SPDX-License-Identifier: GPL-3.0-or-later
// The small controls: label, picture, button, check box, text box, progress bar, menu entry.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"
#include "platform/result.h"

namespace sonarith {

/// A line of text; also serves as a store.
class Label : public Control {
  public:
    explicit Label(std::string name, std::string caption = {})
        : Control(std::move(name)), caption_(std::move(caption)) {}
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption);

    Handler<> onChange;

  private:
    std::string caption_;
};

/// A picture, or a bar that holds other controls.
class PictureBox : public Control {
  public:
    using Control::Control;

    /// A left press on it.
    Handler<> onMouseDown;
};

class CommandButton : public Control {
  public:
    explicit CommandButton(std::string name, std::string caption = {})
        : Control(std::move(name)), caption_(std::move(caption)) {}
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption)); }

    Handler<> onClick;
    /// What a user's click does, whether the button can be seen or not: logic calls it as a
    /// procedure.
    void click() { run(onClick); }

  private:
    std::string caption_;
};

/// 0 or 1. Setting it to another value from code runs the click handler as a user's click does.
class CheckBox : public Control {
  public:
    explicit CheckBox(std::string name, std::string caption = {})
        : Control(std::move(name)), caption_(std::move(caption)) {}
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption)); }
    [[nodiscard]] int value() const { return value_; }
    /// invalidPropertyValue, and no change, for anything but 0 and 1.
    Status setValue(int value);

    Handler<> onClick;

  private:
    std::string caption_;
    int value_ = 0;
};

/// Keeps what stands before the first NUL of a text that is set.
class TextBox : public Control {
  public:
    explicit TextBox(std::string name, std::string text = {})
        : Control(std::move(name)), text_(std::move(text)) {}
    [[nodiscard]] const std::string& text() const { return text_; }
    void setText(const std::string& text);
    /// The most characters that can be typed; 0: no limit. Code may set more.
    [[nodiscard]] int typingLimit() const { return typingLimit_; }
    void setTypingLimit(int limit) { assign(typingLimit_, limit); }

    Handler<> onChange;

  private:
    std::string text_;
    int typingLimit_ = 0;
};

class ProgressBar : public Control {
  public:
    ProgressBar(std::string name, int minimum, int maximum)
        : Control(std::move(name)), minimum_(minimum), maximum_(maximum), value_(minimum) {}
    [[nodiscard]] int minimum() const { return minimum_; }
    [[nodiscard]] int maximum() const { return maximum_; }
    [[nodiscard]] int value() const { return value_; }
    /// invalidPropertyValue, and no change, outside the range.
    Status setValue(std::int64_t value);

  private:
    int minimum_;
    int maximum_;
    int value_;
};

/// A menu heading or entry. Children are owned elsewhere, as named members.
class MenuItem : public Control {
  public:
    explicit MenuItem(std::string name, std::string caption, std::vector<MenuItem*> entries = {})
        : Control(std::move(name)), caption_(std::move(caption)), entries_(std::move(entries)) {}
    [[nodiscard]] const std::string& caption() const { return caption_; }
    [[nodiscard]] bool checked() const { return checked_; }
    void setChecked(bool checked) { assign(checked_, checked); }
    [[nodiscard]] const std::vector<MenuItem*>& entries() const { return entries_; }

    Handler<> onClick;
    /// Runs before a menu with entries opens.
    Handler<> onOpen;
    void click() { run(onClick); }

  private:
    std::string caption_;
    std::vector<MenuItem*> entries_;
    bool checked_ = false;
};

} // namespace sonarith
