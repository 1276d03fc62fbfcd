// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which a person chooses a file to open, as the logic asks for it. What becomes of
// the file is the caller's affair.
#pragma once

#include <string>

#include "platform/result.h"

namespace sonarith {

/// What the dialog shows when it opens.
struct FileDialogRequest {
    std::string title;
    /// Pairs of a caption and its patterns: "WAV, MP3|*.wav;*.mp3|All files|*.*".
    std::string filter;
    /// Added to a typed name that has none; without a point.
    std::string defaultExtension;
    /// The path chosen at the start, in the logic's form; empty for none.
    std::string fileName;
};

class FileDialog {
  public:
    virtual ~FileDialog() = default;
    /// Shows the dialog and yields until it is closed. The path of the chosen file, in the logic's
    /// form. Error: dialogCancelled (32755).
    virtual Result<std::string> open(const FileDialogRequest& request) = 0;
};

} // namespace sonarith
