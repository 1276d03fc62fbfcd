// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a dialog until it is answered. It shows what it is given and knows no particular dialog.
#pragma once

class QDialog;
class QWidget;

namespace sonarith {

/// Shows `dialog` and handles events until it is finished; its result. The program's other windows
/// get no keys and no mouse meanwhile, their menus close, and a press on one of them brings the
/// dialog to the front. But they can be closed, which Qt's own modal dialogs forbid: the program
/// can be ended while a question is open. Does not return when that happens.
[[nodiscard]] int runDialog(QDialog& dialog);

/// The dialog that runs now, of several the one that was opened last; null if there is none.
[[nodiscard]] QDialog* runningDialog();

/// The window that a new dialog belongs to and stands above: the dialog that runs, else the active
/// window, else (while another program is in front) the main window. Null if none of them is seen:
/// a dialog would be hidden or shrunk together with its parent.
[[nodiscard]] QWidget* dialogParent();

} // namespace sonarith
