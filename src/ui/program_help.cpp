// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/program_help.h"

#include <utility>

#include "ui/help_pages.h"

namespace sonarith {
namespace {

constexpr const char* mainWindow = "Form1";

} // namespace

ProgramHelp::ProgramHelp(std::function<QString()> folder)
    : folder_(std::move(folder)), asker_(mainWindow) {}

void ProgramHelp::askFrom(const std::string& window, const std::function<void()>& press) {
    asker_ = window;
    press();
    asker_ = mainWindow;
}

bool ProgramHelp::show() {
    if (!window_) {
        window_ = std::make_unique<HelpWindow>(folder_());
    }
    return window_->showPage(helpPageOf(asker_));
}

} // namespace sonarith
