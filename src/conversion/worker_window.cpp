// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/worker_window.h"

namespace sonarith {

void WorkerWindow::load() {
    std::erase_if(workers_, [](const auto& former) { return !former->running(); });
    workers_.push_back(std::make_unique<ConversionWorker>(context_));
    worker()->Form_Load();
}

void WorkerWindow::unload() {
    if (ConversionWorker* const leaving = worker()) {
        leaving->Form_Unload();
    }
}

} // namespace sonarith
