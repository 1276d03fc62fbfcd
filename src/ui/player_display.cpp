// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player_display.h"

#include <utility>

#include <QPainter>

namespace sonarith {

PanelSurface::PanelSurface(PictureBox& model, QString label, QWidget* parent)
    : PictureView(model, std::move(label), std::nullopt, 0, parent) {}

PlayerDisplay::PlayerDisplay(PictureBox& model, QString label, QWidget* parent)
    : PanelSurface(model, std::move(label), parent) {
    QPalette dark = palette();
    for (const QPalette::ColorGroup group :
         {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        dark.setColor(group, QPalette::Window, ground);
        dark.setColor(group, QPalette::Base, ground);
        dark.setColor(group, QPalette::WindowText, text);
        dark.setColor(group, QPalette::Text, text);
    }
    setPalette(dark);
}

void PlayerDisplay::paintEvent(QPaintEvent*) {
    constexpr qreal corner = 4;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), corner, corner);
}

} // namespace sonarith
