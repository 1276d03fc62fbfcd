// SPDX-License-Identifier: GPL-3.0-or-later
// A window as the logic knows it: loaded or not, seen or not, its caption, place and size.
#pragma once

#include <string>
#include <utility>

#include "platform/controls/basic_controls.h"

namespace sonarith {

/// One default instance of a window. Its controls live as long as the program; loading runs its
/// load step, and a window that is shown while not loaded loads first.
class Form : public Control {
  public:
    explicit Form(std::string name, std::string caption = {})
        : Control(std::move(name)), caption_(std::move(caption)) {
        setVisible(false);
    }

    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption)); }

    [[nodiscard]] bool loaded() const { return loaded_; }
    /// A second load is no load.
    void load();
    void show();
    void hide() { setVisible(false); }
    /// Runs onQueryUnload, then onUnload, then hides. Nothing for a window that is not loaded; for
    /// one whose unloading has begun, onUnloadAgain.
    void unload();

    /// The client area's size, set by whoever shows the window.
    [[nodiscard]] Twips innerWidth() const { return innerWidth_; }
    [[nodiscard]] Twips innerHeight() const { return innerHeight_; }
    /// Runs onResize if the size is another one.
    void setInnerSize(Twips width, Twips height);

    Handler<> onLoad;
    Handler<> onQueryUnload;
    Handler<> onUnload;
    /// The window is to close while a step of its unloading waits.
    Handler<> onUnloadAgain;
    Handler<> onResize;
    /// A left press on the bare surface.
    Handler<> onMouseDown;

    /// The window is to follow the pointer as if its caption had been grasped.
    Signal<> captionGrasped;
    /// The menu is to open at the pointer.
    Signal<MenuItem&> popupRequested;
    /// The window is to shrink to its task bar entry.
    Signal<> minimizeRequested;
    /// The window was shown, whether it was visible already or not: one that is shrunk to its task
    /// bar entry comes back.
    Signal<> showRequested;

  private:
    std::string caption_;
    Twips innerWidth_ = 0;
    Twips innerHeight_ = 0;
    bool loaded_ = false;
    bool unloading_ = false;
};

} // namespace sonarith
