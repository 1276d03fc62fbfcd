// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/check_box_view.h"

#include "platform/qt/text.h"
#include "ui/mnemonics.h"

namespace sonarith {

CheckBoxView::CheckBoxView(CheckBox& box, const QString& label, QWidget* parent)
    : QCheckBox(parent),
      view_(
          box, *this, [&box] { return box.caption(); }, label,
          [this, &box, label](Property which) {
              if (concerns(which, Property::caption)) {
                  setText(
                      withoutMnemonic(box.caption().empty() ? label : toQString(box.caption())));
              }
              if (concerns(which, Property::value)) {
                  setChecked(box.value() == 1);
              }
          }) {
    connect(this, &QCheckBox::clicked, this,
            [this, &box] { box.setValue(isChecked() ? 1 : 0).passOver(); });
}

} // namespace sonarith
