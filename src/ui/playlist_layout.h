// SPDX-License-Identifier: GPL-3.0-or-later
// The layout of the playlist editor: the list and its player at the left, the edited file with its
// header and its tag at the right.
#pragma once

#include "forms/frm_playlist.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout playlistLayout(FrmPlayList& form);

} // namespace sonarith
