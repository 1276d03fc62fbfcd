// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/damage_record.h"

#include <algorithm>

namespace sonarith::disc {

void DamageRecord::note(std::int64_t sector, Delivery delivery) {
    const std::lock_guard lock(mutex_);
    const auto place = static_cast<std::size_t>(sector);
    const bool damaged = delivery != Delivery::whole;
    if (place >= damaged_.size()) {
        if (!damaged) {
            return;
        }
        for (auto* bits : {&damaged_, &guessed_, &silent_}) {
            bits->resize(place + 1);
        }
    }
    guessed_[place] = delivery == Delivery::guess;
    silent_[place] = delivery == Delivery::silence;
    if (damaged && !damaged_[place]) {
        damaged_[place] = true;
        ++count_;
    }
}

std::int64_t DamageRecord::sectors() const {
    const std::lock_guard lock(mutex_);
    return count_;
}

Damage DamageRecord::among(std::int64_t first, std::int64_t end) const {
    const std::lock_guard lock(mutex_);
    const auto size = static_cast<std::int64_t>(damaged_.size());
    const auto count = [&](const std::vector<bool>& bits) {
        const auto from = std::clamp<std::int64_t>(first, 0, size);
        const auto to = std::clamp<std::int64_t>(end, from, size);
        return static_cast<std::int64_t>(std::count(bits.begin() + from, bits.begin() + to, true));
    };
    return {count(silent_), count(guessed_)};
}

} // namespace sonarith::disc
