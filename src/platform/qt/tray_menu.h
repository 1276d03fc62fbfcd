// SPDX-License-Identifier: GPL-3.0-or-later
// The menu on the icon in the desktop's panel: MenuItem models as a menu that Qt opens itself or
// hands to the panel over the bus.
#pragma once

#include <vector>

#include <QMenu>

#include "platform/controls/menu_item.h"

namespace sonarith {

class TrayMenu : public QMenu {
  public:
    /// The heading's entries, which have none of their own; all outlive this. An entry's click runs
    /// in the event loop and not within the panel's request, which would wait for it: what the
    /// entry does may take long, take the icon away or end the program.
    explicit TrayMenu(MenuItem& heading);

  private:
    void add(MenuItem& entry);

    std::vector<Connection> changes_;
};

} // namespace sonarith
