// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the tag of the edited file (Text5) from the boxes. It neither reads the file nor asks.
#pragma once

#include "forms/frm_playlist.h"
#include "platform/platform.h"

namespace sonarith {

class TagEditor {
  public:
    /// Becomes the handler of cmdTag. Both outlive this.
    TagEditor(const Platform& platform, FrmPlayList& form);
    TagEditor(const TagEditor&) = delete;
    TagEditor& operator=(const TagEditor&) = delete;

    /// " Write tag": puts the tag over the file's last 128 bytes, whether they are one or not, in
    /// one write. A shorter file is written over from its start; a missing one is made. A file that
    /// cannot be opened for writing stays as it is, and nothing is said.
    void cmdTag_Click();

  private:
    const Platform& platform_;
    FrmPlayList& form_;
};

} // namespace sonarith
