// SPDX-License-Identifier: GPL-3.0-or-later
// A file dialog as a part of a form. It keeps its last settings and its last choice from one use to
// the next, until the form is loaded again.
#pragma once

#include <string>
#include <utility>

#include "platform/controls/form.h"
#include "platform/file_dialog.h"

namespace sonarith {

class CommonDialog : public FormPart {
  public:
    explicit CommonDialog(Form& owner) { owner.adopt(*this); }

    /// Where the dialog opens: a folder, or a file in it.
    std::string InitDir;
    /// The name that the dialog starts with. Afterwards the chosen path, or the old value if the
    /// user chose none.
    std::string FileName;

    /// Shows the dialog with these properties in place of those of the request. Yields. Errors:
    /// dialogCancelled (32755), and other failures of the dialog.
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
