// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/notice_bar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

#include "ui/tool_tip.h"

namespace sonarith {

namespace {

QToolButton* makeButton(const QString& name, const QString& text, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setAccessibleName(text);
    button->setToolTip(text);
    button->setAutoRaise(true);
    // Only the tab key moves the focus to the button; a click leaves the focus where it is.
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

NoticeBar::NoticeBar(QWidget* parent) : QWidget(parent), line_(new QLabel(this)) {
    setObjectName(QStringLiteral("noticeBar"));
    setAccessibleName(tr("Notice"));
    line_->setObjectName(QStringLiteral("notice"));
    line_->setAccessibleName(tr("Notice"));
    line_->setTextFormat(Qt::PlainText);
    line_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* details = makeButton(QStringLiteral("noticeDetails"), tr("Show all notices"), this);
    details->setText(QStringLiteral("..."));
    connect(details, &QToolButton::clicked, this, [this] {
        if (onDetails) {
            onDetails();
        }
    });
    auto* close = makeButton(QStringLiteral("noticeDismiss"), tr("Dismiss the notice"), this);
    close->setText(QString(QChar(0x00D7))); // multiplication sign
    connect(close, &QToolButton::clicked, this, [this] { dismiss(); });

    auto* columns = new QHBoxLayout(this);
    // Device-independent pixels. The left margin is that of the main window's bars.
    columns->setContentsMargins(6, 2, 2, 2);
    columns->setSpacing(2);
    columns->addWidget(line_, 1);
    columns->addWidget(details);
    columns->addWidget(close);
    setVisible(false);
}

void NoticeBar::show(const QString& text) {
    ++sinceDismissed_;
    text_ = text;
    showText();
    setVisible(true);
    QAccessibleEvent announcement(line_, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void NoticeBar::dismiss() {
    sinceDismissed_ = 0;
    setVisible(false);
}

void NoticeBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    showText();
}

void NoticeBar::showText() {
    const QString counted =
        sinceDismissed_ > 1 ? QStringLiteral("(%1) %2").arg(sinceDismissed_).arg(text_) : text_;
    line_->setText(line_->fontMetrics().elidedText(counted, Qt::ElideRight, line_->width()));
    line_->setAccessibleName(counted);
    line_->setToolTip(plainToolTip(counted));
}

} // namespace sonarith
