// SPDX-License-Identifier: GPL-3.0-or-later
// The level meter: reads the mixer's peak control and draws one step of the bar and of the trace.
// meter_capture.h starts the input whose level is shown; the arithmetic is in meter_scale.h.
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
    /// Sets the handlers of Timer2, Timer3 and Timer4. All parameters must outlive this object.
    LevelMeter(const Platform& platform, Form4& form, MixerAccess& access, MixerState& state,
               MeterCapture& capture);
    LevelMeter(const LevelMeter&) = delete;
    LevelMeter& operator=(const LevelMeter&) = delete;

    /// Finds the peak controls and prepares to read them. The mixer must be open.
    void prepare();
    /// Clears the trace. The position of its next line does not change.
    void clearTrace();
    /// Hides the bar.
    void sinkBar();

    /// Reads the level once and draws one step. Allocates nothing.
    void Timer3_Timer();
    /// Two variants of Timer3_Timer(). Their timers are never started.
    void Timer2_Timer();
    void Timer4_Timer();

  private:
    enum class Drawing { none, joined, apart };
    /// The differences between the three timers' drawings.
    struct Variant {
        const MixerControl& control;
        double silenceAt; ///< the trace's distance from the upper edge at silence, in twips
        int step;         ///< how far the trace moves to the right, in twips
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
    /// The value that a read with MeterDetails stores. A failed read does not change it.
    std::int32_t reading_ = 0;
    std::int32_t TraceX = 0;
    double TraceY = 0;
    double PrevTraceY = 0;
};

} // namespace sonarith
