// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a dialog until the user answers it. Works for any dialog.
#pragma once

class QDialog;
class QWidget;

namespace sonarith {

/// Shows `dialog` and handles events until it is finished; returns its result. Meanwhile the
/// program's other windows receive no keyboard and mouse input, their menus close, and a press on
/// one of them brings the dialog to the front. Unlike with Qt's own modal dialogs, the other
/// windows can be closed, so the user can end the program while a question is open. In that case
/// the function does not return.
[[nodiscard]] int runDialog(QDialog& dialog);

/// The dialog that is running; the one opened last if there are several; null if there is none.
[[nodiscard]] QDialog* runningDialog();

/// The parent for a new dialog, which stays above its parent: the running dialog, else the active
/// window, else (while another program is in front) the main window. Null if none of them is
/// visible: a dialog would be hidden or minimized together with its parent.
[[nodiscard]] QWidget* dialogParent();

} // namespace sonarith
