// SPDX-License-Identifier: GPL-3.0-or-later
// A shelf filter: raises or lowers all frequencies below a corner, or above it, by some dB, and
// moves to another gain without a click. It knows no slider and no limit of samples
// (tone_control.h).
//
// The formulas are those of the "Audio EQ Cookbook" (R. Bristow-Johnson; W3C Working Group Note of
// 2021), shelves of slope 1. The analog model, with frequency relative to the corner and
// A = 10^(dB/40), is for the low shelf
//     H(s) = A (s^2 + sqrt(2A) s + A) / (A s^2 + sqrt(2A) s + 1)
// and for the high shelf the same with s replaced by 1/s. At the corner the gain is half of the dB.
#pragma once

#include <span>

namespace sonarith::sound {

/// A frame while it is filtered, in units of a 16-bit sample.
struct FilterFrame {
    double left = 0;
    double right = 0;
};

/// Used by one thread at a time. Never allocates.
class ShelfFilter {
  public:
    enum class Side { low, high };

    /// `cornerHz` lies below half of the card's rate. The gain is 0 dB at first.
    ShelfFilter(Side side, double cornerHz);

    /// Filters `frames` in place. The gain moves from where it was towards `gainDb`, by
    /// rampDbPerSecond at the most, and stays there.
    void filter(std::span<FilterFrame> frames, double gainDb);
    /// Takes `gainDb` at once, and forgets the sound so far.
    void restart(double gainDb);
    /// Whether frames pass unchanged while the gain is to be 0 dB: it is, and what is left of
    /// earlier sound is less than a thousandth of a sample.
    [[nodiscard]] bool isTransparent() const;

    /// From one end of a tone slider to the other in a tenth of a second: faster than a hand moves
    /// it, and slow enough that the change of a loud tone is no click.
    static constexpr double rampDbPerSecond = 240;

  private:
    /// Of the difference equation, divided by a0.
    struct Coefficients {
        double b0 = 1;
        double b1 = 0;
        double b2 = 0;
        double a1 = 0;
        double a2 = 0;
    };
    /// What one channel remembers (transposed direct form II, which bears changing coefficients).
    struct Memory {
        double first = 0;
        double second = 0;
    };

    [[nodiscard]] Coefficients design(double gainDb) const;
    static double step(const Coefficients& c, Memory& memory, double in);
    void rampPiece(std::span<FilterFrame> piece, double gainDb);
    void steadyPiece(std::span<FilterFrame> piece);
    void forgetTraces();

    Side side_;
    double cornerRadians_; ///< for each frame
    double gainDb_ = 0;
    Coefficients coefficients_;
    Memory left_;
    Memory right_;
};

} // namespace sonarith::sound
