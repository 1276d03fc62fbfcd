// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/header_line_delegate.h"

#include <QApplication>
#include <QPainter>

namespace sonarith {
namespace {

/// The column of the values starts after the width of this text, which is the longest label and
/// some blanks.
constexpr auto longestLabel = "MpegVersion    ";
constexpr int sideMargin = 4; // device-independent pixels

} // namespace

HeaderLine splitHeaderLine(const QString& line) {
    const qsizetype blanks = line.indexOf(QLatin1String("  "));
    if (blanks < 0) {
        return {line, {}};
    }
    qsizetype value = blanks;
    while (value < line.size() && line[value] == QLatin1Char(' ')) {
        ++value;
    }
    return {line.left(blanks), line.mid(value)};
}

void HeaderLineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    QStyleOptionViewItem shown = option;
    initStyleOption(&shown, index);
    const HeaderLine line = splitHeaderLine(shown.text);
    shown.text.clear();
    const QStyle* style = shown.widget ? shown.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &shown, painter, shown.widget);
    const bool selected = shown.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setFont(shown.font);
    painter->setPen(
        shown.palette.color(selected ? QPalette::HighlightedText : QPalette::WindowText));
    QRect place = shown.rect.adjusted(sideMargin, 0, -sideMargin, 0);
    painter->drawText(place, Qt::AlignVCenter | Qt::TextSingleLine, line.label);
    place.setLeft(place.left() + shown.fontMetrics.horizontalAdvance(QLatin1String(longestLabel)));
    painter->drawText(place, Qt::AlignVCenter | Qt::TextSingleLine, line.value);
    painter->restore();
}

} // namespace sonarith
