// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/drop_down.h"

#include <QAbstractItemView>
#include <QSignalBlocker>
#include <QWheelEvent>

namespace sonarith {

DropDown::DropDown(QWidget* parent) : QComboBox(parent) {
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
}

void DropDown::show(const QStringList& texts, int selected) {
    QStringList shown;
    for (int i = 0; i < count(); ++i) {
        shown += itemText(i);
    }
    // A signal of this class means an action of the user, so changes made here emit no signal.
    const QSignalBlocker quiet(this);
    if (shown != texts) {
        hidePopup();
        clear();
        addItems(texts);
    }
    setCurrentIndex(selected);
}

void DropDown::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

} // namespace sonarith
