// SPDX-License-Identifier: GPL-3.0-or-later
// Texts of a window's layout that are no controls and never change: the word beside a box, a
// heading above a value, a sentence of explanation.
#pragma once

#include <QLabel>

namespace sonarith {

/// `named` (may be null) is the widget that the text is the name of, for screen readers.
[[nodiscard]] QLabel* makeFixedText(const QString& text, QWidget* named, QWidget* parent);

/// A fixed word beside or above a value, paler than that.
[[nodiscard]] QLabel* makeHeading(const QString& text, QWidget* parent);

} // namespace sonarith
