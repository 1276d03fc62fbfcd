// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop's file dialog. It runs a loop of its own until closed, so timers and jobs go on
// beneath it. It opens no file.
#pragma once

#include <functional>
#include <string>

#include "platform/file_dialog.h"

class QFileDialog;

namespace sonarith {

class QtFileDialog : public FileDialog {
  public:
    /// From a path of the logic's form to the machine's and back; an empty result stands for a path
    /// that has no counterpart.
    using Translate = std::function<std::string(const std::string&)>;

    QtFileDialog(Translate toMachine, Translate toLogic)
        : toMachine_(std::move(toMachine)), toLogic_(std::move(toLogic)) {}

    /// Shows the files that the filter names, whatever their case, and takes one that exists. It
    /// begins in the folder of `request.fileName`, or in the initial folder, or else where it was
    /// left. Errors: dialogCancelled; badFileName for a file that the logic has no path for.
    Result<std::string> open(const FileDialogRequest& request) override;
    /// The same for a name that may be taken: the dialog does not ask.
    Result<std::string> save(const FileDialogRequest& request) override;

  private:
    Result<std::string> show(QFileDialog& dialog, const FileDialogRequest& request);
    void openIn(QFileDialog& dialog, const FileDialogRequest& request);

    Translate toMachine_;
    Translate toLogic_;
    /// The folder in which it was left last, a machine path.
    std::string folder_;
};

} // namespace sonarith
