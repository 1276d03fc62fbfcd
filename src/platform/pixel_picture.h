// SPDX-License-Identifier: GPL-3.0-or-later
// A picture as pixels, for logic that reads colours from it. Only the view draws the picture.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace sonarith {

/// 0xBBGGRR: red is in the lowest byte, green in the next, blue in the third.
using PixelColour = std::uint32_t;
inline constexpr PixelColour whitePixel = 0xFFFFFF;

class PixelPicture {
  public:
    /// `pixels` holds width * height pixels, row by row from the top.
    PixelPicture(int width, int height, std::vector<PixelColour> pixels)
        : width_(width), height_(height), pixels_(std::move(pixels)) {
        assert(width >= 0 && height >= 0);
        assert(pixels_.size() ==
               static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    }
    virtual ~PixelPicture() = default;
    PixelPicture(const PixelPicture&) = delete;
    PixelPicture& operator=(const PixelPicture&) = delete;

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }

    /// Any position is allowed. Outside the picture this returns nothing, which compares unequal to
    /// every colour.
    [[nodiscard]] virtual std::optional<PixelColour> pixel(int x, int y) const {
        if (x < 0 || y < 0 || x >= width_ || y >= height_) {
            return std::nullopt;
        }
        return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                       static_cast<std::size_t>(x)];
    }

  private:
    int width_;
    int height_;
    std::vector<PixelColour> pixels_;
};

} // namespace sonarith
