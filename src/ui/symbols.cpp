// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/symbols.h"

#include <utility>

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace sonarith {
namespace {

// All coordinates and lengths below are in units of the grid that symbols.h defines: 24 by 24
// units.

/// Sets the pens and brushes of a drawing, with colours that depend on the icon's mode.
class Pencils {
  public:
    Pencils(QPainter& painter, QIcon::Mode mode) : painter_(painter), mode_(mode) {}

    /// Makes the painter draw lines in the colour of texts, without filling.
    void line(qreal width = 1.7) {
        painter_.setPen(QPen(ink(), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter_.setBrush(Qt::NoBrush);
    }
    /// Makes the painter draw areas in the colour of texts, without an outline.
    void area() {
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(ink());
    }
    /// Makes the painter draw areas in `color`, with an outline in a darker shade of that colour.
    /// For a disabled symbol, the colour of disabled texts at 35 % of its opacity replaces `color`.
    /// The outline of a selected symbol has the colour of selected texts.
    void paint(QColor color, qreal outline = 1.2) {
        if (mode_ == QIcon::Disabled) {
            color = ink();
            color.setAlphaF(color.alphaF() * 0.35F);
        }
        const QColor edge = mode_ == QIcon::Selected ? ink() : color.darker(145);
        painter_.setPen(QPen(edge, outline, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter_.setBrush(color);
    }

  private:
    [[nodiscard]] QColor ink() const {
        const QPalette palette = QGuiApplication::palette();
        if (mode_ == QIcon::Disabled) {
            return palette.color(QPalette::Disabled, QPalette::WindowText);
        }
        return palette.color(QPalette::Active, mode_ == QIcon::Selected ? QPalette::HighlightedText
                                                                        : QPalette::WindowText);
    }

    QPainter& painter_;
    QIcon::Mode mode_;
};

// These colours are medium tones, so that each is visible on white and on nearly black backgrounds.
const QColor green(0x3C, 0xA3, 0x5E);
const QColor red(0xD2, 0x53, 0x4A);
const QColor amber(0xE8, 0xB4, 0x4C);
const QColor blue(0x4A, 0x90, 0xC8);
const QColor silver(0xC4, 0xCE, 0xD6);

void drawExit(QPainter& p, Pencils& pencils) {
    pencils.line();
    p.drawPolyline(QPolygonF({{13, 8}, {13, 4}, {4, 4}, {4, 20}, {13, 20}, {13, 16}}));
    p.drawLine(QPointF(9, 12), QPointF(20.5, 12));
    p.drawPolyline(QPolygonF({{17, 8.5}, {20.5, 12}, {17, 15.5}}));
}

void drawHelp(QPainter& p, Pencils& pencils) {
    pencils.line();
    p.drawEllipse(QPointF(12, 12), 9, 9);
    QPainterPath mark(QPointF(9.2, 9.6));
    mark.cubicTo(9.4, 5.8, 15, 6.0, 14.9, 9.6);
    mark.cubicTo(14.8, 11.8, 12, 11.8, 12, 14);
    p.drawPath(mark);
    pencils.area();
    p.drawEllipse(QPointF(12, 17), 1.15, 1.15);
}

void drawNote(QPainter& p, Pencils& pencils, QPointF head) {
    pencils.area();
    p.drawEllipse(head, 2.6, 2.1);
    pencils.line();
    const QPointF foot = head + QPointF(2.2, -0.3);
    const QPointF top = foot + QPointF(0, -9.5);
    p.drawLine(foot, top);
    QPainterPath flag(top);
    flag.quadTo(top + QPointF(0.4, 2.4), top + QPointF(3.4, 3.6));
    p.drawPath(flag);
}

void drawPlaylist(QPainter& p, Pencils& pencils) {
    pencils.line();
    p.drawLine(QPointF(3.5, 5), QPointF(15, 5));
    p.drawLine(QPointF(3.5, 10), QPointF(12.5, 10));
    p.drawLine(QPointF(3.5, 15), QPointF(9.5, 15));
    drawNote(p, pencils, {14.6, 18.6});
}

void drawPreferences(QPainter& p, Pencils& pencils) {
    const std::pair<qreal, qreal> sliders[] = {{6, 15.5}, {12, 8}, {18, 13.5}};
    for (const auto& [y, knob] : sliders) {
        pencils.line();
        p.drawLine(QPointF(3.5, y), QPointF(20.5, y));
        pencils.paint(blue);
        p.drawEllipse(QPointF(knob, y), 2.5, 2.5);
    }
}

void drawSearch(QPainter& p, Pencils& pencils) {
    pencils.line();
    p.drawEllipse(QPointF(10, 10), 6.2, 6.2);
    pencils.line(2.6);
    p.drawLine(QPointF(15.2, 15.2), QPointF(20, 20));
}

void drawPlay(QPainter& p, Pencils& pencils) {
    pencils.paint(green, 1.6);
    p.drawPolygon(QPolygonF({{7, 4.5}, {19.5, 12}, {7, 19.5}}));
}

void drawStop(QPainter& p, Pencils& pencils) {
    pencils.paint(red, 1.6);
    p.drawRoundedRect(QRectF(5.5, 5.5, 13, 13), 1.5, 1.5);
}

void drawPause(QPainter& p, Pencils& pencils) {
    pencils.paint(amber, 1.6);
    for (const qreal x : {6.0, 13.5}) {
        p.drawRoundedRect(QRectF(x, 5, 4.5, 14), 1, 1);
    }
}

/// Draws an arrow that points at a bar, to the right if `forward` is 1 and to the left if it is -1.
void drawSkip(QPainter& p, Pencils& pencils, qreal forward) {
    pencils.paint(blue, 1.6);
    const auto x = [forward](qreal fromMiddle) {
        return 12 + forward * fromMiddle;
    };
    p.drawPolygon(QPolygonF({{x(-7), 5}, {x(4), 12}, {x(-7), 19}}));
    p.drawPolygon(QPolygonF({{x(5), 5}, {x(7.5), 5}, {x(7.5), 19}, {x(5), 19}}));
}

void drawEject(QPainter& p, Pencils& pencils) {
    pencils.paint(silver, 1.6);
    p.drawPolygon(QPolygonF({{12, 4.5}, {19.5, 14}, {4.5, 14}}));
    p.drawRoundedRect(QRectF(4.5, 16.5, 15, 3), 1, 1);
}

void drawDisc(QPainter& p, Pencils& pencils) {
    pencils.paint(silver);
    QPainterPath disc;
    disc.addEllipse(QPointF(12, 12), 9.4, 9.4);
    disc.addEllipse(QPointF(12, 12), 1.5, 1.5);
    p.drawPath(disc);
    // Draws two opposite reflections.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 255, 255, 150));
    p.drawPie(QRectF(4, 4, 16, 16), 100 * 16, 40 * 16);
    p.drawPie(QRectF(4, 4, 16, 16), 280 * 16, 40 * 16);
    pencils.paint(blue, 1.0);
    QPainterPath hub;
    hub.addEllipse(QPointF(12, 12), 3.6, 3.6);
    hub.addEllipse(QPointF(12, 12), 1.5, 1.5);
    p.drawPath(hub);
}

QPainterPath folderBack() {
    QPainterPath path(QPointF(2.5, 19.5));
    path.lineTo(2.5, 5.5);
    path.lineTo(9, 5.5);
    path.lineTo(11, 8);
    path.lineTo(21, 8);
    path.lineTo(21, 19.5);
    path.closeSubpath();
    return path;
}

void drawFolder(QPainter& p, Pencils& pencils) {
    pencils.paint(amber);
    p.drawPath(folderBack());
    p.drawLine(QPointF(2.5, 11), QPointF(21, 11));
}

void drawFolderOpen(QPainter& p, Pencils& pencils) {
    pencils.paint(amber.darker(115));
    p.drawPath(folderBack());
    pencils.paint(amber.lighter(112));
    p.drawPolygon(QPolygonF({{2.5, 19.5}, {6.3, 11}, {23, 11}, {19.6, 19.5}}));
}

void drawHand(QPainter& p, Pencils& pencils) {
    pencils.line(1.5);
    QPainterPath hand(QPointF(8.2, 12.5));
    hand.lineTo(8.2, 5.8);
    hand.cubicTo(8.2, 4.0, 10.6, 4.0, 10.6, 5.8);
    hand.lineTo(10.6, 4.6);
    hand.cubicTo(10.6, 2.8, 13.2, 2.8, 13.2, 4.6);
    hand.lineTo(13.2, 5.6);
    hand.cubicTo(13.2, 3.9, 15.8, 3.9, 15.8, 5.6);
    hand.lineTo(15.8, 7.4);
    hand.cubicTo(15.8, 5.8, 18.3, 5.8, 18.3, 7.4);
    hand.lineTo(18.3, 15.5);
    hand.cubicTo(18.3, 19.0, 16.2, 21.2, 13.0, 21.2);
    hand.cubicTo(9.6, 21.2, 8.6, 19.2, 6.6, 16.0);
    hand.lineTo(4.6, 12.8);
    hand.cubicTo(3.8, 11.2, 5.8, 10.2, 6.8, 11.4);
    hand.closeSubpath();
    p.drawPath(hand);
    for (const qreal x : {10.6, 13.2, 15.8}) {
        p.drawLine(QPointF(x, 6.5), QPointF(x, 11));
    }
}

/// Draws a case for discs, seen from the front.
void drawCollection(QPainter& p, Pencils& pencils, bool open) {
    pencils.paint(open ? blue.lighter(125) : blue);
    p.drawRoundedRect(QRectF(3, 3, 18, 18), 2, 2);
    p.setBrush(Qt::white);
    QPainterPath disc;
    disc.addEllipse(QPointF(13, 12), 6.2, 6.2);
    disc.addEllipse(QPointF(13, 12), 1.7, 1.7);
    p.drawPath(disc);
    p.drawLine(QPointF(5.6, 3), QPointF(5.6, 21));
}

void drawItem(QPainter& p, Pencils& pencils, bool open) {
    if (open) {
        pencils.paint(green.lighter(140), 1.0);
        p.drawRoundedRect(QRectF(4, 2, 16, 20), 2, 2);
    }
    drawNote(p, pencils, {10, 17});
}

void drawProgram(QPainter& p, Pencils& pencils) {
    drawDisc(p, pencils);
    pencils.paint(green, 1.4);
    p.drawPolygon(QPolygonF({{16, 12}, {23, 17}, {16, 22}}));
}

void drawMore(QPainter& p, Pencils& pencils) {
    pencils.line();
    for (const qreal x : {6.5, 13.0}) {
        p.drawPolyline(QPolygonF({{x, 6}, {x + 5, 12}, {x, 18}}));
    }
}

} // namespace

void drawSymbol(QPainter& painter, Symbol symbol, QIcon::Mode mode) {
    Pencils pencils(painter, mode);
    switch (symbol) {
    case Symbol::exit:
        return drawExit(painter, pencils);
    case Symbol::help:
        return drawHelp(painter, pencils);
    case Symbol::playlist:
        return drawPlaylist(painter, pencils);
    case Symbol::preferences:
        return drawPreferences(painter, pencils);
    case Symbol::search:
        return drawSearch(painter, pencils);
    case Symbol::play:
        return drawPlay(painter, pencils);
    case Symbol::stop:
        return drawStop(painter, pencils);
    case Symbol::pause:
        return drawPause(painter, pencils);
    case Symbol::nextTrack:
        return drawSkip(painter, pencils, 1);
    case Symbol::previousTrack:
        return drawSkip(painter, pencils, -1);
    case Symbol::eject:
        return drawEject(painter, pencils);
    case Symbol::disc:
        return drawDisc(painter, pencils);
    case Symbol::folder:
    case Symbol::group:
        return drawFolder(painter, pencils);
    case Symbol::groupOpen:
        return drawFolderOpen(painter, pencils);
    case Symbol::hand:
        return drawHand(painter, pencils);
    case Symbol::collection:
        return drawCollection(painter, pencils, false);
    case Symbol::collectionOpen:
        return drawCollection(painter, pencils, true);
    case Symbol::item:
        return drawItem(painter, pencils, false);
    case Symbol::itemOpen:
        return drawItem(painter, pencils, true);
    case Symbol::program:
        return drawProgram(painter, pencils);
    case Symbol::more:
        return drawMore(painter, pencils);
    }
}

} // namespace sonarith
