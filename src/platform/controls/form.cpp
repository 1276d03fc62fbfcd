// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/form.h"

namespace sonarith {

void Form::load() {
    if (!loaded_) {
        loaded_ = true;
        run(onLoad);
    }
}

void Form::show() {
    load();
    // The load step may have unloaded its own window.
    if (loaded_) {
        setVisible(true);
        showRequested.emit();
    }
}

void Form::unload() {
    if (!loaded_) {
        return;
    }
    if (unloading_) {
        run(onUnloadAgain);
        return;
    }
    unloading_ = true;
    run(onQueryUnload);
    run(onUnload);
    loaded_ = false;
    unloading_ = false;
    setVisible(false);
}

void Form::setInnerSize(Twips width, Twips height) {
    if (width != innerWidth_ || height != innerHeight_) {
        innerWidth_ = width;
        innerHeight_ = height;
        run(onResize);
    }
}

} // namespace sonarith
