// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/popup_menus.h"

#include "ui/popup_place.h"

namespace sonarith {

PopupMenus::PopupMenus(Form& form, QWidget& window, const MenuBarView* bar)
    : window_(window),
      bar_(bar),
      requested_(form.popupRequested.connect([this](MenuItem& heading) { open(heading); })) {}

void PopupMenus::open(MenuItem& heading) {
    if (!heading.enabled()) {
        return;
    }
    QMenu* menu = bar_ ? bar_->menuOf(heading) : nullptr;
    if (!menu) {
        const auto known = menus_.find(&heading);
        menu = known != menus_.end() ? known->second : &makeMenu(heading, window_, menus_);
    }
    menu->popup(PopupPlace::current());
}

} // namespace sonarith
