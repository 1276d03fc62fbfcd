// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tool_tip.h"

#include <QTextDocument>

namespace sonarith {

QString plainToolTip(const QString& text) {
    if (!Qt::mightBeRichText(text)) {
        return text;
    }
    // This style keeps blanks and line breaks, and adds no line breaks.
    return QStringLiteral("<span style=\"white-space: pre\">%1</span>").arg(text.toHtmlEscaped());
}

} // namespace sonarith
