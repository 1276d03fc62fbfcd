// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/form.h"

namespace sonarith {

Form::Form(std::string name, std::string caption) : ControlWith(std::move(name)) {
    state_.caption = std::move(caption);
    setVisible(false);
    ControlWith::keepDesign();
}

void Form::keepDesign() {
    ControlWith::keepDesign();
    for (FormPart* part : parts_) {
        part->keepDesign();
    }
}

void Form::load() {
    if (loaded_) {
        return;
    }
    loaded_ = true;
    ++timesLoaded_;
    atLoad();
    for (FormPart* part : parts_) {
        part->atLoad();
    }
    run(onLoad);
}

void Form::show() {
    load();
    // onLoad may have unloaded this form.
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
    for (FormPart* part : parts_) {
        part->atUnload();
    }
    loaded_ = false;
    unloading_ = false;
    setVisible(false);
}

void Form::setDesignedSize(Twips width, Twips height) {
    designSize(width, height);
}

void Form::setInnerSize(Twips width, Twips height) {
    if (width != innerWidth_ || height != innerHeight_) {
        innerWidth_ = width;
        innerHeight_ = height;
        run(onResize);
    }
}

} // namespace sonarith
