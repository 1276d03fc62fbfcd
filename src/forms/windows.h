// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the program's forms, one of each. A form is the model of a window, not a widget. This
// header does not depend on the logic that handles the forms' events.
#pragma once

#include "forms/form1.h"
#include "forms/form4.h"
#include "forms/form6.h"
#include "forms/frm_playlist.h"
#include "forms/frm_popup.h"
#include "forms/frm_prefs.h"
#include "forms/frm_search.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

struct Windows {
    /// Both parameters must outlive this object.
    Windows(const Platform& platform, const ProcessState& process)
        : Form4(platform.loop),
          FrmPrefs(platform.files, platform.directories),
          frmsearch(platform.files, platform.directories),
          frmPlayList(platform.mp3Controls),
          Form6(platform.loop, platform.mp3Controls),
          frmpopup(platform.loop),
          Form1(platform.loop, process, {&Form6, &frmPlayList, &frmsearch}) {}

    sonarith::Form4 Form4;
    sonarith::FrmPrefs FrmPrefs;
    FrmSearch frmsearch;
    FrmPlayList frmPlayList;
    sonarith::Form6 Form6;
    FrmPopup frmpopup;
    sonarith::Form1 Form1;
};

} // namespace sonarith
