// SPDX-License-Identifier: GPL-3.0-or-later
// Compares a level meter whose ticks come in batches with a level meter whose ticks come singly,
// each when it is due: after each batch, both meters must have drawn the same trace. Card and mixer
// are the program's own, and the clock is simulated.
#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "platform/batched_wakeup.h"
#include "platform/linux/sound/card_mixer.h"
#include "platform/linux/sound/card_wave_input.h"
#include "platform/linux/sound/sound_card.h"
#include "player/level_meter.h"
#include "support/fake_machine.h"
#include "support/forwarding_event_loop.h"
#include "support/tones.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using sound::SoundCard;

enum class Ticks { single, inBatches };

class MeterLoop final : public test::ForwardingEventLoop {
  public:
    MeterLoop(EventLoop& target, const SoundCard& card, Ticks ticks)
        : ForwardingEventLoop(target), card_(card), ticks_(ticks) {}

    [[nodiscard]] std::unique_ptr<Wakeup> everyInSound(Duration interval,
                                                       std::function<void()> handler) override {
        if (ticks_ == Ticks::single) {
            return every(interval, std::move(handler));
        }
        auto wakeup = std::make_unique<BatchedWakeup>(*this, interval, std::move(handler), [this] {
            return card_.work() == SoundCard::Work::silence;
        });
        batches = wakeup.get();
        return wakeup;
    }
    /// Changes from the large batches of ticks in silence to the small batches during sound, unless
    /// the card is silent. A test must call this when sound begins; the real loop does the same
    /// each time before its thread sleeps.
    void handlerReturned() {
        if (batches) {
            batches->endSilence();
        }
    }

    BatchedWakeup* batches = nullptr;

  private:
    const SoundCard& card_;
    Ticks ticks_;
};

/// A level meter that is switched on, with the sound card and the mixer that it reads.
struct MeterWorld {
    explicit MeterWorld(Ticks ticks) : loop(machine.loop, card, ticks) {
        MixerHandle handle = 0;
        EXPECT_EQ(mixer.open(handle), MixerResult::noError);
        state.hMixer = handle;
        meter.prepare();
        EXPECT_TRUE(capture.StartMeter());
        form.Timer3.setEnabled(true);
        moved = form.Label4.changed.connect([this](Property) { movedAt.push_back(passed()); });
        lined = form.picPeakVol.lineDrawn.connect([this](const PictureLine& line) {
            drawn.push_back({passed(), line.to});
            if (drawnAt.empty() || drawnAt.back() != passed()) {
                drawnAt.push_back(passed());
            }
        });
    }
    [[nodiscard]] SoundCard::Time now() const { return machine.loop.now(); }
    [[nodiscard]] EventLoop::Duration passed() const { return machine.loop.now() - begun; }

    void soundBegins() {
        card.attach(sound::Line::compactDisc, std::make_shared<fakes::ToneSource>(3, 20'000),
                    now());
        loop.handlerReturned();
    }
    void soundEnds() { card.detach(sound::Line::compactDisc); }

    test::FakeMachine machine;
    const EventLoop::Time begun = machine.loop.now();
    SoundCard card;
    // Created before the meter's timer: if both are due at the same time, the card plays first. The
    // interval is that of the card's thread while a disc is played.
    std::unique_ptr<Wakeup> cardThread = machine.loop.every(20ms, [this] { card.advance(now()); });
    MeterLoop loop;
    sound::CardMixer mixer{&card, {}, [this] {
                               return now();
                           }};
    sound::CardWaveInput waveInput{card, [this] {
                                       return now();
                                   }};
    const Platform platform{.loop = loop,
                            .media = machine.media,
                            .store = machine.store,
                            .files = machine.files,
                            .boxes = machine.boxes,
                            .pointer = machine.pointer,
                            .random = machine.random,
                            .shell = machine.shell,
                            .directories = machine.directories,
                            .mp3Controls = machine.mp3,
                            .fileDialog = machine.dialog,
                            .mixer = mixer,
                            .waveInput = waveInput,
                            .tray = machine.tray,
                            .system = machine.system};
    ProcessState process;
    Form4 form{loop};
    MixerState state;
    MixerAccess access{mixer, process};
    MeterCapture capture{platform, form};
    LevelMeter meter{platform, form, access, state, capture};
    struct Drawn {
        EventLoop::Duration at;
        PicturePoint end;
    };
    std::vector<Drawn> drawn;                 ///< the lines of the trace
    std::vector<EventLoop::Duration> drawnAt; ///< times at which at least one line was drawn
    std::vector<EventLoop::Duration> movedAt; ///< times at which the bar moved
    Connection moved;
    Connection lined;
};

void playASound(MeterWorld& world) {
    world.machine.loop.advance(1236ms);
    world.soundBegins();
    world.machine.loop.advance(504ms);
    world.soundEnds();
    world.machine.loop.advance(1s);
}

/// The number of lines that were drawn until `time`.
std::size_t linesUntil(const MeterWorld& world, EventLoop::Duration time) {
    return static_cast<std::size_t>(
        std::count_if(world.drawn.begin(), world.drawn.end(),
                      [time](const MeterWorld::Drawn& line) { return line.at <= time; }));
}

TEST(MeterInBatches, AfterEachBatchTheTraceEndsAtTheSamePointAsWithSingleTicks) {
    MeterWorld single(Ticks::single);
    MeterWorld batches(Ticks::inBatches);
    playASound(single);
    playASound(batches);
    EXPECT_EQ(single.drawn.size(), 274U);
    // The ticks of the last batch may be missing at the end of the test.
    const std::size_t drawn = batches.drawn.size();
    ASSERT_LE(drawn, single.drawn.size());
    EXPECT_GT(drawn + BatchedWakeup::callsInSilence, single.drawn.size());
    for (const EventLoop::Duration time : batches.drawnAt) {
        const std::size_t lines = linesUntil(batches, time);
        ASSERT_EQ(lines, linesUntil(single, time)) << "at " << time.count() << " ms";
        EXPECT_EQ(batches.drawn[lines - 1].end, single.drawn[lines - 1].end)
            << "at " << time.count() << " ms";
    }
    EXPECT_EQ(batches.form.Label4.top(), batches.form.Picture8.height());
}

TEST(MeterInBatches, DelaysEachMovementOfTheBarByLessThanTwoTicks) {
    MeterWorld single(Ticks::single);
    MeterWorld batches(Ticks::inBatches);
    playASound(single);
    playASound(batches);
    ASSERT_EQ(batches.movedAt.size(), single.movedAt.size());
    ASSERT_GT(single.movedAt.size(), 20U);
    for (std::size_t i = 0; i < single.movedAt.size(); ++i) {
        EXPECT_LT(batches.movedAt[i], single.movedAt[i] + 20ms) << "movement " << i;
    }
}

TEST(MeterInBatches, DrawsAllLinesInTwentyBatchesASecondInSilence) {
    MeterWorld world(Ticks::inBatches);
    world.machine.loop.advance(2s);
    world.drawnAt.clear();
    world.machine.loop.advance(1s);
    EXPECT_EQ(world.drawnAt.size(), 20U);
    EXPECT_EQ(world.drawn.size(), 300U); // 100 lines in each of the three seconds
}

} // namespace
} // namespace sonarith
