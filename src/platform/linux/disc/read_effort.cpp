// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/read_effort.h"

#include <algorithm>

namespace sonarith::disc {

ReadEffort::Plan ReadEffort::plan(Duration trouble) const {
    if (trouble < budget_) {
        return {Effort::repair, budget_ - trouble};
    }
    if (trouble < 2 * budget_) {
        return {Effort::once, 2 * budget_ - trouble};
    }
    return {};
}

void ReadEffort::finish(Duration trouble) {
    budget_ = trouble <= budget_ ? wholeBudget : std::max(budget_ / 2, leastBudget);
}

} // namespace sonarith::disc
