// SPDX-License-Identifier: GPL-3.0-or-later
// Gives the window Form6 a new worker at each load, as it is to have one for each file. What a
// worker does is not known here.
#pragma once

#include <memory>
#include <vector>

#include "conversion/conversion_worker.h"

namespace sonarith {

class WorkerWindow {
  public:
    explicit WorkerWindow(WorkerContext context) : context_(context) {}
    WorkerWindow(const WorkerWindow&) = delete;
    WorkerWindow& operator=(const WorkerWindow&) = delete;

    /// Form6's load and unload steps.
    void load();
    void unload();

    /// The worker of the last load; empty before the first one.
    [[nodiscard]] ConversionWorker* worker() const {
        return workers_.empty() ? nullptr : workers_.back().get();
    }

  private:
    WorkerContext context_;
    /// The last one is the window's. Those before it were unloaded in the middle of a tick.
    std::vector<std::unique_ptr<ConversionWorker>> workers_;
};

} // namespace sonarith
