// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tool_tip.h"

#include <QTextDocument>

namespace sonarith {

QString plainToolTip(const QString& text) {
    if (!Qt::mightBeRichText(text)) {
        return text;
    }
    // Blanks and lines as they are, and none broken that is not.
    return QStringLiteral("<span style=\"white-space: pre\">%1</span>").arg(text.toHtmlEscaped());
}

} // namespace sonarith
