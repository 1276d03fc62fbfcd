// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/icons.h"

#include <algorithm>
#include <vector>

#include <QGuiApplication>
#include <QImage>
#include <QPalette>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

QImage paint(const QIcon& icon, QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(QSize(48, 48), 1.0, mode).toImage();
}

bool isEmpty(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() != 0) {
                return false;
            }
        }
    }
    return true;
}

TEST(Icons, EverySymbolIsDrawnOnATransparentBackground) {
    for (int i = 0; i <= static_cast<int>(lastSymbol); ++i) {
        const QImage image = paint(makeIcon(static_cast<Symbol>(i)));
        ASSERT_EQ(image.size(), QSize(48, 48));
        EXPECT_FALSE(isEmpty(image)) << i;
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << i;
    }
}

TEST(Icons, TheTreeHasTwelvePicturesOfWhichTheFirstSixDifferFromEachOther) {
    std::vector<QImage> seen;
    for (int number = 1; number <= 12; ++number) {
        const QImage image = paint(treeImage(number));
        ASSERT_FALSE(isEmpty(image)) << number;
        if (number <= 6) {
            EXPECT_EQ(std::count(seen.begin(), seen.end(), image), 0) << number;
            seen.push_back(image);
        }
    }
    EXPECT_TRUE(treeImage(0).isNull());
    EXPECT_TRUE(treeImage(13).isNull());
}

TEST(Icons, ChangeWithTheTextColourOfThePalette) {
    const QPalette before = QGuiApplication::palette();
    const QImage light = paint(makeIcon(Symbol::search));
    QPalette dark = before;
    dark.setColor(QPalette::WindowText, Qt::white);
    QGuiApplication::setPalette(dark);
    EXPECT_NE(paint(makeIcon(Symbol::search)), light);
    QGuiApplication::setPalette(before);
}

TEST(Icons, ASymbolLooksDifferentWhenDisabled) {
    for (const Symbol symbol : {Symbol::exit, Symbol::play, Symbol::pause, Symbol::nextTrack,
                                Symbol::previousTrack, Symbol::eject, Symbol::preferences}) {
        EXPECT_NE(paint(makeIcon(symbol), QIcon::Disabled), paint(makeIcon(symbol)));
    }
}

} // namespace
} // namespace sonarith
