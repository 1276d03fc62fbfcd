// SPDX-License-Identifier: GPL-3.0-or-later
// A file dialog for tests: the user's choices are put in line beforehand.
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
    /// Oldest first; nothing: cancelled, as is a dialog that finds none.
    std::deque<std::optional<std::string>> choices;
    /// What each dialog was shown with, oldest first: those for opening, and those for saving.
    std::vector<FileDialogRequest> opened;
    std::vector<FileDialogRequest> savings;
    /// In place of a choice: every dialog fails with it.
    std::optional<Error> failure;
    /// Runs while a dialog is up.
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
