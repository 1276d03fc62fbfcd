// SPDX-License-Identifier: GPL-3.0-or-later
// Implements FileDialog with Qt's file dialog. The dialog runs its own event loop until it is
// closed, so timers and jobs continue while it is open. This class opens no file.
#pragma once

#include <functional>
#include <string>

#include "platform/file_dialog.h"

class QFileDialog;

namespace sonarith {

class QtFileDialog : public FileDialog {
  public:
    /// Converts a path of the logic to a machine path, or back. An empty result means that
    /// the path has no counterpart.
    using Translate = std::function<std::string(const std::string&)>;

    QtFileDialog(Translate toMachine, Translate toLogic)
        : toMachine_(std::move(toMachine)), toLogic_(std::move(toLogic)) {}

    /// Shows the files that match the filter, ignoring case, and accepts only an existing file. The
    /// dialog starts in the first of these folders that has a machine path: the folder of
    /// `request.fileName`, if that name is a path; `request.initialFolder`; the folder in which the
    /// dialog was last closed. Errors: dialogCancelled; badFileName for a file without a path of
    /// the logic.
    Result<std::string> open(const FileDialogRequest& request) override;
    /// Like open(), but accepts a new or an existing name. The dialog does not ask whether an
    /// existing file may be replaced.
    Result<std::string> save(const FileDialogRequest& request) override;

  private:
    Result<std::string> show(QFileDialog& dialog, const FileDialogRequest& request);
    void openIn(QFileDialog& dialog, const FileDialogRequest& request);

    Translate toMachine_;
    Translate toLogic_;
    /// The folder in which the dialog was last closed; a machine path.
    std::string folder_;
};

} // namespace sonarith
