// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/frame_ring.h"

#include <gmock/gmock.h>

namespace sonarith::disc {
namespace {

using sound::StereoFrame;

std::vector<StereoFrame> numbered(int first, int count) {
    std::vector<StereoFrame> frames;
    for (int i = first; i < first + count; ++i)
        frames.push_back({static_cast<std::int16_t>(i), static_cast<std::int16_t>(-i)});
    return frames;
}

std::vector<StereoFrame> taken(FrameRing& ring, std::size_t wanted) {
    std::vector<StereoFrame> block(wanted);
    block.resize(ring.take(block));
    return block;
}

TEST(FrameRing, GivesFramesBackInTheirOrderAcrossItsSeam) {
    FrameRing ring(5);
    ring.put(numbered(1, 4));
    EXPECT_EQ(taken(ring, 3), numbered(1, 3));
    ring.put(numbered(5, 4));
    EXPECT_EQ(ring.space(), 0u);
    EXPECT_EQ(taken(ring, 9), numbered(4, 5));
    EXPECT_EQ(ring.space(), 5u);
}

TEST(FrameRing, GivesNothingWhenEmptyOrCleared) {
    FrameRing ring(3);
    EXPECT_TRUE(taken(ring, 2).empty());
    ring.put(numbered(1, 2));
    ring.clear();
    EXPECT_TRUE(taken(ring, 2).empty());
    EXPECT_EQ(ring.space(), 3u);
}

TEST(FrameRing, LeavesTheRestOfTheBlockAsItWas) {
    FrameRing ring(3);
    ring.put(numbered(1, 1));
    std::vector<StereoFrame> block = numbered(7, 2);
    EXPECT_EQ(ring.take(block), 1u);
    EXPECT_EQ(block, (std::vector<StereoFrame>{{1, -1}, {8, -8}}));
}

} // namespace
} // namespace sonarith::disc
