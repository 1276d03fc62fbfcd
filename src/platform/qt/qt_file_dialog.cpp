// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_file_dialog.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

#include "platform/qt/dialog_loop.h"
#include "platform/qt/text.h"

namespace sonarith {
namespace {

/// Converts each pair of a caption and its patterns to Qt's notation: "WAV, MP3|*.wav;*.mp3"
/// becomes "WAV, MP3 (*.wav *.mp3)".
QStringList nameFilters(const std::string& filter) {
    const QStringList parts = toQString(filter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        filters += QStringLiteral("%1 (%2)").arg(parts[i], patterns);
    }
    return filters;
}

QString machineText(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

} // namespace

Result<std::string> QtFileDialog::open(const FileDialogRequest& request) {
    QFileDialog dialog(dialogParent());
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return show(dialog, request);
}

Result<std::string> QtFileDialog::save(const FileDialogRequest& request) {
    QFileDialog dialog(dialogParent());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    return show(dialog, request);
}

Result<std::string> QtFileDialog::show(QFileDialog& dialog, const FileDialogRequest& request) {
    if (!request.title.empty()) {
        dialog.setWindowTitle(toQString(request.title));
    }
    dialog.setObjectName(QStringLiteral("fileDialog"));
    dialog.setAccessibleName(dialog.windowTitle());
    // Qt's own dialog is used on every desktop, because a desktop's dialog may have a
    // case-sensitive filter and use other keys.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    if (!request.filter.empty()) {
        dialog.setNameFilters(nameFilters(request.filter));
    }
    dialog.setDefaultSuffix(toQString(request.defaultExtension));
    openIn(dialog, request);
    const bool accepted = runDialog(dialog) == QDialog::Accepted;
    folder_ = QFile::encodeName(dialog.directory().absolutePath()).toStdString();
    const QStringList files = dialog.selectedFiles();
    if (!accepted || files.isEmpty()) {
        return {ErrorNumber::dialogCancelled, "Cancel was selected."};
    }
    std::string path = toLogic_(QFile::encodeName(files.front()).toStdString());
    if (path.empty()) {
        return {ErrorNumber::badFileName, "Bad file name or number"};
    }
    return path;
}

/// Sets the folder that the dialog shows first, and the name in its text field.
void QtFileDialog::openIn(QFileDialog& dialog, const FileDialogRequest& request) {
    if (!folder_.empty()) {
        dialog.setDirectory(machineText(folder_));
    }
    const std::string start =
        request.initialFolder.empty() ? std::string() : toMachine_(request.initialFolder);
    if (!start.empty()) {
        const QFileInfo initial(machineText(start));
        // If the path is not that of a folder, the folder that contains it is used.
        dialog.setDirectory(initial.isDir() ? initial.absoluteFilePath() : initial.absolutePath());
    }
    if (request.fileName.empty()) {
        return;
    }
    const bool isPath = request.fileName.find_first_of("\\:") != std::string::npos;
    const QString name =
        isPath ? machineText(toMachine_(request.fileName)) : toQString(request.fileName);
    if (isPath && !name.isEmpty()) {
        dialog.setDirectory(QFileInfo(name).absolutePath());
    }
    // In the dialog's text field, quotes separate several names, so a name with quotes cannot be
    // shown in the field; the user can select the file in the list.
    if (!name.isEmpty() && !name.contains(QLatin1Char('"'))) {
        dialog.selectFile(name);
    }
}

} // namespace sonarith
