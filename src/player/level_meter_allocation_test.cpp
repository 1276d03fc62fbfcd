// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that a tick of the level meter, which has a hundred ticks a second, allocates nothing. This
// file replaces the allocator of its test program (counted_allocations.h), so no other source of
// that test program may replace the allocator.
#include "player/level_meter.h"

#include <gtest/gtest.h>

#include "support/counted_allocations.h"
#include "support/fake_machine.h"

namespace sonarith {
namespace {

/// Unlike test::FakeMixer it writes no log, since a log would allocate.
class QuietMixer final : public Mixer {
  public:
    std::int32_t peak = 0;
    bool fails = false;

    MixerResult open(MixerHandle& mixer) override {
        mixer = 1;
        return MixerResult::noError;
    }
    MixerResult getLineInfo(MixerHandle, MixerLine&) override { return MixerResult::noError; }
    MixerResult getLineControls(MixerHandle, MixerLineControls& controls) override {
        controls.pamxctrl->dwControlID = 1;
        return MixerResult::noError;
    }
    MixerResult getControlDetails(MixerHandle, MixerControlDetails& details) override {
        if (fails) {
            return MixerResult::invalidControl;
        }
        *details.paDetails = peak;
        return MixerResult::noError;
    }
    MixerResult setControlDetails(MixerHandle, const MixerControlDetails&) override {
        return MixerResult::noError;
    }
};

/// Gives the test access to the buffer that was added last, so that it can mark the buffer done.
class QuietInput final : public WaveInput {
  public:
    WaveHeader* added = nullptr;

    WaveResult open(WaveInHandle& handle, std::uint32_t, const WaveFormat&) override {
        handle = 1;
        return WaveResult::noError;
    }
    WaveResult prepareHeader(WaveInHandle, WaveHeader&) override { return WaveResult::noError; }
    WaveResult unprepareHeader(WaveInHandle, WaveHeader&) override { return WaveResult::noError; }
    WaveResult addBuffer(WaveInHandle, WaveHeader& header) override {
        header.dwFlags &= ~wave_header::done;
        added = &header;
        return WaveResult::noError;
    }
    WaveResult start(WaveInHandle) override { return WaveResult::noError; }
    WaveResult stop(WaveInHandle) override { return WaveResult::noError; }
    WaveResult reset(WaveInHandle) override { return WaveResult::noError; }
    WaveResult close(WaveInHandle) override { return WaveResult::noError; }
    [[nodiscard]] std::string errorText(WaveResult) const override { return {}; }
};

TEST(LevelMetersTick, AllocatesNothing) {
    test::FakeMachine machine;
    QuietMixer mixer;
    QuietInput input;
    const Platform platform = machine.platformWith({.mixer = &mixer, .waveInput = &input});
    ProcessState process;
    Form4 form(machine.loop);
    form.load();
    MixerState state;
    MixerAccess access(mixer, process);
    MeterCapture capture(platform, form);
    LevelMeter meter(platform, form, access, state, capture);
    meter.prepare();
    capture.StartMeter();
    // No views are connected to the meter's bar (Label4) and trace (picPeakVol). Instead, these two
    // connections count the changes of the bar and the lines of the trace.
    int steps = 0;
    const Connection moved = form.Label4.changed.connect([&](Property) { ++steps; });
    const Connection drawn =
        form.picPeakVol.lineDrawn.connect([&](const PictureLine&) { ++steps; });
    EXPECT_EQ(test::allocationsOf([&] {
                  for (int tick = 0; tick < 1000; ++tick) {
                      mixer.peak = tick * 33 % 32768 - 16384;
                      mixer.fails = tick % 10 == 0;
                      if (tick % 100 == 0) {
                          input.added->dwFlags |= wave_header::done;
                      }
                      form.Timer3.fire();
                  }
              }),
              0);
    // The meter has drawn, and the trace has restarted at the left edge: 123 lines fill its width.
    EXPECT_GT(steps, 1500);
    EXPECT_LT(form.picPeakVol.lines().size(), 123U);
}

} // namespace
} // namespace sonarith
