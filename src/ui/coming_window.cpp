// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/coming_window.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/text.h"

namespace sonarith {

ComingWindow::ComingWindow(Form& form) : adapter_(form, *this, *this) {
    const QString text = tr("This window comes with a later version.");
    auto* caption = new QLabel(toQString(form.caption()), this);
    caption->setObjectName(QStringLiteral("caption"));
    caption->setAccessibleName(caption->text());
    caption->setTextFormat(Qt::PlainText);
    QFont large = caption->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setWeight(QFont::DemiBold);
    caption->setFont(large);
    auto* sentence = new QLabel(text, this);
    sentence->setObjectName(QStringLiteral("sentence"));
    sentence->setAccessibleName(text);
    sentence->setWordWrap(true);
    auto* close = new QPushButton(tr("&Close"), this);
    close->setObjectName(QStringLiteral("close"));
    close->setAccessibleName(tr("Close"));
    connect(close, &QPushButton::clicked, this, [&form] { form.unload(); });

    auto* rows = new QVBoxLayout(this);
    // Device-independent pixels: the air of a small dialog.
    rows->setContentsMargins(18, 16, 18, 14);
    rows->setSpacing(8);
    rows->addWidget(caption);
    rows->addWidget(sentence);
    rows->addStretch();
    rows->addWidget(close, 0, Qt::AlignRight);
    resize(sizeHint().expandedTo(QSize(320, 130)));
}

void ComingWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace sonarith
