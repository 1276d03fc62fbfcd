// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/damage_record.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

TEST(DamageRecord, CountsEachSectorOnce) {
    DamageRecord damage;
    EXPECT_EQ(damage.sectors(), 0);
    damage.note(7);
    damage.note(449999);
    damage.note(0);
    damage.note(7);
    EXPECT_EQ(damage.sectors(), 3);
}

} // namespace
} // namespace sonarith::disc
