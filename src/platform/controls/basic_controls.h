// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the models of the small controls: label, frame, button, check box, text box, progress bar
// and tabs.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"
#include "platform/controls/mouse_buttons.h"
#include "platform/result.h"

namespace sonarith {

struct CaptionState {
    std::string caption;
};

/// A line of text. The logic also stores data in labels.
class Label : public ControlWith<CaptionState> {
  public:
    Label(Form& owner, std::string name, std::string caption = {})
        : ControlWith(owner, std::move(name)) {
        state_.caption = std::move(caption);
    }
    [[nodiscard]] const std::string& caption() const { return state_.caption; }
    void setCaption(std::string caption);

    Handler<> onChange;
};

/// A border around other controls, with a caption.
class Frame : public ControlWith<CaptionState> {
  public:
    Frame(Form& owner, std::string name, std::string caption = {})
        : ControlWith(owner, std::move(name)) {
        state_.caption = std::move(caption);
    }
    [[nodiscard]] const std::string& caption() const { return state_.caption; }
};

class CommandButton : public ControlWith<CaptionState> {
  public:
    CommandButton(Form& owner, std::string name, std::string caption = {})
        : ControlWith(owner, std::move(name)) {
        state_.caption = std::move(caption);
    }
    [[nodiscard]] const std::string& caption() const { return state_.caption; }
    void setCaption(std::string caption) {
        assign(state_.caption, std::move(caption), Property::caption);
    }

    Handler<> onClick;
    /// Runs the click handler, even if the button is hidden or disabled: the logic also uses this
    /// handler as a procedure.
    void click() { run(onClick); }
};

struct CheckBoxState {
    std::string caption;
    int value = 0;
};

/// The value is 0 or 1. A change of the value by code runs the click handler, like a click by the
/// user.
class CheckBox : public ControlWith<CheckBoxState> {
  public:
    CheckBox(Form& owner, std::string name, std::string caption = {})
        : ControlWith(owner, std::move(name)) {
        state_.caption = std::move(caption);
    }
    [[nodiscard]] const std::string& caption() const { return state_.caption; }
    void setCaption(std::string caption) {
        assign(state_.caption, std::move(caption), Property::caption);
    }
    [[nodiscard]] int value() const { return state_.value; }
    /// Error: invalidPropertyValue for values other than 0 and 1; then nothing changes.
    Status setValue(std::int64_t value);

    Handler<> onClick;
};

struct TextBoxState {
    std::string text;
    int typingLimit = 0;
    int fontSize = 0;
    bool locked = false;
};

/// setText() removes the first NUL of the text and everything after it.
class TextBox : public ControlWith<TextBoxState> {
  public:
    TextBox(Form& owner, std::string name, std::string text = {})
        : ControlWith(owner, std::move(name)) {
        state_.text = std::move(text);
    }
    [[nodiscard]] const std::string& text() const { return state_.text; }
    void setText(const std::string& text);
    /// Maximum number of characters that can be typed; 0: no limit. Code may set longer texts.
    [[nodiscard]] int typingLimit() const { return state_.typingLimit; }
    void setTypingLimit(int limit) { assign(state_.typingLimit, limit, Property::typingLimit); }
    /// A locked box shows its text but accepts no typing. Code may still set the text.
    [[nodiscard]] bool locked() const { return state_.locked; }
    void setLocked(bool locked) { assign(state_.locked, locked, Property::locked); }
    /// In points; 0: the font size of the window.
    [[nodiscard]] int fontSize() const { return state_.fontSize; }
    void setFontSize(int points) { assign(state_.fontSize, points, Property::fontSize); }

    Handler<> onChange;
    /// A key was pressed in the box; runs before the key changes the text.
    Handler<> onKeyDown;
    /// A mouse button was pressed on the box.
    Handler<MouseButtons> onMouseDown;
};

struct ProgressBarState {
    int value = 0;
};

class ProgressBar : public ControlWith<ProgressBarState> {
  public:
    ProgressBar(Form& owner, std::string name, int minimum, int maximum)
        : ControlWith(owner, std::move(name)), minimum_(minimum), maximum_(maximum) {
        state_.value = minimum;
    }
    [[nodiscard]] int minimum() const { return minimum_; }
    [[nodiscard]] int maximum() const { return maximum_; }
    [[nodiscard]] int value() const { return state_.value; }
    /// Error: invalidPropertyValue outside the range; then nothing changes.
    Status setValue(std::int64_t value);

  private:
    int minimum_;
    int maximum_;
};

struct TabControlState {
    int tab = 0;
};

/// A row of tabs with captions. Each tab has a page, and one page is in front. Which controls are
/// on which page is decided by the window's layout, not by this model.
class TabControl : public ControlWith<TabControlState> {
  public:
    TabControl(Form& owner, std::string name, std::vector<std::string> captions)
        : ControlWith(owner, std::move(name)), captions_(std::move(captions)) {}
    [[nodiscard]] const std::vector<std::string>& captions() const { return captions_; }
    /// The index of the page in front, from 0.
    [[nodiscard]] int tab() const { return state_.tab; }
    /// Error: invalidPropertyValue for a page that does not exist; then nothing changes.
    Status setTab(int tab);

  private:
    std::vector<std::string> captions_;
};

} // namespace sonarith
