// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picture_view.h"

#include <QMouseEvent>
#include <QPainter>

#include "ui/mouse.h"
#include "ui/popup_place.h"

namespace sonarith {
namespace {

/// A pale tone of the text colour, which is visible on light and on dark palettes. The tone is
/// opaque: if a vertical line is translucent and longer than about a hundred pixels, Qt distributes
/// its painting to other threads, and the distribution takes longer than the painting itself.
QColor paleTone(const QPalette& palette) {
    const QColor text = palette.color(QPalette::WindowText);
    const QColor window = palette.color(QPalette::Window);
    const auto mixed = [](float of, float in) {
        constexpr float strength = 0.18F;
        return in + (of - in) * strength;
    };
    return QColor::fromRgbF(mixed(text.redF(), window.redF()),
                            mixed(text.greenF(), window.greenF()),
                            mixed(text.blueF(), window.blueF()));
}

} // namespace

BarView::BarView(PictureBox& model, QString label, Qt::Edge line, QWidget* parent)
    : QWidget(parent), line_(line), view_(model, *this, {}, std::move(label)) {}

void BarView::paintEvent(QPaintEvent*) {
    const QRect all = rect();
    QRect edge = all;
    switch (line_) {
    case Qt::TopEdge:
        edge.setBottom(all.top());
        break;
    case Qt::BottomEdge:
        edge.setTop(all.bottom());
        break;
    case Qt::LeftEdge:
        edge.setRight(all.left());
        break;
    case Qt::RightEdge:
        edge.setLeft(all.right());
        break;
    }
    QPainter(this).fillRect(edge, paleTone(palette()));
}

PictureView::PictureView(PictureBox& model, QString label, std::optional<Symbol> symbol, int side,
                         QWidget* parent)

    : QWidget(parent),
      model_(model),
      symbol_(symbol),
      side_(side),
      view_(model, *this, {}, std::move(label)) {}

void PictureView::paintEvent(QPaintEvent*) {
    if (!symbol_) {
        return;
    }
    QRect place(0, 0, side_, side_);
    place.moveCenter(rect().center());
    QPainter painter(this);
    makeIcon(*symbol_).paint(&painter, place, Qt::AlignCenter,
                             isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

void PictureView::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(static_cast<bool>(model_.onMouseDown));
    const PopupPlace place(event->globalPosition().toPoint());
    run(model_.onMouseDown, pressed(*event));
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
    event->setAccepted(static_cast<bool>(model_.onMouseMove));
    run(model_.onMouseMove, held(*event));
}

} // namespace sonarith
