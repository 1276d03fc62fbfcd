// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tree_delegate.h"

#include <algorithm>

#include <QPainter>

namespace sonarith {
namespace {

/// Margin above and below a row's text and picture, in device-independent pixels.
constexpr int rowPadding = 2;
/// The opacity of a node that is dragged by keys. File managers also paint cut items paler.
constexpr double carriedOpacity = 0.4;

void paintDropMark(QPainter& painter, const QStyleOptionViewItem& option) {
    const QColor color = option.palette.color(QPalette::Active, QPalette::Highlight);
    QColor wash = color;
    wash.setAlphaF(0.25F);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.5));
    painter.setBrush(wash);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 3, 3);
    painter.restore();
}

} // namespace

void TreeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const NodeRef node = model_.nodeAt(index);
    // The selected node is not painted as a drop target: a press of the left button selects a node
    // and also makes this node the drop highlight, even if no drag follows.
    if (node == tree_.dropHighlight() && node != tree_.selectedItem()) {
        paintDropMark(*painter, option);
    }
    painter->save();
    painter->setOpacity(node == carried_ ? carriedOpacity : 1.0);
    QStyledItemDelegate::paint(painter, option, index);
    painter->restore();
}

QSize TreeDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    const int content = std::max(option.fontMetrics.height(), option.decorationSize.height());
    size.setHeight(content + 2 * rowPadding);
    return size;
}

} // namespace sonarith
