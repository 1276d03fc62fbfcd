// SPDX-License-Identifier: GPL-3.0-or-later
// Texts of a window's layout that are not controls and never change: a label beside a box, a
// heading above a value, an explanation.
#pragma once

#include <QLabel>

namespace sonarith {

/// `named` (may be null) is the widget that this text labels for screen readers.
[[nodiscard]] QLabel* makeFixedText(const QString& text, QWidget* named, QWidget* parent);

/// A label beside or above a value, paler than the value.
[[nodiscard]] QLabel* makeHeading(const QString& text, QWidget* parent);

} // namespace sonarith
