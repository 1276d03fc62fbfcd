// SPDX-License-Identifier: GPL-3.0-or-later
// A drop-down list of a few texts, for the controls that are one. Turning the wheel over the closed
// box changes nothing: a choice may start something, and the hand may have meant to scroll.
#pragma once

#include <QComboBox>
#include <QStringList>

namespace sonarith {

class DropDown : public QComboBox {
  public:
    explicit DropDown(QWidget* parent);

    /// The texts, and which of them is selected (-1: none). An open list whose texts change closes.
    void show(const QStringList& texts, int selected);
    using QComboBox::show;

  protected:
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace sonarith
