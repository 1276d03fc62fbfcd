// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/damage_record.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

TEST(DamageRecord, CountsEachDamagedSectorOnce) {
    DamageRecord damage;
    EXPECT_EQ(damage.sectors(), 0);
    damage.note(7, Delivery::silence);
    damage.note(449999, Delivery::guess);
    damage.note(0, Delivery::guess);
    damage.note(7, Delivery::guess);
    EXPECT_EQ(damage.sectors(), 3);
}

TEST(DamageRecord, TheLastDeliveryOfASectorDecidesWhetherItCountsAsSilentOrGuessed) {
    DamageRecord damage;
    EXPECT_EQ(damage.among(0, 1000), Damage{});
    damage.note(3, Delivery::silence);
    damage.note(10, Delivery::silence);
    damage.note(11, Delivery::guess);
    damage.note(12, Delivery::silence);
    EXPECT_EQ(damage.among(0, 1000), (Damage{.silent = 3, .guessed = 1}));
    EXPECT_EQ(damage.among(10, 12), (Damage{.silent = 1, .guessed = 1}));
    EXPECT_EQ(damage.among(4, 10), Damage{});
    EXPECT_EQ(damage.among(12, 4), Damage{});
    damage.note(12, Delivery::guess);
    damage.note(10, Delivery::whole);
    damage.note(500000, Delivery::whole);
    EXPECT_EQ(damage.among(4, 600000), (Damage{.silent = 0, .guessed = 2}));
    EXPECT_EQ(damage.sectors(), 4)
        << "a damaged sector must still be counted after it was delivered whole";
}

} // namespace
} // namespace sonarith::disc
