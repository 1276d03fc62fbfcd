// SPDX-License-Identifier: GPL-3.0-or-later
// Draws each symbol: lines and areas on a grid of 24 by 24. Icons are in icons.h.
#pragma once

#include <QIcon>

#include "ui/icons.h"

class QPainter;

namespace sonarith {

/// Side of the square that all symbols are drawn in.
inline constexpr qreal symbolGrid = 24;

/// Draws in the application palette's colours for `mode`, on the painter's scaled grid.
void drawSymbol(QPainter& painter, Symbol symbol, QIcon::Mode mode);

} // namespace sonarith
