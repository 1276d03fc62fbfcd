// SPDX-License-Identifier: GPL-3.0-or-later
#include "forms/frm_playlist.h"

namespace sonarith {

FrmPlayList::FrmPlayList(Mp3Controls& mp3Controls)
    : Form("frmPlayList", "Playlist Editor"),
      ActiveMP31(*this, mp3Controls),
      text4_{{{*this, "Text4(1)"},
              {*this, "Text4(2)"},
              {*this, "Text4(3)"},
              {*this, "Text4(4)"},
              {*this, "Text4(5)"},
              {*this, "Text4(6)"},
              {*this, "Text4(7)"},
              {*this, "Text4(8)"}}} {
    List2.setToolTip("PlayList");
    List3.setVisible(false);
    Text5.setToolTip("Currently editing this file");
    Command6.setToolTip("Remove File from PlayList");
    Command11.setToolTip("Play");
    Command12.setToolTip("Stop");
    cmdHdr2.setToolTip("Read Header");
    Command10.setToolTip("Delete File");
    List1.setToolTip("Header Info");
    setDesignedSize(11400_twips, 7800_twips);
    keepDesign();
}

} // namespace sonarith
