// SPDX-License-Identifier: GPL-3.0-or-later
// The menu of the icon in the desktop's panel: MenuItem models as a menu that Qt opens itself or
// exports to the panel over the bus.
#pragma once

#include <vector>

#include <QMenu>

#include "platform/controls/menu_item.h"

namespace sonarith {

class TrayMenu : public QMenu {
  public:
    /// Shows the entries of `heading`, which have no submenus; heading and entries must outlive
    /// this object. An entry's click runs in the event loop and not within the panel's request:
    /// the panel would wait, and the click may take long, remove the icon or end the program.
    explicit TrayMenu(MenuItem& heading);

  private:
    void add(MenuItem& entry);

    std::vector<Connection> changes_;
};

} // namespace sonarith
