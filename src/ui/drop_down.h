// SPDX-License-Identifier: GPL-3.0-or-later
// The base class of views that show a drop-down list of a few texts. The mouse wheel over the
// closed list changes nothing: a choice may start an action, and the user may have wanted to scroll
// the window.
#pragma once

#include <QComboBox>
#include <QStringList>

namespace sonarith {

class DropDown : public QComboBox {
  public:
    explicit DropDown(QWidget* parent);

    /// Sets the texts and the index of the selected text (-1: none). An open list closes when its
    /// texts change.
    void show(const QStringList& texts, int selected);
    using QComboBox::show;

  protected:
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace sonarith
