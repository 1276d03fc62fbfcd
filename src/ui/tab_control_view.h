// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a TabControl: an empty page for each caption. The window fills the pages.
#pragma once

#include <QTabWidget>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class TabControlView : public QTabWidget {
  public:
    TabControlView(TabControl& tabs, QString label, QWidget* parent);

    /// A page for a layout, from 0; owned by this object.
    [[nodiscard]] QWidget& page(int number) const { return *widget(number); }

  private:
    void addPages(const TabControl& tabs);

    ControlView view_;
};

} // namespace sonarith
