// SPDX-License-Identifier: GPL-3.0-or-later
// Lays out the playlist editor. At the left are the list and its buttons. At the right are the
// path, the MP3 header and the tag of the edited file, and the buttons for that file.
#pragma once

#include "forms/frm_playlist.h"
#include "ui/form_window.h"

namespace sonarith {

[[nodiscard]] WindowLayout playlistLayout(FrmPlayList& form);

} // namespace sonarith
