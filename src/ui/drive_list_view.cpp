// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/drive_list_view.h"

#include "platform/qt/text.h"

namespace sonarith {

DriveListView::DriveListView(DriveListBox& drives, QString label, QWidget* parent)
    : DropDown(parent),
      drives_(drives),
      view_(drives, *this, {}, std::move(label), [this](Property which) {
          if (concerns(which, Property::path)) {
              showDrives();
          }
      }) {
    connect(this, &QComboBox::activated, this, [this](int index) {
        drives_.setDrive(toText(itemText(index))).passOver();
        // The control may have refused the change.
        showDrives();
    });
}

void DriveListView::showDrives() {
    QStringList present;
    for (const std::string& drive : drives_.drives()) {
        present += toQString(drive);
    }
    const QString chosen = toQString(drives_.drive());
    if (!chosen.isEmpty() && !present.contains(chosen)) {
        // The drive was removed after it was chosen.
        present.prepend(chosen);
    }
    show(present, static_cast<int>(present.indexOf(chosen)));
}

void DriveListView::showPopup() {
    showDrives();
    DropDown::showPopup();
}

void DriveListView::keyPressEvent(QKeyEvent* event) {
    showDrives();
    DropDown::keyPressEvent(event);
}

} // namespace sonarith
