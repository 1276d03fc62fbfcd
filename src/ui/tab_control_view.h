// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a TabControl, with an empty page for each tab. The layout of the window fills the pages.
#pragma once

#include <QTabWidget>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class TabControlView : public QTabWidget {
  public:
    TabControlView(TabControl& tabs, QString label, QWidget* parent);

    /// Returns the page with the index `number` (from 0), on which a layout puts widgets. This
    /// object owns the page.
    [[nodiscard]] QWidget& page(int number) const { return *widget(number); }

  private:
    void addPages(const TabControl& tabs);

    ControlView view_;
};

} // namespace sonarith
