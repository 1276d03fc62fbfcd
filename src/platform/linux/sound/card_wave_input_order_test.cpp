// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that a wave input's operations match a model in any order, and that they can be called
// while the card's thread runs.
#include <array>
#include <random>

#include "platform/linux/sound/card_wave_input_fixture.h"
#include "support/fake_sound.h"
#include "support/waiting.h"

namespace sonarith::sound {
namespace {

using namespace std::chrono_literals;
using fakes::eventually;
using fakes::PatternSource;
using fakes::pcmFormat;

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

TEST(CardWaveInput, MatchesTheModelForEverySequenceOfThreeOperationsFromSixStates) {
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
                << "after the entry of `beginnings` with " << beginning.size()
                << " operations; the base-9 digits of " << order
                << ", the lowest first, are the three operations that followed";
        }
    }
}

TEST(CardWaveInput, MatchesTheModelForLongRandomSequences) {
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

TEST(CardWaveInput, FillsBuffersWhileTheCardsThreadRuns) {
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
