// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/card_wave_input.h"

#include <array>

#include "platform/linux/sound/card_wave_input_fixture.h"
#include "support/fake_sound.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::ConstantSource;
using fakes::eventually;
using fakes::IsSound;
using fakes::MemorySink;
using fakes::pattern;
using fakes::PatternSource;
using fakes::pcmFormat;
using fakes::silence;

TEST_F(CardWaveInputTest, FillsBuffersInTheirOrderWithTheRecordersSound) {
    open(cardFormat);
    Buffer first(4 * 1000);
    Buffer second(4 * 500);
    add(first);
    add(second);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), now);
    advance(20ms);
    EXPECT_FALSE(first.isDone());
    EXPECT_TRUE(first.isQueued());
    advance(10ms);
    EXPECT_TRUE(first.isDone());
    EXPECT_FALSE(first.isQueued());
    EXPECT_FALSE(second.isDone());
    advance(10ms);
    EXPECT_TRUE(second.isDone());
    EXPECT_THAT(first.frames(), IsSound(pattern(0, 1000)));
    EXPECT_THAT(second.frames(), IsSound(pattern(1000, 500)));
    // 264 frames were dropped while there was no buffer; the next buffer begins with the current
    // frames.
    EXPECT_EQ(input.addBuffer(handle, first.header), WaveResult::noError);
    EXPECT_FALSE(first.isDone());
    advance(30ms);
    EXPECT_THAT(first.frames(), IsSound(pattern(4 * 441, 1000)));
}

TEST_F(CardWaveInputTest, FillsBuffersWithSilenceAtTheFormatsRateIfThereIsNoSound) {
    open(meterFormat);
    std::array<Buffer, 2> buffers{Buffer(800), Buffer(800)};
    for (Buffer& buffer : buffers) {
        add(buffer);
    }
    EXPECT_FALSE(card.active());
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    EXPECT_TRUE(card.active());
    int filled = 0;
    for (int tick = 0; tick < 1000; ++tick) { // ten seconds
        advance(10ms);
        for (Buffer& buffer : buffers) {
            if (buffer.isDone()) {
                ++filled;
                EXPECT_EQ(buffer.header.dwBytesRecorded, 800U);
                EXPECT_EQ(buffer.data[799], std::byte{128}) << "the buffer must contain silence";
                ASSERT_EQ(input.addBuffer(handle, buffer.header), WaveResult::noError);
            }
        }
    }
    EXPECT_GE(filled, 99);
    EXPECT_LE(filled, 100);
    EXPECT_EQ(input.stop(handle), WaveResult::noError);
    EXPECT_FALSE(card.active()) << "the card must be idle again";
}

TEST_F(CardWaveInputTest, ReceivesTheRecordedSoundWithoutAffectingTheRecording) {
    const auto tape = std::make_shared<MemorySink>();
    open(cardFormat);
    Buffer buffer(4 * 4410);
    add(buffer);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    advance(50ms);
    card.startRecording(tape, now);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), now);
    advance(500ms);
    EXPECT_EQ(input.reset(handle), WaveResult::noError);
    advance(500ms);
    card.stopRecording(now);
    EXPECT_THAT(tape->frames(), IsSound(pattern(0, frameRate)));
    Frames expected = silence(2205);
    const Frames sound = pattern(0, 2205);
    expected.insert(expected.end(), sound.begin(), sound.end());
    EXPECT_THAT(buffer.frames(), IsSound(expected));
}

TEST_F(CardWaveInputTest, StopMarksAPartlyFilledBufferDoneAndKeepsEmptyBuffersQueued) {
    open(cardFormat);
    Buffer first(4 * 1000);
    Buffer second(4 * 1000);
    add(first);
    add(second);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), now);
    advance(10ms);
    EXPECT_EQ(input.stop(handle), WaveResult::noError);
    EXPECT_TRUE(first.isDone());
    EXPECT_THAT(first.frames(), IsSound(pattern(0, 441)));
    EXPECT_TRUE(second.isQueued());
    EXPECT_EQ(input.stop(handle), WaveResult::noError);
    EXPECT_TRUE(second.isQueued());
    advance(100ms);
    EXPECT_EQ(second.header.dwBytesRecorded, 0U);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    advance(30ms);
    EXPECT_THAT(second.frames(), IsSound(pattern(11 * 441, 1000)));
}

TEST_F(CardWaveInputTest, ResetMarksAllBuffersDone) {
    open(cardFormat);
    Buffer first(4000);
    Buffer second(4000);
    add(first);
    add(second);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    advance(10ms);
    for (int twice = 0; twice < 2; ++twice) {
        EXPECT_EQ(input.reset(handle), WaveResult::noError);
        EXPECT_TRUE(first.isDone());
        EXPECT_TRUE(second.isDone());
        EXPECT_EQ(first.header.dwBytesRecorded, 4U * 441);
        EXPECT_EQ(second.header.dwBytesRecorded, 0U);
    }
    EXPECT_FALSE(card.active());
}

TEST_F(CardWaveInputTest, OpensOnlyDeviceZeroAndOnlyOneHandleAtATime) {
    WaveInHandle other = 5;
    EXPECT_EQ(input.open(other, 1, cardFormat), WaveResult::badDevice);
    EXPECT_EQ(input.open(other, 0, pcmFormat(5, 44100, 16)), WaveResult::badFormat);
    EXPECT_EQ(other, 5U);
    open(cardFormat);
    EXPECT_NE(handle, 0U);
    EXPECT_EQ(input.open(other, 0, cardFormat), WaveResult::allocated);
    EXPECT_EQ(other, 5U);
    const WaveInHandle before = handle;
    EXPECT_EQ(input.close(handle), WaveResult::noError);
    EXPECT_EQ(input.close(handle), WaveResult::invalidHandle);
    open(cardFormat);
    EXPECT_NE(handle, before);
    EXPECT_EQ(input.start(before), WaveResult::invalidHandle)
        << "a closed handle must not be accepted";
    EXPECT_FALSE(card.active());
}

TEST_F(CardWaveInputTest, RejectsUnusableBuffersAndWritesOnlyWholeFrames) {
    open(cardFormat);
    Buffer tiny(3);
    EXPECT_EQ(input.prepareHeader(handle, tiny.header), WaveResult::invalidParameter);
    Buffer missing(100);
    missing.header.lpData = nullptr;
    EXPECT_EQ(input.prepareHeader(handle, missing.header), WaveResult::invalidParameter);
    Buffer odd(4 * 441 + 3);
    add(odd);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    advance(10ms);
    EXPECT_TRUE(odd.isDone());
    EXPECT_EQ(odd.header.dwBytesRecorded, 4U * 441);
    EXPECT_EQ(odd.data.back(), std::byte{0x55}) << "an incomplete frame must not be written";
}

TEST_F(CardWaveInputTest, HasADistinctTextForEachError) {
    EXPECT_EQ(input.errorText(WaveResult::noError), "");
    std::vector<std::string> texts;
    for (const int number : {2, 3, 4, 5, 11, 32, 33, 34, 99}) {
        texts.push_back(input.errorText(static_cast<WaveResult>(number)));
        EXPECT_FALSE(texts.back().empty());
    }
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(std::adjacent_find(texts.begin(), texts.end()), texts.end());
}

TEST_F(CardWaveInputTest, WritesToNoBufferAfterTheInputIsDestroyed) {
    Buffer buffer(4 * 4410);
    {
        CardWaveInput ending(card, [this] { return now; });
        WaveInHandle own = 0;
        ASSERT_EQ(ending.open(own, 0, cardFormat), WaveResult::noError);
        ASSERT_EQ(ending.prepareHeader(own, buffer.header), WaveResult::noError);
        ASSERT_EQ(ending.addBuffer(own, buffer.header), WaveResult::noError);
        ASSERT_EQ(ending.start(own), WaveResult::noError);
        advance(10ms);
    }
    EXPECT_FALSE(card.active());
    const std::uint32_t recorded = buffer.header.dwBytesRecorded;
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), now);
    advance(10ms);
    EXPECT_EQ(buffer.header.dwBytesRecorded, recorded);
}

} // namespace
} // namespace sonarith::sound
