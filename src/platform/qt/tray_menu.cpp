// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/tray_menu.h"

#include "platform/qt/run_later.h"
#include "platform/qt/text.h"

namespace sonarith {

TrayMenu::TrayMenu(MenuItem& heading) {
    setObjectName(toQString(heading.name()));
    connect(this, &QMenu::aboutToShow, this, [&heading] { run(heading.onOpen); });
    for (MenuItem* entry : heading.entries()) {
        if (entry->isSeparator()) {
            addSeparator()->setObjectName(toQString(entry->name()));
        } else {
            add(*entry);
        }
    }
}

void TrayMenu::add(MenuItem& entry) {
    // A single "&" would mark a mnemonic.
    QAction* action =
        addAction(toQString(entry.caption()).replace(QLatin1Char('&'), QLatin1String("&&")));
    action->setObjectName(toQString(entry.name()));
    connect(action, &QAction::triggered, this,
            [this, &entry] { runLater(*this, [&entry] { entry.click(); }); });
    const auto reflect = [&entry, action] {
        action->setEnabled(entry.enabled());
        action->setVisible(entry.visible());
    };
    reflect();
    changes_.push_back(entry.changed.connect([reflect](Property) { reflect(); }));
}

} // namespace sonarith
