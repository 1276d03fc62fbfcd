// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the dialog in which the user chooses a file to open, or a name under which to save. The
// caller, not the dialog, opens and writes the file. Used on the logic thread only.
#pragma once

#include <string>

#include "platform/result.h"

namespace sonarith {

/// The initial content of the dialog. Paths are paths of the logic ("h:\music\a.wav").
struct FileDialogRequest {
    std::string title = {};
    /// Pairs of a caption and its patterns: "WAV, MP3|*.wav;*.mp3|All files|*.*". Empty: all files.
    std::string filter = {};
    /// For example "wav", without the dot. Appended to a typed name that has no extension.
    std::string defaultExtension = {};
    /// The folder in which the dialog opens, or the path of a file in that folder. If this path is
    /// empty or cannot be used, the dialog opens in the folder where it was last closed.
    std::string initialFolder = {};
    /// The file that is selected when the dialog opens: a name in the initial folder, or a path.
    /// If it is a path, the dialog opens in the folder of this path, not in the initial folder.
    /// Empty: no file is selected.
    std::string fileName = {};
};

class FileDialog {
  public:
    virtual ~FileDialog() = default;
    /// Shows the dialog and yields until it is closed. Returns the path of the chosen file, which
    /// exists. Errors: dialogCancelled (32755); badFileName for a file without a path of the logic.
    virtual Result<std::string> open(const FileDialogRequest& request) = 0;
    /// As open(), for a new or an existing name. The caller, not the dialog, asks whether to
    /// replace an existing file.
    virtual Result<std::string> save(const FileDialogRequest& request) = 0;
};

} // namespace sonarith
