// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/frm_prefs.h"

namespace sonarith {

FrmPrefs::FrmPrefs(const FileSystem& files, Directories& directories)
    : Form("FrmPrefs", "Preferences"),
      Drive2(*this, "Drive2", directories, files),
      Dir2(*this, "Dir2", directories, files) {
    Combo1.setToolTip("Bitrate selector");
    Check1.setToolTip("Mute (Silent copy)");
    Label3.setVisible(false);
    Label4.setVisible(false);
    Text6.setLocked(true);
    Picture6.setVisible(false);
    setDesignedSize(8400_twips, 6600_twips);
    keepDesign();
}

} // namespace sonarith
