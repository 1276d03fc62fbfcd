// SPDX-License-Identifier: GPL-3.0-or-later
// A file dialog for tests: the user's choices are queued in advance.
//
//     FakeFileDialog dialog;
//     dialog.choices = {"c:\\music\\a.wav", std::nullopt};   // chosen, then cancelled
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_dialog.h"

namespace sonarith::test {

class FakeFileDialog final : public FileDialog {
  public:
    /// The user's choices, in the order of the dialogs. A dialog is cancelled if its choice has no
    /// value or if the queue is empty.
    std::deque<std::optional<std::string>> choices;
    /// The requests passed to open() and those passed to save(), oldest first.
    std::vector<FileDialogRequest> opened;
    std::vector<FileDialogRequest> savings;
    /// If set, every dialog fails with this error.
    std::optional<Error> failure;
    /// Runs while a dialog is open.
    std::function<void()> whileUp;

    Result<std::string> open(const FileDialogRequest& request) override {
        opened.push_back(request);
        return answer();
    }
    Result<std::string> save(const FileDialogRequest& request) override {
        savings.push_back(request);
        return answer();
    }

  private:
    Result<std::string> answer() {
        if (whileUp) {
            whileUp();
        }
        if (failure) {
            return *failure;
        }
        std::optional<std::string> choice;
        if (!choices.empty()) {
            choice = std::move(choices.front());
            choices.pop_front();
        }
        if (!choice) {
            return {ErrorNumber::dialogCancelled, "Cancel was selected."};
        }
        return *choice;
    }
};

} // namespace sonarith::test
