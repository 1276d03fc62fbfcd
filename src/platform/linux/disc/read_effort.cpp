// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/read_effort.h"

#include <algorithm>

namespace sonarith::disc {

ReadEffort::Plan ReadEffort::plan(Duration repairTime) const {
    if (repairTime < budget_) {
        return {Effort::repair, budget_ - repairTime};
    }
    if (repairTime < 2 * budget_) {
        return {Effort::once, 2 * budget_ - repairTime};
    }
    return {};
}

void ReadEffort::finish(Duration repairTime) {
    budget_ = repairTime <= budget_ ? wholeBudget : std::max(budget_ / 2, leastBudget);
}

} // namespace sonarith::disc
