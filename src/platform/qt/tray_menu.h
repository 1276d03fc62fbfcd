// SPDX-License-Identifier: GPL-3.0-or-later
// The menu of the icon in the desktop's panel: shows MenuItem models in a menu that Qt either opens
// itself or exports to the panel over D-Bus.
#pragma once

#include <vector>

#include <QMenu>

#include "platform/controls/menu_item.h"

namespace sonarith {

class TrayMenu : public QMenu {
  public:
    /// Shows the entries of `heading`, which have no submenus; heading and entries must outlive
    /// this object. The panel reports a click in a D-Bus request and waits until the request
    /// returns. The click handler of the entry therefore runs later, from the event loop: it may
    /// take long, remove the icon or end the program.
    explicit TrayMenu(MenuItem& heading);

  private:
    void add(MenuItem& entry);

    std::vector<Connection> changes_;
};

} // namespace sonarith
