// SPDX-License-Identifier: GPL-3.0-or-later
// The program's other windows, as the main window reaches them: one default instance each.
#pragma once

#include "platform/controls/form.h"

namespace sonarith {

struct Windows {
    Form Form4{"Form4", "CD Player"};
    Form FrmPrefs{"FrmPrefs", "Preferences"};
    Form frmsearch{"frmsearch", "File Finder"};
    Form frmPlayList{"frmPlayList", "Playlist Editor"};
    Form Form6{"Form6"};       ///< the conversion worker, never shown
    Form frmpopup{"frmpopup"}; ///< owns the tray icon, never shown
};

} // namespace sonarith
