// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/trace_view.h"

#include <cmath>
#include <utility>

#include <QPaintEvent>
#include <QPainter>
#include <QWindow>

#include "platform/qt/twips.h"

namespace sonarith {
namespace {

/// The width of a line in device-independent pixels.
constexpr int lineWidth = 1;
/// The limit of coordinates in pixels, far outside of any screen. Rectangles of widgets have
/// integer coordinates, which must not overflow.
constexpr double farthest = 1e6;

QPointF inPixels(const PicturePoint& point) {
    const auto held = [](double twips) {
        const double pixels = twips / twipsPerPixel;
        return std::isnan(pixels) ? 0 : std::fmin(std::fmax(pixels, -farthest), farthest);
    };
    return {held(point.x), held(point.y)};
}

/// A rectangle that contains all pixels that the line paints.
QRect placeOf(const PictureLine& line) {
    const QRectF box = QRectF(inPixels(line.from), inPixels(line.to)).normalized();
    return box.toAlignedRect().adjusted(-lineWidth, -lineWidth, lineWidth, lineWidth);
}

} // namespace

TraceView::TraceView(PictureBox& model, QString label, const Colors& colors, QWidget* parent)
    : PictureView(model, std::move(label), std::nullopt, 0, parent),
      model_(model),
      colors_(colors),
      pace_(pictureInterval, [this] { repaintDrawn(); }),
      lineDrawn_(model.lineDrawn.connect([this](const PictureLine& line) { showLine(line); })),
      cleared_(model.cleared.connect([this] { update(); })) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

/// Requests no repaint while the window is not on the screen, for example minimized: for each
/// request, Qt would start a timer and paint nothing.
void TraceView::showLine(const PictureLine& line) {
    const QWindow* handle = window()->windowHandle();
    if (!handle || !handle->isExposed()) {
        behind_ = true;
        return;
    }
    drawn_ |= placeOf(line);
    pace_.request();
}

void TraceView::repaintDrawn() {
    const QRect drawn = std::exchange(drawn_, {});
    update(std::exchange(behind_, false) ? rect() : drawn);
}

QSize TraceView::sizeHint() const {
    return {toPixels(model_.width()) + lineWidth, toPixels(model_.height()) + lineWidth};
}

void TraceView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), colors_.background);
    painter.setPen(QPen(colors_.line, lineWidth));
    for (const PictureLine& line : model_.lines()) {
        if (event->rect().intersects(placeOf(line))) {
            painter.drawLine(QLineF(inPixels(line.from), inPixels(line.to)));
        }
    }
}

} // namespace sonarith
