// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a dialog until it is answered. It shows what it is given and knows no particular dialog.
#pragma once

class QDialog;

namespace sonarith {

/// Shows `dialog` above the active window and handles events until it is finished; its result. The
/// program's other windows get no keys and no mouse meanwhile, but they can be closed, which Qt's
/// own modal dialogs forbid: the program can be ended while a question is open. Does not return
/// when that happens.
[[nodiscard]] int runDialog(QDialog& dialog);

/// The dialog that runs now, of several the one that was opened last; null if there is none.
[[nodiscard]] QDialog* runningDialog();

} // namespace sonarith
