// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/shape_from_picture.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "forms/windows.h"
#include "support/fake_machine.h"

namespace sonarith {
namespace {

struct ShapeFromPictureTest : testing::Test, test::FakeMachine {
    ProcessState process;
    Windows windows{platform, process};
    Form1& form = windows.Form1;
    /// Two pixels, of which the left pixel is white.
    const std::vector<PixelColour> halfWhite = {whitePixel, 0};
    const WindowRegion rightHalf{{{1, 0, 2, 1}}};
};

/// Counts the computations of a region: each of them reads the pixel (0, 0) once.
class CountedPicture final : public PixelPicture {
  public:
    CountedPicture() : PixelPicture(1, 1, {0}) {}
    mutable int computations = 0;
    [[nodiscard]] std::optional<PixelColour> pixel(int x, int y) const override {
        computations += x == 0 && y == 0 ? 1 : 0;
        return PixelPicture::pixel(x, y);
    }
};

TEST_F(ShapeFromPictureTest, TheWindowHasNoRegionAtTheStart) {
    EXPECT_FALSE(process.WindowRegion.has_value());
    EXPECT_FALSE(form.windowRegion().has_value());
}

TEST_F(ShapeFromPictureTest, SetsTheRegionToAllPixelsThatAreNotWhite) {
    form.setPicture(std::make_shared<PixelPicture>(2, 1, halfWhite));
    int masked = 0;
    const Connection connection = form.changed.connect(
        [&](Property property) { masked += property == Property::region ? 1 : 0; });
    ShapeFromPicture(form, process);
    EXPECT_EQ(process.WindowRegion, rightHalf);
    EXPECT_EQ(form.windowRegion(), rightHalf);
    EXPECT_EQ(masked, 1);
}

TEST_F(ShapeFromPictureTest, EachCallDeliberatelyComputesTheRegionTwice) {
    const auto picture = std::make_shared<CountedPicture>();
    form.setPicture(picture);
    ShapeFromPicture(form, process);
    EXPECT_EQ(picture->computations, 2);
}

TEST_F(ShapeFromPictureTest, AnotherPictureReplacesTheRegion) {
    form.setPicture(std::make_shared<PixelPicture>(1, 1, std::vector<PixelColour>{whitePixel}));
    ShapeFromPicture(form, process);
    EXPECT_EQ(form.windowRegion(), WindowRegion{});
    form.setPicture(std::make_shared<PixelPicture>(2, 1, halfWhite));
    ShapeFromPicture(form, process);
    EXPECT_EQ(process.WindowRegion, rightHalf);
    EXPECT_EQ(form.windowRegion(), rightHalf);
}

TEST_F(ShapeFromPictureTest, RemovesTheRegionIfThereIsNoPicture) {
    process.WindowRegion = rightHalf;
    form.setWindowRegion(rightHalf);
    ShapeFromPicture(form, process);
    EXPECT_EQ(process.WindowRegion, std::nullopt);
    EXPECT_EQ(form.windowRegion(), std::nullopt);
}

} // namespace
} // namespace sonarith
