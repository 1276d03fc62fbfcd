// SPDX-License-Identifier: GPL-3.0-or-later
// Applies bass and treble to the sound of the speakers with two shelf filters, and provides the
// headroom that a boost needs. If the sliders of bass and treble are in the middle and the effect
// of earlier positions has ended, samples are unchanged. Recorded sound is never affected.
//
// Headroom: a boost may raise a sound above 16 bits. The sound is then attenuated as much as its
// peak requires, and the attenuation decreases slowly. So a loud sound with a boost is not clipped,
// and a sound that always fits is not attenuated.
#pragma once

#include <atomic>
#include <span>

#include "platform/linux/sound/mixing.h"
#include "platform/linux/sound/shelf_filter.h"

namespace sonarith::sound {

class ToneControl {
  public:
    // Sliders run from 0 to highest; the middle is neutral.
    static constexpr int middle = 32768;
    static constexpr int highest = 65535;
    /// The gain of a shelf is proportional to the slider's distance from the middle: -12 dB at 0,
    /// and +12 dB (less 0.0004 dB) at highest. 12 dB is four times the amplitude; more is not
    /// needed to correct loudspeakers or a room, and would overload small speakers.
    static constexpr double spanDb = 12;
    /// Amplifier manufacturers state the effect of tone controls at 100 Hz and 10 kHz. The corner
    /// frequencies are one octave from these, towards 1 kHz, so a full boost is 11 dB at 100 Hz and
    /// at 10 kHz, and less than 0.1 dB at 1 kHz.
    static constexpr double bassCornerHz = 200;
    static constexpr double trebleCornerHz = 5000;

    // Thread-safe, without blocking.
    void setBass(int position) { bass_ = position; }
    [[nodiscard]] int bass() const { return bass_; }
    void setTreble(int position) { treble_ = position; }
    [[nodiscard]] int treble() const { return treble_; }

    [[nodiscard]] static double gainDb(int position) {
        return (position - middle) * spanDb / middle;
    }

    // One thread at a time; never allocates.

    /// Filters `frames` in place. After a slider was moved, the gain changes gradually. While both
    /// sliders are neutral and both filters are transparent, samples are not filtered. Filtered
    /// samples fit into 16 bits. Unfiltered samples may exceed 16 bits; the caller clips them.
    void apply(std::span<WideFrame> frames);
    /// Called before a new sound: applies the sliders' positions at once, without a ramp.
    void restart();

  private:
    void limit(std::span<FilterFrame> frames, std::span<WideFrame> out, bool filtering);

    std::atomic<int> bass_ = middle;
    std::atomic<int> treble_ = middle;
    ShelfFilter low_{ShelfFilter::Side::low, bassCornerHz};
    ShelfFilter high_{ShelfFilter::Side::high, trebleCornerHz};
    double reduction_ = 1; ///< the factor by which the sound is attenuated
};

} // namespace sonarith::sound
