// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_message_boxes.h"

#include <QMessageBox>

#include "platform/qt/dialog_loop.h"
#include "platform/qt/text.h"

namespace sonarith {
namespace {

QMessageBox::Icon iconOf(BoxIcon icon) {
    switch (icon) {
    case BoxIcon::critical:
        return QMessageBox::Critical;
    case BoxIcon::warning:
    case BoxIcon::exclamation:
        return QMessageBox::Warning;
    case BoxIcon::information:
        return QMessageBox::Information;
    case BoxIcon::none:
        break;
    }
    return QMessageBox::NoIcon;
}

BoxAnswer answerOf(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return BoxAnswer::yes;
    case QMessageBox::No:
        return BoxAnswer::no;
    case QMessageBox::Cancel:
        return BoxAnswer::cancel;
    default:
        return BoxAnswer::ok;
    }
}

} // namespace

BoxAnswer QtMessageBoxes::show(const std::string& text, BoxIcon icon, BoxButtons buttons,
                               const std::string& title) {
    const QMessageBox::StandardButtons shown =
        buttons == BoxButtons::ok ? QMessageBox::StandardButtons(QMessageBox::Ok)
                                  : QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    const QString heading = toQString(title.empty() ? defaultTitle_ : title);
    QMessageBox box(iconOf(icon), heading, toQString(text), shown, dialogParent());
    box.setObjectName(QStringLiteral("messageBox"));
    box.setAccessibleName(heading);
    // The text is plain text, because file names in it must not be interpreted as markup.
    box.setTextFormat(Qt::PlainText);
    box.setEscapeButton(buttons == BoxButtons::ok ? QMessageBox::Ok : QMessageBox::Cancel);
    return answerOf(runDialog(box));
}

} // namespace sonarith
