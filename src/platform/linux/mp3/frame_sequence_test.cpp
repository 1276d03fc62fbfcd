// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_sequence.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::operator+;

TEST(FrameSequenceTest, NumbersTheFramesAndLeavesTheInformationFrameOut) {
    const auto frames = fixture::framesOf(fixture::ordinary());
    ASSERT_EQ(frames.size(), 155U);
    EXPECT_EQ(frames.front().number, 0);
    EXPECT_EQ(frames.front().offset, 417) << "the information frame is the first in the file";
    EXPECT_EQ(frames.back().number, 154);
}

TEST(FrameSequenceTest, StartsAtTheFirstFrameIfThereIsNoInformationFrame) {
    const auto frames = fixture::framesOf(fixture::encoded(44100, 2, "-t -b 128"));
    EXPECT_EQ(frames.front().number, 0);
    EXPECT_EQ(frames.front().offset, 0);
}

TEST(FrameSequenceTest, KeepsLaterInformationFramesAsTheyAreSoundToADecoder) {
    EXPECT_EQ(fixture::framesOf(fixture::ordinary() + fixture::ordinary()).size(), 311U);
}

TEST(FrameSequenceTest, HasNoFormatWithoutAnyFrame) {
    const Data data = fixture::junk(5000);
    const MemorySource source(data);
    FrameSequence frames(source);
    EXPECT_FALSE(frames.format());
    EXPECT_FALSE(frames.next());
}

TEST(FrameSequenceTest, GoesOnWithTheNumberThatItIsGiven) {
    const auto frames = fixture::framesOf(fixture::ordinary());
    const MemorySource source(fixture::ordinary());
    FrameSequence rest(source, frames[40].header.format, 40, frames[40].offset);
    EXPECT_EQ(rest.number(), 40);
    const auto next = rest.next();
    ASSERT_TRUE(next);
    EXPECT_EQ(next->number, 40);
    EXPECT_EQ(next->offset, frames[40].offset);
    EXPECT_EQ(rest.number(), 41);
}

} // namespace
} // namespace sonarith::mp3
