// SPDX-License-Identifier: GPL-3.0-or-later
// A shelf filter: raises or lowers the level of all frequencies below (or above) a corner frequency
// by some dB, and moves to another gain without a click. tone_control.h chooses the gain and limits
// the result to 16 bits.
//
// The formulas are those of the "Audio EQ Cookbook" (R. Bristow-Johnson; W3C Working Group Note of
// 2021), shelves of slope 1. With frequency relative to the corner and A = 10^(dB/40), the analog
// model of the low shelf is
//     H(s) = A (s^2 + sqrt(2A) s + A) / (A s^2 + sqrt(2A) s + 1)
// and that of the high shelf is the same formula with s replaced by 1/s. At the corner, the gain in
// dB is half of the requested gain.
#pragma once

#include <span>

namespace sonarith::sound {

/// One sample of each channel; 1.0 is one step of a 16-bit sample.
struct FilterFrame {
    double left = 0;
    double right = 0;
};

/// For one thread at a time. Never allocates.
class ShelfFilter {
  public:
    enum class Side { low, high };

    /// `cornerHz` is below half of the card's rate. The initial gain is 0 dB.
    ShelfFilter(Side side, double cornerHz);

    /// Filters `frames` in place. The gain moves from its present value towards `gainDb`, by
    /// rampDbPerSecond at most, and stays at `gainDb` when it has reached that value.
    void filter(std::span<FilterFrame> frames, double gainDb);
    /// Applies `gainDb` at once and clears the filter's state.
    void restart(double gainDb);
    /// Whether filter() may be skipped while the requested gain is 0 dB: the ramp to 0 dB is
    /// complete, and the remaining effect of earlier sound is below a thousandth of a 16-bit step.
    [[nodiscard]] bool isTransparent() const;

    /// The gain moves from one end of a tone slider to the other in a tenth of a second: faster
    /// than a user moves the slider, and slow enough that a loud tone does not click.
    static constexpr double rampDbPerSecond = 240;

  private:
    /// Coefficients of the difference equation, divided by a0.
    struct Coefficients {
        double b0 = 1;
        double b1 = 0;
        double b2 = 0;
        double a1 = 0;
        double a2 = 0;
    };
    /// The state of one channel (transposed direct form II, which tolerates changing coefficients).
    struct Memory {
        double first = 0;
        double second = 0;
    };

    [[nodiscard]] Coefficients design(double gainDb) const;
    static double step(const Coefficients& c, Memory& memory, double in);
    void rampPiece(std::span<FilterFrame> piece, double gainDb);
    void steadyPiece(std::span<FilterFrame> piece);
    void clearNegligibleHistory();

    Side side_;
    double cornerRadians_; ///< per frame
    double gainDb_ = 0;
    Coefficients coefficients_;
    Memory left_;
    Memory right_;
};

} // namespace sonarith::sound
