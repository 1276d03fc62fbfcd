// SPDX-License-Identifier: GPL-3.0-or-later
// Paints a line of the header display in two columns. The label is padded with blanks for one
// particular font; here the value starts at the same position in every font.
#pragma once

#include <QStyledItemDelegate>

namespace sonarith {

class HeaderLineDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

/// Splits a line at the end of its run of blanks into label and value. A line without two
/// consecutive blanks consists of a label only.
struct HeaderLine {
    QString label;
    QString value;
};
[[nodiscard]] HeaderLine splitHeaderLine(const QString& line);

} // namespace sonarith
