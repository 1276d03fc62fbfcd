// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/label_view.h"

#include <QPainter>
#include <QStyle>

#include "platform/qt/text.h"
#include "ui/tool_tip.h"

namespace sonarith {

namespace {

/// The opacity of a secondary text. With this value, black text on light grey keeps a contrast of
/// eight to one.
constexpr double secondaryOpacity = 0.7;

} // namespace

LabelView::LabelView(Label& model, QString label, Cut cut, QWidget* parent, Pace pace)
    : QLabel(parent),
      model_(model),
      cut_(cut),
      view_(
          model, *this, [&model] { return model.caption(); }, std::move(label),
          [this](Property which) {
              if (concerns(which, Property::caption)) {
                  showCaption();
              }
              if (concerns(which, Property::caption, Property::toolTip)) {
                  showToolTip();
              }
          },
          Placement::elsewhere, pace) {}

void LabelView::showCaption() {
    // The caption is plain text, because paths and names must not be interpreted as markup.
    setTextFormat(Qt::PlainText);
    setText(toQString(model_.caption()));
}

/// Shows the whole text as the tool tip if the view may shorten the text and the control has no
/// tool tip.
void LabelView::showToolTip() {
    if (cut_ != Cut::never && model_.toolTip().empty()) {
        setToolTip(plainToolTip(text()));
    }
}

void LabelView::setSecondary() {
    secondary_ = true;
    update();
}

QSize LabelView::sizeHint() const {
    // An empty label keeps the height of a line, so that a bar keeps its height when the text of a
    // label in it becomes empty.
    return QLabel::sizeHint().expandedTo(QSize(0, fontMetrics().height()));
}

QSize LabelView::minimumSizeHint() const {
    return cut_ == Cut::never ? QLabel::minimumSizeHint() : QSize(0, sizeHint().height());
}

void LabelView::paintEvent(QPaintEvent* event) {
    if (cut_ == Cut::never) {
        QLabel::paintEvent(event);
        return;
    }
    const auto mode = cut_ == Cut::middle ? Qt::ElideMiddle : Qt::ElideRight;
    const QString shown = fontMetrics().elidedText(text(), mode, contentsRect().width());
    QPainter painter(this);
    painter.setOpacity(secondary_ ? secondaryOpacity : 1);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                          isEnabled(), shown, foregroundRole());
}

} // namespace sonarith
