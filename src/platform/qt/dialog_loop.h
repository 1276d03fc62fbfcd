// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a dialog of any kind until the user answers or closes it.
#pragma once

class QDialog;
class QWidget;

namespace sonarith {

/// Shows `dialog` and handles events until it is finished; returns its result. While the dialog is
/// open, the program's other windows receive no keyboard or mouse input, their menus are closed,
/// and a press on such a window brings the dialog to the front. Unlike with Qt's own modal dialogs,
/// the other windows can be closed, so the user can end the program while a question is open. If
/// the program ends, the function does not return.
[[nodiscard]] int runDialog(QDialog& dialog);

/// The running dialog that was opened last; null if no dialog is running.
[[nodiscard]] QDialog* runningDialog();

/// The parent for a new dialog. A dialog stays above its parent and is hidden or minimized together
/// with it. Returns the first of these windows that is visible and not minimized: the running
/// dialog that was opened last; the active window (none while another program is in front); the
/// main window. Null if no such window exists.
[[nodiscard]] QWidget* dialogParent();

} // namespace sonarith
