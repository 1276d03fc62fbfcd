// SPDX-License-Identifier: GPL-3.0-or-later
// A file dialog that is a part of a form. The initial folder and the chosen file stay set for the
// dialog's next use, until the form is loaded again.
#pragma once

#include <string>
#include <utility>

#include "platform/controls/form.h"
#include "platform/file_dialog.h"

namespace sonarith {

class CommonDialog : public FormPart {
  public:
    explicit CommonDialog(Form& owner) { owner.adopt(*this); }

    /// The folder in which the dialog opens, or the path of a file in that folder.
    std::string InitDir;
    /// The file name that the dialog shows when it opens. After the user has chosen a file: its
    /// path. Unchanged if the user chose no file.
    std::string FileName;

    /// Shows the dialog. InitDir and FileName replace the folder and the file name of the request.
    /// Yields. Errors: dialogCancelled (32755), and other failures of the dialog.
    Status ShowOpen(FileDialog& dialog, FileDialogRequest request) {
        return taken(dialog.open(filled(std::move(request))));
    }
    Status ShowSave(FileDialog& dialog, FileDialogRequest request) {
        return taken(dialog.save(filled(std::move(request))));
    }

  private:
    [[nodiscard]] FileDialogRequest filled(FileDialogRequest request) const {
        request.initialFolder = InitDir;
        request.fileName = FileName;
        return request;
    }
    Status taken(const Result<std::string>& chosen) {
        chosen.storeIn(FileName);
        return chosen.ok() ? Status() : Status(chosen.error());
    }
    void atLoad() override {
        InitDir.clear();
        FileName.clear();
    }
};

} // namespace sonarith
