// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the bars of the main window, with the widgets of each bar and their layout. The window
// places the bars (main_window_view.h).
#pragma once

#include "forms/form1.h"
#include "ui/picture_view.h"

namespace sonarith {

/// Each function creates a bar with all its widgets, as a child of `parent`. For `takenLetters`,
/// see TextButtonView.
[[nodiscard]] BarView* makeToolBar(Form1& form, const QString& takenLetters, QWidget* parent);
[[nodiscard]] BarView* makeCdBar(Form1& form, QWidget* parent);
[[nodiscard]] BarView* makeActivityBar(Form1& form, QWidget* parent);
[[nodiscard]] BarView* makeStatusBar(Form1& form, QWidget* parent);

} // namespace sonarith
