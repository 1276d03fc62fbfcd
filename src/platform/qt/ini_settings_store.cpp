// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/ini_settings_store.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>
#include <QVariant>

#include "platform/text/store_file_check.h"

namespace sonarith {

namespace {

QString settingName(const std::string& section, const std::string& key) {
    return QString::fromStdString(section) + QLatin1Char('/') + QString::fromStdString(key);
}

/// Text as the file's own text where it is UTF-8, so that people can read it; other bytes as bytes.
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
        // Unquoted commas, as a person's editor leaves them, read as a list.
        return stored.toStringList().join(QStringLiteral(", ")).toStdString();
    }
    return stored.toString().toStdString();
}

/// Nothing if it cannot be read. What is no regular file reads as a byte that no settings file
/// holds.
std::optional<QByteArray> bytesOf(const QString& path) {
    // Not to wait for the other end of a pipe that somebody put there.
    const int opened =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (opened < 0) {
        return std::nullopt;
    }
    QByteArray bytes("\0", 1);
    struct stat status {};
    if (::fstat(opened, &status) == 0 && S_ISREG(status.st_mode)) {
        QFile file;
        file.open(opened, QIODevice::ReadOnly);
        bytes = file.read(static_cast<qint64>(longestStoreFileBytes) + 1);
    }
    ::close(opened);
    return bytes;
}

/// Gives the file a name of its own beside its old one; never that of an earlier one.
bool putAside(const QString& path) {
    // Nobody keeps a thousand damaged files; without a bound a full folder could hold the start up.
    constexpr int mostKept = 1000;
    for (int number = 1; number <= mostKept; ++number) {
        const QString aside = path + QStringLiteral(".damaged-%1").arg(number);
        const QFileInfo taken(aside);
        if (!taken.exists() && !taken.isSymLink()) {
            return ::renameat2(AT_FDCWD, QFile::encodeName(path).constData(), AT_FDCWD,
                               QFile::encodeName(aside).constData(), RENAME_NOREPLACE) == 0 ||
                   QFile::rename(path, aside); // where the file system knows no exclusive rename
        }
    }
    return false;
}

/// QSettings locks the file by a second one while it writes. Killed in the instant before its
/// number stood in there, a program leaves a lock that would hold up the next one's first write for
/// half a minute. The kernel's lock on it tells whether anybody still lives who holds it.
void removeLockOfTheDead(const QString& path) {
    const QByteArray lock = QFile::encodeName(path + QStringLiteral(".lock"));
    const int opened = ::open(lock.constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
    if (opened >= 0) {
        if (::flock(opened, LOCK_EX | LOCK_NB) == 0) {
            ::unlink(lock.constData());
        }
        ::close(opened);
    }
}

void flushFolder(const QString& folder) {
    const int opened =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0) {
        ::fsync(opened); // a failure is silent, as all are here
        ::close(opened);
    }
}

} // namespace

QString IniSettingsStore::defaultFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/sonarith");
}

IniSettingsStore::IniSettingsStore(const QString& folder)
    : folder_(folder),
      path_(QStringLiteral("%1/%2.ini").arg(folder, QLatin1String(applicationName))) {
    removeLockOfTheDead(path_);
    if (makeFileTrustworthy()) {
        file_ = std::make_unique<QSettings>(path_, QSettings::IniFormat);
    }
    stamp_ = stampNow();
}

IniSettingsStore::Stamp IniSettingsStore::stampNow() const {
    const QFileInfo file(path_);
    return file.exists() ? Stamp{file.size(), file.lastModified()} : Stamp{};
}

bool IniSettingsStore::makeFileTrustworthy() {
    const auto bytes = bytesOf(path_);
    if (!bytes) {
        return !QFileInfo::exists(path_); // one that may not be read is nobody's to replace
    }
    const std::string_view view(bytes->constData(), static_cast<std::size_t>(bytes->size()));
    return checkStoreFile(view) == StoreFileState::whole || putAside(path_);
}

std::string IniSettingsStore::GetSetting(const std::string& application, const std::string& section,
                                         const std::string& key,
                                         const std::string& fallback) const {
    if (application != applicationName) {
        return fallback;
    }
    if (const auto changed = changes_.find({section, key}); changed != changes_.end()) {
        return changed->second.value_or(fallback);
    }
    const QString name = settingName(section, key);
    return file_ && file_->contains(name) ? textOf(file_->value(name)) : fallback;
}

void IniSettingsStore::SaveSetting(const std::string& application, const std::string& section,
                                   const std::string& key, const std::string& value) {
    if (application == applicationName) {
        change({section, key}, value);
    }
}

void IniSettingsStore::DeleteSetting(const std::string& application, const std::string& section,
                                     const std::string& key) {
    if (application == applicationName) {
        change({section, key}, std::nullopt);
    }
}

void IniSettingsStore::change(const Key& key, const std::optional<std::string>& value) {
    changes_.insert_or_assign(key, value);
    const QString name = settingName(key.first, key.second);
    const bool foreignHand = !(stampNow() == stamp_);
    if (file_ && !foreignHand && file_->status() == QSettings::NoError) {
        const bool held = file_->contains(name);
        if (value ? held && textOf(file_->value(name)) == *value : !held) {
            return; // it is on disk already; a write waits for the disk, and each start saves much
        }
    }
    if (!file_ || foreignHand) {
        // Somebody else wrote the file, and to write now would merge with what stands there.
        file_.reset();
        if (!makeFileTrustworthy()) {
            return;
        }
        file_ = std::make_unique<QSettings>(path_, QSettings::IniFormat);
        for (const auto& [earlier, saved] : changes_) {
            const QString earlierName = settingName(earlier.first, earlier.second);
            saved ? file_->setValue(earlierName, variantOf(*saved)) : file_->remove(earlierName);
        }
    }
    value ? file_->setValue(name, variantOf(*value)) : file_->remove(name);
    writeOut();
}

void IniSettingsStore::writeOut() {
    // Its own user's alone, as the desktop's convention has it for the configuration folder.
    QDir().mkpath(folder_);
    file_->sync(); // writes a temporary file, flushes it and renames it over the old one
    flushFolder(folder_);
    stamp_ = stampNow();
}

} // namespace sonarith
