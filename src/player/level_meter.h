// SPDX-License-Identifier: GPL-3.0-or-later
// The level meter: reads the mixer's peak control and draws one step of the bar and of the trace.
// The input that makes the level move is started elsewhere; the arithmetic is in meter_scale.h.
#pragma once

#include <cstdint>

#include "forms/form4.h"
#include "platform/platform.h"
#include "player/meter_capture.h"
#include "player/mixer_access.h"
#include "player/mixer_state.h"

namespace sonarith {

class LevelMeter {
  public:
    /// Becomes the handler of Timer2, Timer3 and Timer4. All outlive this.
    LevelMeter(const Platform& platform, Form4& form, MixerAccess& access, MixerState& state,
               MeterCapture& capture);
    LevelMeter(const LevelMeter&) = delete;
    LevelMeter& operator=(const LevelMeter&) = delete;

    /// Looks up the peak controls, with the mixer open, and makes ready for reading them.
    void prepare();
    /// Takes the trace off. The next line goes on from the last one's place.
    void clearTrace();
    /// The bar out of sight.
    void sinkBar();

    /// One reading and one step of the drawing. Allocates nothing.
    void Timer3_Timer();
    /// Two variants of that, whose timers nothing starts.
    void Timer2_Timer();
    void Timer4_Timer();

  private:
    enum class Drawing { none, joined, apart };
    /// In what the three differ.
    struct Variant {
        const MixerControl& control;
        double silenceAt; ///< the trace's height at silence, in twips
        int step;         ///< of the trace to the right, in twips
        Drawing drawing;
    };

    void readLevel(const MixerControl& control);
    void draw(const Variant& variant);

    const Platform& platform_;
    Form4& form_;
    MixerAccess& access_;
    MixerState& state_;
    MeterCapture& capture_;

    MixerControlDetails MeterDetails;
    /// What MeterDetails reads into. A read that fails leaves it as it was.
    std::int32_t reading_ = 0;
    std::int32_t TraceX = 0;
    double TraceY = 0;
    double PrevTraceY = 0;
};

} // namespace sonarith
