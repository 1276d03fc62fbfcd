// SPDX-License-Identifier: GPL-3.0-or-later
// Opens the popup menus that a form requests, over the window that shows the form. Builds a menu
// when it is first requested.
#pragma once

#include "platform/controls/form.h"
#include "ui/menu_view.h"

namespace sonarith {

class PopupMenus {
  public:
    /// `bar` may be null. A requested menu that belongs to the bar is not built again: the bar's
    /// own menu opens. All parameters must outlive this object.
    PopupMenus(Form& form, QWidget& window, const MenuBarView* bar);

  private:
    void open(MenuItem& heading);

    QWidget& window_;
    const MenuBarView* bar_;
    MenusOfHeadings menus_;
    Connection requested_;
};

} // namespace sonarith
