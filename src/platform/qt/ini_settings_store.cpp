// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/ini_settings_store.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "platform/text/store_file_check.h"

namespace sonarith {

namespace {

QString settingName(const std::pair<std::string, std::string>& key) {
    return QString::fromStdString(key.first) + QLatin1Char('/') +
           QString::fromStdString(key.second);
}

/// The content of the file, at most longestStoreFileBytes + 1 bytes; empty optional if the file
/// cannot be opened or read. If the file opens but is not a regular file, returns a single NUL,
/// which checkStoreFile() treats as foreign.
std::optional<QByteArray> bytesOf(const QString& path) {
    // O_NONBLOCK is set because open() on a pipe would otherwise wait for a writer.
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
        if (file.error() != QFileDevice::NoError) {
            ::close(opened);
            return std::nullopt;
        }
    }
    ::close(opened);
    return bytes;
}

/// Renames the file to an unused name in the same folder. Returns false on failure.
bool putAside(const QString& path) {
    // At most mostKept names are tried, so that a folder full of damaged files does not delay the
    // start. More than a thousand such files are not expected.
    constexpr int mostKept = 1000;
    for (int number = 1; number <= mostKept; ++number) {
        const QString aside = path + QStringLiteral(".damaged-%1").arg(number);
        const QFileInfo taken(aside);
        if (!taken.exists() && !taken.isSymLink()) {
            return ::renameat2(AT_FDCWD, QFile::encodeName(path).constData(), AT_FDCWD,
                               QFile::encodeName(aside).constData(), RENAME_NOREPLACE) == 0 ||
                   QFile::rename(path, aside); // for file systems without an exclusive rename
        }
    }
    return false;
}

} // namespace

QString IniSettingsStore::defaultFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/sonarith");
}

IniSettingsStore::IniSettingsStore(const QString& folder, Notices* notices)
    : folder_(folder),
      path_(QStringLiteral("%1/%2.ini").arg(folder, QLatin1String(applicationName))),
      notices_(notices) {
    removeUnfinishedIniFiles(path_);
    read();
}

IniSettingsStore::Stamp IniSettingsStore::stampNow() const {
    const QFileInfo file(path_);
    return file.exists() ? Stamp{file.size(), file.lastModified()} : Stamp{};
}

bool IniSettingsStore::makeFileTrustworthy() {
    const auto bytes = bytesOf(path_);
    if (!bytes) {
        return !QFileInfo::exists(path_); // a file that cannot be read must not be replaced
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
    const auto held = onDisk_.find(settingName({section, key}));
    return held != onDisk_.end() ? held->second : fallback;
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
    changesWait_ = true;
    if (transactions_ == 0) {
        saveChanges();
    }
}

void IniSettingsStore::endTransaction() {
    if (--transactions_ == 0 && changesWait_) {
        saveChanges();
    }
}

void IniSettingsStore::saveChanges() {
    changesWait_ = false;
    if (state_ == State::untouchable || !(stampNow() == stamp_)) {
        // Another program has written or removed the file, or the file was untouchable and may now
        // be usable.
        read();
    } else if (state_ == State::written && withChanges() == onDisk_) {
        return; // already on disk; each start saves many unchanged values
    }
    if (state_ != State::untouchable) {
        writeOut();
    }
    reportState();
}

void IniSettingsStore::reportState() {
    constexpr const char* cause = "settings store";
    if (notices_ == nullptr) {
        return;
    }
    const std::string file = QFile::encodeName(path_).toStdString();
    switch (state_) {
    case State::written:
        notices_->settled(cause, "Settings are stored again in " + file);
        break;
    case State::toBeWritten:
        notices_->report(
            {"Settings apply to this run only: " + file + " could not be written", cause});
        break;
    case State::untouchable:
        notices_->report({"Settings apply to this run only: " + file + " cannot be used", cause});
        break;
    }
}

IniValues IniSettingsStore::withChanges() const {
    IniValues values = onDisk_;
    for (const auto& [key, value] : changes_) {
        if (value) {
            values.insert_or_assign(settingName(key), *value);
        } else {
            values.erase(settingName(key));
        }
    }
    return values;
}

void IniSettingsStore::read() {
    onDisk_.clear();
    state_ = makeFileTrustworthy() ? State::written : State::untouchable;
    if (state_ == State::written) {
        onDisk_ = readIniFile(path_);
    }
    stamp_ = stampNow();
}

void IniSettingsStore::writeOut() {
    makeFolder();
    IniValues values = withChanges();
    const bool done = writeIniFile(path_, values);
    if (done) {
        onDisk_ = std::move(values);
    }
    state_ = done ? State::written : State::toBeWritten;
    stamp_ = stampNow();
}

/// Creates the folder if it is missing. The desktop's convention for the configuration folder
/// requires that only the user may access the new folder.
void IniSettingsStore::makeFolder() {
    if (!QFileInfo::exists(folder_) && QDir().mkpath(folder_)) {
        QFile::setPermissions(folder_, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

} // namespace sonarith
