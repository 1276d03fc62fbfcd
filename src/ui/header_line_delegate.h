// SPDX-License-Identifier: GPL-3.0-or-later
// Paints a line of the header display in two columns. Its label is padded with blanks for one
// particular font; here the value begins at the same place in every font.
#pragma once

#include <QStyledItemDelegate>

namespace sonarith {

class HeaderLineDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

/// A line at the end of its run of blanks: the label, and the value. A line without two blanks in a
/// row is all label.
struct HeaderLine {
    QString label;
    QString value;
};
[[nodiscard]] HeaderLine splitHeaderLine(const QString& line);

} // namespace sonarith
