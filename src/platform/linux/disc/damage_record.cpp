// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/damage_record.h"

namespace sonarith::disc {

void DamageRecord::note(std::int64_t sector) {
    const std::lock_guard lock(mutex_);
    const auto place = static_cast<std::size_t>(sector);
    if (place >= damaged_.size()) {
        damaged_.resize(place + 1);
    }
    if (!damaged_[place]) {
        damaged_[place] = true;
        ++count_;
    }
}

std::int64_t DamageRecord::sectors() const {
    const std::lock_guard lock(mutex_);
    return count_;
}

} // namespace sonarith::disc
