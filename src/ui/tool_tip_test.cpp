// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tool_tip.h"

#include <QTextDocument>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

/// The text that the user sees for a tool tip.
QString shown(const QString& toolTip) {
    if (!Qt::mightBeRichText(toolTip)) {
        return toolTip;
    }
    QTextDocument document;
    document.setHtml(toolTip);
    return document.toPlainText();
}

TEST(PlainToolTip, ShowsEveryTextAsPlainText) {
    for (const char* text :
         {"one.mp3", "c:\\Große Lieder\\a & b.wav", "<b>x</b>.mp3", "<img src=\"/etc/passwd\">.wav",
          "a <i>b</i>  &amp; &lt;c.wav", "<br>%1<br>", ""}) {
        const QString expected = QString::fromUtf8(text);
        EXPECT_EQ(shown(plainToolTip(expected)), expected) << text;
    }
}

TEST(PlainToolTip, DoesNotChangeATextWithoutMarkup) {
    EXPECT_EQ(plainToolTip(QStringLiteral("a & b < c.wav")), QStringLiteral("a & b < c.wav"));
}

} // namespace
} // namespace sonarith
