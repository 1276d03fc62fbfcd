// SPDX-License-Identifier: GPL-3.0-or-later
// Draws the symbols of icons.h as lines and areas on a grid of 24 by 24 units.
#pragma once

#include <QIcon>

#include "ui/icons.h"

class QPainter;

namespace sonarith {

/// The side of the square in which all symbols are drawn, in units of the grid.
inline constexpr qreal symbolGrid = 24;

/// Draws a symbol. Lines have the text colours of the application's palette. Most areas have a
/// fixed colour and an outline in a darker shade of that colour. `mode` changes these colours. One
/// unit of the painter must be one unit of the grid.
void drawSymbol(QPainter& painter, Symbol symbol, QIcon::Mode mode);

} // namespace sonarith
