// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the texts of the playlist editor's tag boxes to the tag of the edited file (Text5). It
// does not read the file and asks no question before it overwrites the tag.
#pragma once

#include "forms/frm_playlist.h"
#include "platform/platform.h"

namespace sonarith {

class TagEditor {
  public:
    /// Sets the handler of cmdTag. Both parameters must outlive this object.
    TagEditor(const Platform& platform, FrmPlayList& form);
    TagEditor(const TagEditor&) = delete;
    TagEditor& operator=(const TagEditor&) = delete;

    /// The button " Write tag": with one write, replaces the file's last 128 bytes by the tag, even
    /// if those bytes are not a tag. A file of fewer than 128 bytes is overwritten from its start;
    /// a missing file is created. A file that cannot be opened for writing is unchanged, without a
    /// message.
    void cmdTag_Click();

  private:
    const Platform& platform_;
    FrmPlayList& form_;
};

} // namespace sonarith
