// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/ini_file.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>
#include <QVariant>

namespace sonarith {

namespace {

/// Converts a value to a text if it is UTF-8, so that users can read it in the file; otherwise to
/// bytes.
QVariant variantOf(const std::string& value) {
    const QString text = QString::fromStdString(value);
    if (text.toStdString() == value) {
        return text;
    }
    return QByteArray::fromStdString(value);
}

std::string textOf(const QVariant& stored) {
    if (stored.typeId() == QMetaType::QByteArray) {
        return stored.toByteArray().toStdString();
    }
    if (stored.typeId() == QMetaType::QStringList) {
        // QSettings reads a value with unquoted commas as a list. A user who edits the file may
        // leave such a value.
        return stored.toStringList().join(QStringLiteral(", ")).toStdString();
    }
    return stored.toString().toStdString();
}

/// The absolute path of the existing file that `path` names, with all symbolic links resolved. If
/// there is no such file, for example because the target of a link is missing: `path` itself.
QString fileMeantBy(const QString& path) {
    const QString real = QFileInfo(path).canonicalFilePath();
    return real.isEmpty() ? path : real;
}

QString unfinishedName(const QString& path) {
    return path + QStringLiteral(".unfinished");
}

bool makeEmptyFile(const QString& path, const QFileInfo& modeOf) {
    QFile::remove(path);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           (!modeOf.exists() || file.setPermissions(modeOf.permissions()));
}

IniValues valuesOf(const QSettings& file) {
    IniValues values;
    for (const QString& name : file.allKeys()) {
        values.emplace(name, textOf(file.value(name)));
    }
    return values;
}

/// Writes the file and does not check the result. Returns the values that a later read of the file
/// must return.
IniValues writeUnchecked(const QString& path, const IniValues& values) {
    QSettings file(path, QSettings::IniFormat);
    // QSettings writes the lines in the order in which the keys are set. The keys are set in the
    // order of their names here, for users who read the file.
    std::vector<QString> names;
    for (const auto& [name, text] : values) {
        names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    for (const QString& name : names) {
        file.setValue(name, variantOf(values.at(name)));
    }
    file.sync(); // writes the file
    return valuesOf(file);
}

/// Whether the file is empty or ends with a complete line. If only the last line end is missing,
/// writeIniFile() finds no difference when it compares the values, but checkStoreFile() would treat
/// the file as incomplete.
bool endsWithALine(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) &&
           (file.size() == 0 || (file.seek(file.size() - 1) && file.read(1) == "\n"));
}

bool rename(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

void flushFolder(const QString& folder) {
    const int opened =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0) {
        ::fsync(opened); // failures are ignored
        ::close(opened);
    }
}

} // namespace

IniValues readIniFile(const QString& path) {
    return valuesOf(QSettings(path, QSettings::IniFormat));
}

bool writeIniFile(const QString& path, const IniValues& values) {
    const QString target = fileMeantBy(path);
    const QFileInfo old(target);
    if (old.exists() && !old.isWritable()) {
        return false;
    }
    // QSettings (6.4) replaces its target and reports success even if a full disk stored only a
    // part of the file. So the file is written under a temporary name and checked before it
    // replaces the target. It is checked under a second temporary name, because QSettings would
    // return from its cache what it wrote under the first name.
    static int writes = 0;
    const QString written = unfinishedName(target);
    const QString checked = written + QString::number(++writes);
    bool done = makeEmptyFile(written, old);
    if (done) {
        const IniValues expected = writeUnchecked(written, values);
        done = rename(written, checked) && endsWithALine(checked) &&
               readIniFile(checked) == expected && rename(checked, target);
    }
    if (!done) {
        QFile::remove(written);
        QFile::remove(checked);
    }
    flushFolder(old.path());
    return done;
}

/// QSettings locks a file with a lock file while it writes. A process may be killed before it has
/// written its process number to the lock file. The lock file would then delay the next process's
/// first write by half a minute. The kernel's lock on the lock file shows whether a running process
/// is writing.
void removeUnfinishedIniFiles(const QString& path) {
    const QString written = unfinishedName(fileMeantBy(path));
    const QString lock = written + QStringLiteral(".lock");
    const int opened =
        ::open(QFile::encodeName(lock).constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
    const bool running = opened >= 0 && ::flock(opened, LOCK_EX | LOCK_NB) != 0;
    if (!running) {
        const QFileInfo file(written);
        const QDir folder = file.dir();
        for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden)) {
            if (name.startsWith(file.fileName())) {
                QFile::remove(folder.filePath(name));
            }
        }
    }
    if (opened >= 0) {
        ::close(opened);
    }
}

} // namespace sonarith
