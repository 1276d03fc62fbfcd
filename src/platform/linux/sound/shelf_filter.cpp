// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/shelf_filter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

namespace {

/// While the gain changes, coefficients are computed once for each piece and interpolated within
/// the piece. A piece has at most 32 frames: 0.7 ms, in which the gain changes by 0.17 dB at most.
/// An interpolation between two stable filters is stable, too.
constexpr std::size_t pieceFrames = 32;

/// A filter state below this, in steps of a 16-bit sample, has no audible effect.
constexpr double negligible = 1e-3;
/// A filter state below this is set to 0: further decay would lead to denormal numbers, which are
/// slow.
constexpr double trace = 1e-12;

} // namespace

ShelfFilter::ShelfFilter(Side side, double cornerHz)
    : side_(side), cornerRadians_(2 * std::numbers::pi * cornerHz / frameRate) {
    restart(0);
}

ShelfFilter::Coefficients ShelfFilter::design(double gainDb) const {
    const double a = std::pow(10.0, gainDb / 40);
    // The high shelf is the low shelf with the frequency axis reversed.
    const double turn = side_ == Side::low ? 1 : -1;
    const double cosine = turn * std::cos(cornerRadians_);
    const double alpha = std::sin(cornerRadians_) / std::numbers::sqrt2; // slope 1
    const double width = 2 * std::sqrt(a) * alpha;
    const double a0 = (a + 1) + (a - 1) * cosine + width;
    return {a * ((a + 1) - (a - 1) * cosine + width) / a0,
            turn * 2 * a * ((a - 1) - (a + 1) * cosine) / a0,
            a * ((a + 1) - (a - 1) * cosine - width) / a0,
            turn * -2 * ((a - 1) + (a + 1) * cosine) / a0,
            ((a + 1) + (a - 1) * cosine - width) / a0};
}

void ShelfFilter::restart(double gainDb) {
    gainDb_ = gainDb;
    coefficients_ = design(gainDb);
    left_ = {};
    right_ = {};
}

bool ShelfFilter::isTransparent() const {
    return gainDb_ == 0 && std::abs(left_.first) < negligible &&
           std::abs(left_.second) < negligible && std::abs(right_.first) < negligible &&
           std::abs(right_.second) < negligible;
}

void ShelfFilter::filter(std::span<FilterFrame> frames, double gainDb) {
    while (!frames.empty()) {
        const auto piece = frames.first(std::min(frames.size(), pieceFrames));
        frames = frames.subspan(piece.size());
        if (gainDb_ == gainDb) {
            steadyPiece(piece);
        } else {
            rampPiece(piece, gainDb);
        }
    }
    clearNegligibleHistory();
}

double ShelfFilter::step(const Coefficients& c, Memory& memory, double in) {
    const double out = c.b0 * in + memory.first;
    memory.first = c.b1 * in - c.a1 * out + memory.second;
    memory.second = c.b2 * in - c.a2 * out;
    return out;
}

void ShelfFilter::steadyPiece(std::span<FilterFrame> piece) {
    for (FilterFrame& frame : piece) {
        frame.left = step(coefficients_, left_, frame.left);
        frame.right = step(coefficients_, right_, frame.right);
    }
}

void ShelfFilter::rampPiece(std::span<FilterFrame> piece, double gainDb) {
    const auto count = static_cast<double>(piece.size());
    const double most = rampDbPerSecond / frameRate * count;
    gainDb_ = std::clamp(gainDb, gainDb_ - most, gainDb_ + most);
    const Coefficients end = design(gainDb_);
    Coefficients& now = coefficients_;
    const Coefficients change{(end.b0 - now.b0) / count, (end.b1 - now.b1) / count,
                              (end.b2 - now.b2) / count, (end.a1 - now.a1) / count,
                              (end.a2 - now.a2) / count};
    for (FilterFrame& frame : piece) {
        now.b0 += change.b0;
        now.b1 += change.b1;
        now.b2 += change.b2;
        now.a1 += change.a1;
        now.a2 += change.a2;
        frame.left = step(now, left_, frame.left);
        frame.right = step(now, right_, frame.right);
    }
    now = end; // removes the rounding errors of the sums
}

void ShelfFilter::clearNegligibleHistory() {
    for (double* memory : {&left_.first, &left_.second, &right_.first, &right_.second}) {
        if (std::abs(*memory) < trace) {
            *memory = 0;
        }
    }
}

} // namespace sonarith::sound
