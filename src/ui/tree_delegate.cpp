// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_delegate.h"

#include <algorithm>

#include <QPainter>

namespace sonarith {
namespace {

/// Air above and below a row's text, in device-independent pixels.
constexpr int rowPadding = 2;

} // namespace

void TreeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const NodeRef& highlighted = tree_.dropHighlight();
    // A node that is selected as well looks selected: every press highlights the node it selects.
    const bool marked =
        highlighted && highlighted != tree_.selectedItem() && model_.nodeAt(index) == highlighted;
    if (marked) {
        const QColor color = option.palette.color(QPalette::Active, QPalette::Highlight);
        QColor wash = color;
        wash.setAlphaF(0.25F);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(color, 1.5));
        painter->setBrush(wash);
        painter->drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 3, 3);
        painter->restore();
    }
    QStyledItemDelegate::paint(painter, option, index);
}

QSize TreeDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    const int content = std::max(option.fontMetrics.height(), option.decorationSize.height());
    size.setHeight(content + 2 * rowPadding);
    return size;
}

} // namespace sonarith
