// SPDX-License-Identifier: GPL-3.0-or-later
// What the main window's bars hold, and how it stands within each. Where the bars themselves
// stand is the window's (main_window_view.h).
#pragma once

#include "forms/form1.h"
#include "ui/picture_view.h"

namespace sonarith {

/// Each makes a bar with all its widgets, as a child of `parent`.
/// `takenLetters`: see TextButtonView.
[[nodiscard]] BarView* makeToolBar(Form1& form, const QString& takenLetters, QWidget* parent);
[[nodiscard]] BarView* makeCdBar(Form1& form, QWidget* parent);
[[nodiscard]] BarView* makeActivityBar(Form1& form, QWidget* parent);
[[nodiscard]] BarView* makeStatusBar(Form1& form, QWidget* parent);

} // namespace sonarith
