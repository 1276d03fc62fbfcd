// SPDX-License-Identifier: GPL-3.0-or-later
// Creates texts of a window's layout that are not controls and never change, such as a label beside
// a box, a heading above a value or an explanation.
#pragma once

#include <QLabel>

namespace sonarith {

/// Creates a text. If `named` is not null, screen readers read the text as the label of this
/// widget.
[[nodiscard]] QLabel* makeFixedText(const QString& text, QWidget* named, QWidget* parent);

/// Creates a heading of a value. It is paler than the value.
[[nodiscard]] QLabel* makeHeading(const QString& text, QWidget* parent);

} // namespace sonarith
