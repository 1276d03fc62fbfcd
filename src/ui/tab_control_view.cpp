// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tab_control_view.h"

#include <QTabBar>

#include "platform/qt/text.h"
#include "ui/mnemonics.h"

namespace sonarith {

TabControlView::TabControlView(TabControl& tabs, QString label, QWidget* parent)
    : QTabWidget(parent), view_(tabs, *this, {}, std::move(label), [this, &tabs](Property which) {
          if (concerns(which, Property::listIndex)) {
              setCurrentIndex(tabs.tab());
          }
      }) {
    addPages(tabs);
    setCurrentIndex(tabs.tab());
    connect(this, &QTabWidget::currentChanged, this,
            [&tabs](int page) { tabs.setTab(page).passOver(); });
}

void TabControlView::addPages(const TabControl& tabs) {
    for (const std::string& caption : tabs.captions()) {
        auto* page = new QWidget(this);
        page->setAccessibleName(toQString(caption).trimmed());
        const int number = addTab(page, withoutMnemonic(toQString(caption)));
        tabBar()->setAccessibleTabName(number, toQString(caption).trimmed());
    }
}

} // namespace sonarith
