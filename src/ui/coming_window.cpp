// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/coming_window.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "platform/qt/text.h"
#include "ui/fixed_text.h"

namespace sonarith {
namespace {

void layOutComing(Form& form, QWidget& client) {
    QLabel* caption = makeFixedText(toQString(form.caption()), nullptr, &client);
    caption->setObjectName(QStringLiteral("caption"));
    QFont large = caption->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setWeight(QFont::DemiBold);
    caption->setFont(large);
    QLabel* sentence =
        makeFixedText(QObject::tr("This window comes with a later version."), nullptr, &client);
    sentence->setObjectName(QStringLiteral("sentence"));
    sentence->setWordWrap(true);
    auto* close = new QPushButton(QObject::tr("&Close"), &client);
    close->setObjectName(QStringLiteral("close"));
    close->setAccessibleName(QObject::tr("Close"));
    QObject::connect(close, &QPushButton::clicked, &client, [&form] { form.unload(); });

    auto* rows = new QVBoxLayout(&client);
    // Device-independent pixels: the air of a small dialog.
    rows->setContentsMargins(18, 16, 18, 14);
    rows->setSpacing(8);
    rows->addWidget(caption);
    rows->addWidget(sentence);
    rows->addStretch();
    rows->addWidget(close, 0, Qt::AlignRight);
}

} // namespace

WindowLayout comingWindow(Form& form) {
    return {.form = form, .layOut = [&form](FormWindow& window) {
                layOutComing(form, window.client());
            }};
}

} // namespace sonarith
