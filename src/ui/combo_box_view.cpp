// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/combo_box_view.h"

#include "platform/qt/text.h"

namespace sonarith {

ComboBoxView::ComboBoxView(ComboBox& box, QString label, QWidget* parent)
    : DropDown(parent), box_(box), view_(box, *this, {}, std::move(label), [this](Property which) {
          if (concerns(which, Property::entries, Property::listIndex)) {
              showEntries();
          }
      }) {
    connect(this, &QComboBox::activated, this, [this](int index) {
        box_.choose(index);
        // The handler may have chosen another entry.
        showEntries();
    });
}

void ComboBoxView::showEntries() {
    QStringList texts;
    for (int i = 0; i < box_.listCount(); ++i) {
        texts += toQString(box_.list(i));
    }
    show(texts, box_.listIndex());
}

} // namespace sonarith
