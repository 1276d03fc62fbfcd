// SPDX-License-Identifier: GPL-3.0-or-later
// The model of a window: its parts, whether it is loaded and shown, its caption, position and size.
// The logic implements the behaviour of the controls: it sets the handlers of the form and of the
// controls.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"
#include "platform/controls/menu_item.h"
#include "platform/controls/mouse_buttons.h"
#include "platform/window_region.h"

namespace sonarith {

/// Properties that a form has in addition to those of a control.
struct FormState {
    std::string caption;
    std::optional<WindowRegion> region;
};

/// A window of which the program has only one instance. The form and its controls exist until the
/// program ends. The class of a form declares the controls as members, sets their designed state in
/// its constructor, and calls keepDesign() at the end of the constructor.
///
/// Life cycle: load() resets every part to its designed state, without running a handler, and then
/// runs the load step (onLoad). unload() runs the query step (onQueryUnload) and the unload step
/// (onUnload) and stops the form's timers; then the form can be loaded again. show() first loads a
/// form that is not loaded. Access to a control of the form through touched() (below) loads the
/// form without showing it.
class Form : public ControlWith<FormState> {
  public:
    explicit Form(std::string name, std::string caption = {});

    [[nodiscard]] const std::string& caption() const { return state_.caption; }
    void setCaption(std::string caption) {
        assign(state_.caption, std::move(caption), Property::caption);
    }

    [[nodiscard]] bool loaded() const { return loaded_; }
    /// Number of loads so far. A step that yields can detect by this number that the form was
    /// unloaded and loaded again during the yield.
    [[nodiscard]] int timesLoaded() const { return timesLoaded_; }
    /// Does nothing if the form is already loaded.
    void load();
    /// The same as load(). Does not show the form.
    void touch() { load(); }
    void show();
    void hide() { setVisible(false); }
    /// Runs onQueryUnload and onUnload, then stops the timers and hides the form. Does nothing for
    /// a form that is not loaded. While an earlier unload() is running, only runs onUnloadAgain.
    void unload();

    /// Sets the present size and the designed size, which each later load restores. Called by the
    /// constructors of forms, and by a view whose contents need another size.
    void setDesignedSize(Twips width, Twips height);

    /// Width of the client area, set by the view.
    [[nodiscard]] Twips innerWidth() const { return innerWidth_; }
    [[nodiscard]] Twips innerHeight() const { return innerHeight_; }
    /// Runs onResize if the size changes.
    void setInnerSize(Twips width, Twips height);

    /// The visible part of the window, in pixels from the upper left corner of the window; nullopt
    /// if the whole window is visible.
    [[nodiscard]] const std::optional<WindowRegion>& windowRegion() const { return state_.region; }
    void setWindowRegion(std::optional<WindowRegion> region) {
        assign(state_.region, std::move(region), Property::region);
    }

    Handler<> onLoad;
    Handler<> onQueryUnload;
    Handler<> onUnload;
    /// unload() was called while an earlier unload() of this form had not yet ended.
    Handler<> onUnloadAgain;
    Handler<> onResize;
    /// A mouse button was pressed on the form, outside of its controls.
    Handler<MouseButtons> onMouseDown;

    /// Asks the view to move the window with the pointer, as if the user dragged its caption.
    Signal<> captionGrasped;
    /// Asks the view to open the menu at the pointer.
    Signal<MenuItem&> popupRequested;
    /// Asks the view to minimize the window to its task bar entry.
    Signal<> minimizeRequested;
    /// Emitted by each show(), even if the form is already visible; the view then restores a
    /// minimized window.
    Signal<> showRequested;

    /// Called only by the constructors of parts.
    void adopt(FormPart& part) { parts_.push_back(&part); }

  protected:
    /// Makes the present state of the form and of all parts the designed state. Called at the end
    /// of a form's constructor.
    void keepDesign() override;

  private:
    std::vector<FormPart*> parts_;
    Twips innerWidth_;
    Twips innerHeight_;
    int timesLoaded_ = 0;
    bool loaded_ = false;
    bool unloading_ = false;
};

/// Loads the form if needed and returns it: `touched(windows.FrmPrefs).Label4`. Code that does not
/// belong to a window accesses the window's controls in this way.
template <typename SomeForm>
[[nodiscard]] SomeForm& touched(SomeForm& form) {
    form.touch();
    return form;
}

} // namespace sonarith
