// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_sequence.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::operator+;

TEST(FrameSequenceTest, NumbersTheFramesAndOmitsTheInformationFrame) {
    const auto frames = fixture::framesOf(fixture::ordinary());
    ASSERT_EQ(frames.size(), 155U);
    EXPECT_EQ(frames.front().number, 0);
    EXPECT_EQ(frames.front().offset, 417) << "the sequence must begin after the file's first "
                                             "frame, which is the information frame";
    EXPECT_EQ(frames.back().number, 154);
}

TEST(FrameSequenceTest, StartsAtTheFirstFrameIfThereIsNoInformationFrame) {
    const auto frames = fixture::framesOf(fixture::encoded(44100, 2, "-t -b 128"));
    EXPECT_EQ(frames.front().number, 0);
    EXPECT_EQ(frames.front().offset, 0);
}

TEST(FrameSequenceTest, KeepsLaterInformationFramesSinceDecodersTreatThemAsSound) {
    EXPECT_EQ(fixture::framesOf(fixture::ordinary() + fixture::ordinary()).size(), 311U);
}

TEST(FrameSequenceTest, OmitsAnInformationFrameAfterFramesOfAnotherFormat) {
    const Data& other = fixture::encoded(48000, 2, "-b 128");
    const Data data = fixture::part(other, 0, 4 * 384) + fixture::ordinary();
    const MemorySource source(data);
    FrameSequence frames(source, StreamFormat{});
    EXPECT_EQ(frames.trim(), FrameSequence(MemorySource(fixture::ordinary()), {}).trim());
    const auto first = frames.next();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->number, 0);
    EXPECT_EQ(first->offset, 4 * 384 + 417);
    EXPECT_EQ(frames.scanner().loss().framesDropped, 4);
}

TEST(FrameSequenceTest, IsEmptyWithoutAFrameOfTheRequestedFormat) {
    const MemorySource source(fixture::ordinary());
    StreamFormat mono;
    mono.channels = 1;
    EXPECT_FALSE(FrameSequence(source, mono).next());
}

TEST(FrameSequenceTest, CountsFromTheGivenNumberWhenCreatedForALaterFrame) {
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
