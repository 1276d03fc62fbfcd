// SPDX-License-Identifier: GPL-3.0-or-later
// In-place editing of the work tree's labels: which nodes may be renamed, and what a new label
// does.
#pragma once

#include <string>

#include "app/form1.h"

namespace sonarith {

class LabelEdit {
  public:
    explicit LabelEdit(Form1& form) : form_(form) {}

    /// Refuses the edit (`cancel`) unless the selected node's text ends in ".wav", ".WAV", ".mp3"
    /// or
    /// ".MP3".
    void TreeView1_BeforeLabelEdit(bool& cancel) const;
    /// Refuses every new label.
    void TreeView1_AfterLabelEdit(bool& cancel, const std::string& newText) const;

  private:
    Form1& form_;
};

} // namespace sonarith
