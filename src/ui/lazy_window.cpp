// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/lazy_window.h"

#include <utility>

namespace sonarith {

LazyWindow::LazyWindow(WindowLayout layout, HelpCall help)
    : layout_(std::move(layout)),
      help_(std::move(help)),
      changed_(layout_.form.changed.connect([this](Property which) {
          if (which == Property::visible) {
              makeIfVisible();
          }
      })) {
    makeIfVisible();
}

void LazyWindow::makeIfVisible() {
    if (!window_ && layout_.form.visible()) {
        window_ = std::make_unique<FormWindow>(layout_, help_);
    }
}

} // namespace sonarith
