// SPDX-License-Identifier: GPL-3.0-or-later
// A window as the logic knows it: its parts, whether it is loaded and shown, its caption, place and
// size. What its controls do is the business of the logic that is wired to it.
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

/// What a form has beyond the properties of any control.
struct FormState {
    std::string caption;
    std::optional<WindowRegion> region;
};

/// The one default instance of a window. Its controls live as long as the program. A form's class
/// declares them as members, sets how they are designed in its constructor, and ends that with
/// keepDesign().
///
/// Life cycle: load() gives every part its designed state, silently, and then runs the load step;
/// unload() asks, runs the unload step and stops the form's timers; then the form can be loaded
/// again. Showing a form that is not loaded loads it first; so does reaching for one of its
/// controls (touched(), below), without showing it.
class Form : public ControlWith<FormState> {
  public:
    explicit Form(std::string name, std::string caption = {});

    [[nodiscard]] const std::string& caption() const { return state_.caption; }
    void setCaption(std::string caption) {
        assign(state_.caption, std::move(caption), Property::caption);
    }

    [[nodiscard]] bool loaded() const { return loaded_; }
    /// How often the form has been loaded. A step that yields can tell by it whether the form that
    /// it goes on with is the one that it began with.
    [[nodiscard]] int timesLoaded() const { return timesLoaded_; }
    /// A second load is no load.
    void load();
    /// Loads the form, unshown, unless it is loaded.
    void touch() { load(); }
    void show();
    void hide() { setVisible(false); }
    /// Runs onQueryUnload, then onUnload, then stops the timers and hides. Nothing for a form that
    /// is not loaded; for one whose unloading has begun, onUnloadAgain.
    void unload();

    /// The size that the form has at each load from now on, and now. A view calls this whose
    /// contents need another size than the designed one.
    void setDesignedSize(Twips width, Twips height);

    /// The client area's size, set by the view.
    [[nodiscard]] Twips innerWidth() const { return innerWidth_; }
    [[nodiscard]] Twips innerHeight() const { return innerHeight_; }
    /// Runs onResize if the size is another one.
    void setInnerSize(Twips width, Twips height);

    /// The part of the window that is left, in pixels from its outer corner; none: all of it.
    [[nodiscard]] const std::optional<WindowRegion>& windowRegion() const { return state_.region; }
    void setWindowRegion(std::optional<WindowRegion> region) {
        assign(state_.region, std::move(region), Property::region);
    }

    Handler<> onLoad;
    Handler<> onQueryUnload;
    Handler<> onUnload;
    /// The window is to close while a step of its unloading waits.
    Handler<> onUnloadAgain;
    Handler<> onResize;
    /// A press on the bare surface.
    Handler<MouseButtons> onMouseDown;

    /// The window is to follow the pointer as if its caption had been grasped.
    Signal<> captionGrasped;
    /// The menu is to open at the pointer.
    Signal<MenuItem&> popupRequested;
    /// The window is to shrink to its task bar entry.
    Signal<> minimizeRequested;
    /// The window was shown, whether it was visible already or not: one that is shrunk to its task
    /// bar entry comes back.
    Signal<> showRequested;

    /// For the constructors of parts alone.
    void adopt(FormPart& part) { parts_.push_back(&part); }

  protected:
    /// The present state of the form and of all parts is the designed one. The last step of a
    /// form's constructor.
    void keepDesign() override;

  private:
    std::vector<FormPart*> parts_;
    Twips innerWidth_;
    Twips innerHeight_;
    int timesLoaded_ = 0;
    bool loaded_ = false;
    bool unloading_ = false;
};

/// The form, loaded: `touched(windows.FrmPrefs).Label4`. How code outside of a window reaches for
/// one of its controls.
template <typename SomeForm>
[[nodiscard]] SomeForm& touched(SomeForm& form) {
    form.touch();
    return form;
}

} // namespace sonarith
