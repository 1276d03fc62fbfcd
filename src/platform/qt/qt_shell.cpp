// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_shell.h"

#include <filesystem>

#include <QApplication>
#include <QDesktopServices>
#include <QMessageBox>
#include <QStyle>
#include <QUrl>

#include "platform/qt/dialog_loop.h"
#include "platform/qt/primary_screen.h"
#include "platform/qt/text.h"
#include "platform/qt/twips.h"

namespace sonarith {
namespace {

/// Encodes the path byte by byte, so that even a path that is not UTF-8 reaches the viewer
/// unchanged.
void openInDesktopViewer(const std::string& machinePath) {
    const QByteArray encoded = QByteArray::fromStdString(machinePath).toPercentEncoding("/");
    QDesktopServices::openUrl(QUrl::fromEncoded("file://" + encoded));
}

} // namespace

QtShell::QtShell(std::string title, BuiltWith builtWith, ToMachinePath toMachinePath,
                 Notices& notices, ShowPages showPages, OpenFile openFile)
    : title_(std::move(title)),
      builtWith_(std::move(builtWith)),
      toMachinePath_(std::move(toMachinePath)),
      notices_(notices),
      showPages_(std::move(showPages)),
      openFile_(openFile ? std::move(openFile) : OpenFile(openInDesktopViewer)) {}

Twips QtShell::screenWidth() const {
    return toTwips(primaryScreen().width());
}

Twips QtShell::screenHeight() const {
    return toTwips(primaryScreen().height());
}

void QtShell::showHelp(const std::string& path) {
    const std::string machinePath = toMachinePath_(path);
    std::error_code ignored;
    if (std::filesystem::is_regular_file(machinePath, ignored)) {
        openFile_(machinePath);
        return;
    }
    if (showPages_()) {
        return;
    }
    notices_.report(
        {"The help file does not exist: " + (machinePath.empty() ? path : machinePath)});
}

std::uint64_t QtShell::windowHandle(const Control& control) const {
    const QString name = toQString(control.name());
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (const auto* view = window->findChild<const QWidget*>(name)) {
            return view->effectiveWinId();
        }
    }
    return 0;
}

void QtShell::showAboutBox() {
    QMessageBox box(QMessageBox::NoIcon, toQString(title_), toQString(title_), QMessageBox::Ok,
                    dialogParent());
    box.setObjectName(QStringLiteral("aboutBox"));
    box.setAccessibleName(toQString(title_));
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(
        QStringLiteral("Turns the tracks of an audio CD and MP3 files into WAV files, plays CDs, "
                       "keeps a playlist, edits the tags of MP3 files, and finds audio files.\n\n"
                       "Version %1\n"
                       "Free software under the GNU General Public License, version 3 or later.\n\n"
                       "Libraries: Qt %2, %3")
            .arg(toQString(builtWith_.version), QString::fromLatin1(qVersion()),
                 toQString(builtWith_.libraries)));
    // The size that message boxes use for their own pictures.
    const int side = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    box.setIconPixmap(QApplication::windowIcon().pixmap(QSize(side, side), box.devicePixelRatio()));
    static_cast<void>(runDialog(box));
}

} // namespace sonarith
