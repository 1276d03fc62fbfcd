// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/symbols.h"

#include <QImage>
#include <QPainter>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(Symbols, NoDrawingExceedsTheGrid) {
    // Each symbol is drawn in the middle of an image that is three times as wide and high as the
    // grid. All pixels outside of the middle must stay transparent.
    constexpr int side = static_cast<int>(symbolGrid);
    for (int i = 0; i <= static_cast<int>(lastSymbol); ++i) {
        QImage image(3 * side, 3 * side, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(side, side);
        drawSymbol(painter, static_cast<Symbol>(i), QIcon::Normal);
        painter.end();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (!QRect(side, side, side, side).contains(x, y)) {
                    ASSERT_EQ(image.pixelColor(x, y).alpha(), 0)
                        << "symbol " << i << " at the pixel " << x << ',' << y;
                }
            }
        }
    }
}

} // namespace
} // namespace sonarith
