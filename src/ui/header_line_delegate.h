// SPDX-License-Identifier: GPL-3.0-or-later
// The playlist editor has a list that shows the fields of an MP3 file's header. This delegate
// paints each line of that list in two columns: a label and a value. The logic pads the label with
// blanks that align the values only in one particular font; this delegate aligns the values in
// every font.
#pragma once

#include <QStyledItemDelegate>

namespace sonarith {

class HeaderLineDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

/// A line, split into label and value. The first run of two or more blanks separates them; a line
/// without such a run consists of a label only.
struct HeaderLine {
    QString label;
    QString value;
};
[[nodiscard]] HeaderLine splitHeaderLine(const QString& line);

} // namespace sonarith
