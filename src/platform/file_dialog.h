// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which the user chooses a file to open, or a name to save under, as the logic asks
// for it. What becomes of the file is the caller's affair.
#pragma once

#include <string>

#include "platform/result.h"

namespace sonarith {

/// What the dialog shows when it opens. Paths are in the logic's form.
struct FileDialogRequest {
    std::string title = {};
    /// Pairs of a caption and its patterns: "WAV, MP3|*.wav;*.mp3|All files|*.*". Empty: all files.
    std::string filter = {};
    /// Added to a typed name that has none; without a point.
    std::string defaultExtension = {};
    /// The folder in which the dialog opens, or a file in it. Empty, or not there: where it was
    /// left.
    std::string initialFolder = {};
    /// A path, or a name in the initial folder, that is chosen at the start; empty for none.
    std::string fileName = {};
};

class FileDialog {
  public:
    virtual ~FileDialog() = default;
    /// Shows the dialog and yields until it is closed. The path of the chosen file, which exists.
    /// Error: dialogCancelled (32755).
    virtual Result<std::string> open(const FileDialogRequest& request) = 0;
    /// As open(), for a name that may be new or taken: a name that exists is the caller's question,
    /// not the dialog's.
    virtual Result<std::string> save(const FileDialogRequest& request) = 0;
};

} // namespace sonarith
