// SPDX-License-Identifier: GPL-3.0-or-later
// Lays out the playlist editor: at the left the list and its buttons, at the right the edited file
// with its header and its tag.
#pragma once

#include "forms/frm_playlist.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout playlistLayout(FrmPlayList& form);

} // namespace sonarith
