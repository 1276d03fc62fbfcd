// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/card_wave_input.h"

#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <optional>
#include <random>

#include "platform/linux/sound/capture_fixture.h"
#include "platform/linux/sound/external_input.h"
#include "support/fake_sound.h"
#include "support/sound_matchers.h"
#include "support/waiting.h"
#include "support/wave_formats.h"

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
using testing::HasSubstr;

using Frames = std::vector<StereoFrame>;

/// A buffer and its header.
struct Buffer {
    explicit Buffer(std::size_t size) : data(size, std::byte{0x55}) {
        header.lpData = data.data();
        header.dwBufferLength = static_cast<std::uint32_t>(size);
    }
    [[nodiscard]] bool isDone() const { return (header.dwFlags & wave_header::done) != 0; }
    [[nodiscard]] bool isQueued() const { return (header.dwFlags & wave_header::inQueue) != 0; }
    /// The content as frames of the card's own format.
    [[nodiscard]] Frames frames() const {
        Frames result(header.dwBytesRecorded / sizeof(StereoFrame));
        std::memcpy(result.data(), data.data(), result.size() * sizeof(StereoFrame));
        return result;
    }

    std::vector<std::byte> data;
    WaveHeader header;
};

class CardWaveInputTest : public testing::Test {
  protected:
    void open(const WaveFormat& format) {
        ASSERT_EQ(input.open(handle, 0, format), WaveResult::noError);
    }
    void add(Buffer& buffer) {
        ASSERT_EQ(input.prepareHeader(handle, buffer.header), WaveResult::noError);
        ASSERT_EQ(input.addBuffer(handle, buffer.header), WaveResult::noError);
    }
    void pass(SoundCard::Time time) {
        now += time;
        card.advance(now);
    }

    SoundCard card;
    SoundCard::Time now{};
    CardWaveInput input{card, [this] {
                            return now;
                        }};
    WaveInHandle handle = 0;
    const WaveFormat cardFormat = pcmFormat(2, 44100, 16);
    const WaveFormat meterFormat = pcmFormat(1, 8000, 8);
};

TEST_F(CardWaveInputTest, FillsBuffersInTheirOrderWithTheRecordersSound) {
    open(cardFormat);
    Buffer first(4 * 1000);
    Buffer second(4 * 500);
    add(first);
    add(second);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), now);
    pass(20ms);
    EXPECT_FALSE(first.isDone());
    EXPECT_TRUE(first.isQueued());
    pass(10ms);
    EXPECT_TRUE(first.isDone());
    EXPECT_FALSE(first.isQueued());
    EXPECT_FALSE(second.isDone());
    pass(10ms);
    EXPECT_TRUE(second.isDone());
    EXPECT_THAT(first.frames(), IsSound(pattern(0, 1000)));
    EXPECT_THAT(second.frames(), IsSound(pattern(1000, 500)));
    // 264 frames were dropped while there was no buffer; the next buffer begins with the current
    // frames.
    EXPECT_EQ(input.addBuffer(handle, first.header), WaveResult::noError);
    EXPECT_FALSE(first.isDone());
    pass(30ms);
    EXPECT_THAT(first.frames(), IsSound(pattern(4 * 441, 1000)));
}

TEST_F(CardWaveInputTest, RunsAtTheFormatsRateWithAndWithoutSound) {
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
        pass(10ms);
        for (Buffer& buffer : buffers) {
            if (buffer.isDone()) {
                ++filled;
                EXPECT_EQ(buffer.header.dwBytesRecorded, 800U);
                EXPECT_EQ(buffer.data[799], std::byte{128}) << "silence";
                ASSERT_EQ(input.addBuffer(handle, buffer.header), WaveResult::noError);
            }
        }
    }
    EXPECT_GE(filled, 99);
    EXPECT_LE(filled, 100);
    EXPECT_EQ(input.stop(handle), WaveResult::noError);
    EXPECT_FALSE(card.active()) << "the card is idle again";
}

TEST_F(CardWaveInputTest, ReceivesTheRecordingsSoundWithoutAffectingIt) {
    const auto tape = std::make_shared<MemorySink>();
    open(cardFormat);
    Buffer buffer(4 * 4410);
    add(buffer);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    pass(50ms);
    card.startRecording(tape, now);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), now);
    pass(500ms);
    EXPECT_EQ(input.reset(handle), WaveResult::noError);
    pass(500ms);
    card.stopRecording(now);
    EXPECT_THAT(tape->frames(), IsSound(pattern(0, frameRate)));
    Frames expected = silence(2205);
    const Frames sound = pattern(0, 2205);
    expected.insert(expected.end(), sound.begin(), sound.end());
    EXPECT_THAT(buffer.frames(), IsSound(expected));
}

TEST_F(CardWaveInputTest, StopMarksAFilledPartAndKeepsEmptyBuffers) {
    open(cardFormat);
    Buffer first(4 * 1000);
    Buffer second(4 * 1000);
    add(first);
    add(second);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), now);
    pass(10ms);
    EXPECT_EQ(input.stop(handle), WaveResult::noError);
    EXPECT_TRUE(first.isDone());
    EXPECT_THAT(first.frames(), IsSound(pattern(0, 441)));
    EXPECT_TRUE(second.isQueued());
    EXPECT_EQ(input.stop(handle), WaveResult::noError);
    EXPECT_TRUE(second.isQueued());
    pass(100ms);
    EXPECT_EQ(second.header.dwBytesRecorded, 0U);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    pass(30ms);
    EXPECT_THAT(second.frames(), IsSound(pattern(11 * 441, 1000)));
}

TEST_F(CardWaveInputTest, ResetMarksAllBuffersDone) {
    open(cardFormat);
    Buffer first(4000);
    Buffer second(4000);
    add(first);
    add(second);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    pass(10ms);
    for (int twice = 0; twice < 2; ++twice) {
        EXPECT_EQ(input.reset(handle), WaveResult::noError);
        EXPECT_TRUE(first.isDone());
        EXPECT_TRUE(second.isDone());
        EXPECT_EQ(first.header.dwBytesRecorded, 4U * 441);
        EXPECT_EQ(second.header.dwBytesRecorded, 0U);
    }
    EXPECT_FALSE(card.active());
}

TEST_F(CardWaveInputTest, OpensOneDeviceOnce) {
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
    EXPECT_EQ(input.start(before), WaveResult::invalidHandle) << "a closed handle";
    EXPECT_FALSE(card.active());
}

TEST_F(CardWaveInputTest, RejectsABufferSmallerThanAFrame) {
    open(cardFormat);
    Buffer tiny(3);
    EXPECT_EQ(input.prepareHeader(handle, tiny.header), WaveResult::invalidParameter);
    Buffer missing(100);
    missing.header.lpData = nullptr;
    EXPECT_EQ(input.prepareHeader(handle, missing.header), WaveResult::invalidParameter);
    Buffer odd(4 * 441 + 3);
    add(odd);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    pass(10ms);
    EXPECT_TRUE(odd.isDone());
    EXPECT_EQ(odd.header.dwBytesRecorded, 4U * 441);
    EXPECT_EQ(odd.data.back(), std::byte{0x55}) << "no part of a frame is written";
}

TEST_F(CardWaveInputTest, HasATextForEachError) {
    EXPECT_EQ(input.errorText(WaveResult::noError), "");
    std::vector<std::string> texts;
    for (const int number : {2, 3, 4, 5, 11, 32, 33, 34, 99}) {
        texts.push_back(input.errorText(static_cast<WaveResult>(number)));
        EXPECT_FALSE(texts.back().empty());
    }
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(std::adjacent_find(texts.begin(), texts.end()), texts.end());
}

TEST_F(CardWaveInputTest, WritesToNoBufferAfterItsDestruction) {
    Buffer buffer(4 * 4410);
    {
        CardWaveInput ending(card, [this] { return now; });
        WaveInHandle own = 0;
        ASSERT_EQ(ending.open(own, 0, cardFormat), WaveResult::noError);
        ASSERT_EQ(ending.prepareHeader(own, buffer.header), WaveResult::noError);
        ASSERT_EQ(ending.addBuffer(own, buffer.header), WaveResult::noError);
        ASSERT_EQ(ending.start(own), WaveResult::noError);
        pass(10ms);
    }
    EXPECT_FALSE(card.active());
    const std::uint32_t recorded = buffer.header.dwBytesRecorded;
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), now);
    pass(10ms);
    EXPECT_EQ(buffer.header.dwBytesRecorded, recorded);
}

// --- operations in any order ------------------------------------------------------------------

/// Performs operations in any order on one device with one buffer of one block, and compares the
/// results with a model.
class AnyOrder {
  public:
    static constexpr int operations = 9;

    AnyOrder() { card_.attach(Line::compactDisc, std::make_shared<PatternSource>(), now_); }
    ~AnyOrder() { input_.reset(handle_); }
    AnyOrder(const AnyOrder&) = delete;
    AnyOrder& operator=(const AnyOrder&) = delete;

    void perform(int operation) {
        WaveHeader& header = buffer_.header;
        switch (operation) {
        case 0:
            expect(input_.open(handle_, 0, pcmFormat(2, 44100, 16)),
                   open_ ? WaveResult::allocated : WaveResult::noError);
            open_ = true;
            return;
        case 1:
            expect(input_.prepareHeader(handle_, header), whenOpen(WaveResult::noError));
            prepared_ = prepared_ || open_;
            return;
        case 2:
            expect(input_.unprepareHeader(handle_, header),
                   whenOpen(queued_ ? WaveResult::stillPlaying : WaveResult::noError));
            prepared_ = prepared_ && (!open_ || queued_);
            return;
        case 3:
            expect(input_.addBuffer(handle_, header), whenOpen(!prepared_ ? WaveResult::unprepared
                                                               : queued_  ? WaveResult::stillPlaying
                                                                          : WaveResult::noError));
            queued_ = queued_ || (open_ && prepared_);
            return;
        case 4:
            expect(input_.start(handle_), whenOpen(WaveResult::noError));
            running_ = running_ || open_;
            return;
        case 5:
            expect(input_.stop(handle_), whenOpen(WaveResult::noError));
            running_ = false;
            return;
        case 6:
            expect(input_.reset(handle_), whenOpen(WaveResult::noError));
            running_ = false;
            queued_ = false;
            return;
        case 7:
            expect(input_.close(handle_),
                   whenOpen(queued_ ? WaveResult::stillPlaying : WaveResult::noError));
            open_ = open_ && queued_;
            running_ = running_ && open_;
            return;
        default:
            now_ += 10ms;
            card_.advance(now_); // one block
            queued_ = queued_ && !running_;
        }
    }
    /// Compares the header with the model.
    void check() const {
        ASSERT_EQ(buffer_.isQueued(), queued_);
        ASSERT_FALSE(queued_ && buffer_.isDone());
        ASSERT_EQ((buffer_.header.dwFlags & wave_header::prepared) != 0, prepared_);
    }

  private:
    [[nodiscard]] WaveResult whenOpen(WaveResult result) const {
        return open_ ? result : WaveResult::invalidHandle;
    }
    static void expect(WaveResult got, WaveResult wanted) { ASSERT_EQ(got, wanted); }

    SoundCard card_;
    SoundCard::Time now_{};
    CardWaveInput input_{card_, [this] {
                             return now_;
                         }};
    WaveInHandle handle_ = 0;
    Buffer buffer_{4 * blockFrames};
    bool open_ = false;
    bool prepared_ = false;
    bool queued_ = false;
    bool running_ = false;
};

TEST(CardWaveInput, ReturnsTheModelsResultsInEveryOrderOfThreeOperationsInEachState) {
    const std::vector<std::vector<int>> beginnings{{},        {0},          {0, 1},
                                                   {0, 1, 3}, {0, 1, 3, 4}, {0, 1, 3, 4, 8}};
    for (const std::vector<int>& beginning : beginnings) {
        for (int order = 0; order < 9 * 9 * 9; ++order) {
            AnyOrder device;
            for (const int operation : beginning) {
                device.perform(operation);
            }
            for (int rest = order, step = 0; step < 3; ++step, rest /= AnyOrder::operations) {
                device.perform(rest % AnyOrder::operations);
                device.check();
            }
            ASSERT_FALSE(testing::Test::HasFailure())
                << "order " << order << " after " << beginning.size() << " operations";
        }
    }
}

TEST(CardWaveInput, ReturnsTheModelsResultsInLongRandomOrders) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        std::mt19937 random(seed);
        AnyOrder device;
        for (int step = 0; step < 1000; ++step) {
            device.perform(std::uniform_int_distribution(0, AnyOrder::operations - 1)(random));
            device.check();
            ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", step " << step;
        }
    }
}

// --- an external input -------------------------------------------------------------------------

class CardWaveInputExternal : public CardWaveInputTest {
  protected:
    CardWaveInputExternal() { choose(); }
    void choose() {
        card.setRecordingSource(
            RecordingSource::externalInput,
            std::make_shared<ExternalInput>("hw:CARD=Webcam", openerOf(device), nullptr,
                                            CaptureTiming{.retryAfter = 1ms, .patience = 30s}));
    }
    bool becomesOpen() {
        return eventually([&] { return device->opened == device->closed + 1; });
    }

    std::shared_ptr<CaptureDevice> device = std::make_shared<CaptureDevice>();
};

TEST_F(CardWaveInputExternal, IsOpenedByOpenAndStartAndClosedByStopResetAndClose) {
    EXPECT_EQ(device->opened, 0) << "there is no listener";
    open(cardFormat);
    EXPECT_TRUE(becomesOpen());
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    EXPECT_EQ(device->opened, 1) << "the device is opened only once";
    EXPECT_EQ(input.stop(handle), WaveResult::noError);
    EXPECT_EQ(device->closed, 1);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    EXPECT_TRUE(becomesOpen());
    EXPECT_EQ(input.reset(handle), WaveResult::noError);
    EXPECT_EQ(device->closed, 2);
    EXPECT_EQ(input.close(handle), WaveResult::noError);
    open(cardFormat);
    EXPECT_TRUE(becomesOpen());
    EXPECT_EQ(input.close(handle), WaveResult::noError) << "never started";
    EXPECT_EQ(device->closed, 3);
    EXPECT_FALSE(card.active());
}

TEST_F(CardWaveInputExternal, DeliversItsSoundToBuffersPeaksAndRecording) {
    const auto tape = std::make_shared<MemorySink>();
    device->provide(20 * 441);
    open(cardFormat);
    ASSERT_TRUE(eventually([&] { return device->isDrained(); }));
    Buffer buffer(4 * 882);
    add(buffer);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    card.startRecording(tape, now);
    pass(20ms);
    EXPECT_THAT(buffer.frames(), IsSound(pattern(0, 882)));
    EXPECT_EQ(card.recorderPeak(now), 882);
    EXPECT_EQ(card.linePeak(Line::externalInput, now), 882);
    EXPECT_EQ(input.reset(handle), WaveResult::noError);
    EXPECT_EQ(device->closed, 0) << "the recording still uses the device";
    pass(20ms);
    card.stopRecording(now);
    EXPECT_EQ(device->closed, 1);
    EXPECT_THAT(tape->frames(), IsSound(pattern(0, 4 * 441)));
}

TEST_F(CardWaveInputExternal, ReportsTheNameOfADeviceThatCannotBeOpened) {
    device->missing = true;
    WaveInHandle other = 5;
    // On a busy machine the device's failure may be late; then open() succeeds.
    ASSERT_TRUE(eventually([&] {
        const WaveResult result = input.open(other, 0, cardFormat);
        if (result == WaveResult::noError) {
            input.close(other);
            other = 5;
        }
        return result == WaveResult::notEnabled;
    }));
    EXPECT_EQ(other, 5U);
    EXPECT_THAT(input.errorText(WaveResult::notEnabled), HasSubstr("\"hw:CARD=Webcam\""));
    EXPECT_FALSE(card.active());
    device->missing = false;
    open(cardFormat);
}

TEST_F(CardWaveInputExternal, DoesNotWaitForADeviceWhoseOpeningHangs) {
    device->openHangs = true;
    card.setRecordingSource(RecordingSource::externalInput,
                            std::make_shared<ExternalInput>("hung", openerOf(device), nullptr,
                                                            CaptureTiming{.patience = 1ms}));
    open(cardFormat);
    Buffer buffer(4 * 441);
    add(buffer);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    pass(10ms);
    EXPECT_THAT(buffer.frames(), IsSound(silence(441)))
        << "the buffer is filled at the format's rate";
    EXPECT_EQ(input.reset(handle), WaveResult::noError);
    EXPECT_EQ(input.close(handle), WaveResult::noError);
    device->release();
    EXPECT_TRUE(eventually([&] { return device->opened == device->closed; }));
}

TEST_F(CardWaveInputExternal, ClosesWhenAnotherSourceIsChosenAndOpensWhenItIsChosenAgain) {
    open(cardFormat);
    EXPECT_EQ(input.start(handle), WaveResult::noError);
    EXPECT_TRUE(becomesOpen());
    card.setRecordingSource(RecordingSource::compactDisc);
    EXPECT_EQ(device->closed, 1);
    EXPECT_EQ(card.externalInput(), nullptr);
    choose();
    EXPECT_TRUE(becomesOpen());
    const std::shared_ptr<CaptureDevice> former = device;
    device = std::make_shared<CaptureDevice>();
    choose(); // another device
    EXPECT_EQ(former->closed, 2);
    EXPECT_TRUE(becomesOpen());
}

// --- concurrently with the card's thread ------------------------------------------------------

TEST(CardWaveInput, FillsBuffersConcurrentlyWithTheCardsThread) {
    SoundCard card;
    const SoundCardThread thread(card);
    card.attach(Line::compactDisc, std::make_shared<PatternSource>(), monotonicNow());
    CardWaveInput input(card);
    for (int round = 0; round < 20; ++round) {
        WaveInHandle handle = 0;
        ASSERT_EQ(input.open(handle, 0, pcmFormat(2, 44100, 16)), WaveResult::noError);
        std::array<Buffer, 2> buffers{Buffer(4 * 300), Buffer(4 * 300)};
        for (Buffer& buffer : buffers) {
            ASSERT_EQ(input.prepareHeader(handle, buffer.header), WaveResult::noError);
            ASSERT_EQ(input.addBuffer(handle, buffer.header), WaveResult::noError);
        }
        ASSERT_EQ(input.start(handle), WaveResult::noError);
        for (int tick = 0; tick < 3; ++tick) {
            Buffer& buffer = buffers.at(static_cast<std::size_t>(tick) % 2);
            ASSERT_TRUE(eventually([&] { return buffer.isDone(); }));
            const Frames frames = buffer.frames();
            ASSERT_EQ(frames.size(), 300U);
            for (std::size_t i = 1; i < frames.size(); ++i) {
                ASSERT_EQ(frames[i].left, frames[i - 1].left % 32749 + 1);
            }
            ASSERT_EQ(input.addBuffer(handle, buffer.header), WaveResult::noError);
        }
        ASSERT_EQ(input.reset(handle), WaveResult::noError);
        ASSERT_EQ(input.close(handle), WaveResult::noError);
    }
}

} // namespace
} // namespace sonarith::sound
