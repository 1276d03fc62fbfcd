// SPDX-License-Identifier: GPL-3.0-or-later
// The logic's unit of length for windows: 1440 twips are one inch. Twips are a separate type, so
// that twips cannot be mixed up with pixels or counts. platform/qt/twips.h converts to pixels.
#pragma once

#include <compare>

namespace sonarith {

class Twips {
  public:
    constexpr Twips() = default;
    constexpr explicit Twips(int count) : count_(count) {}
    /// The nearest whole twip; halves are rounded away from zero. `count` must fit an int.
    [[nodiscard]] static constexpr Twips rounded(double count) {
        return Twips(static_cast<int>(count < 0 ? count - 0.5 : count + 0.5));
    }

    [[nodiscard]] constexpr int count() const { return count_; }

    friend constexpr auto operator<=>(Twips, Twips) = default;
    constexpr Twips& operator+=(Twips other) {
        count_ += other.count_;
        return *this;
    }
    constexpr Twips& operator-=(Twips other) {
        count_ -= other.count_;
        return *this;
    }
    friend constexpr Twips operator+(Twips a, Twips b) { return a += b; }
    friend constexpr Twips operator-(Twips a, Twips b) { return a -= b; }
    friend constexpr Twips operator-(Twips a) { return Twips(-a.count_); }
    friend constexpr Twips operator*(Twips a, int factor) { return Twips(a.count_ * factor); }
    /// Rounds towards zero.
    friend constexpr Twips operator/(Twips a, int divisor) { return Twips(a.count_ / divisor); }

  private:
    int count_ = 0;
};

inline namespace literals {
/// For example, 3990_twips.
constexpr Twips operator""_twips(unsigned long long count) {
    return Twips(static_cast<int>(count));
}
} // namespace literals

} // namespace sonarith
