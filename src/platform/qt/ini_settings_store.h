// SPDX-License-Identifier: GPL-3.0-or-later
// The settings store in an INI file of the user. The store defines no keys and no defaults. Values
// that cannot be written stay valid until the program ends, and the failure is reported once.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include <QDateTime>
#include <QString>

#include "platform/notices.h"
#include "platform/qt/ini_file.h"
#include "platform/settings_store.h"

namespace sonarith {

class IniSettingsStore final : public SettingsStore {
  public:
    /// "sonarith" below the user's configuration folder.
    [[nodiscard]] static QString defaultFolder();

    /// Opens `folder`/"Sonarith v2.0.ini", or creates this file at the first write. A file that
    /// ends in the middle of a line or of a value, or that is not a settings file, is renamed, and
    /// the store is then empty. `notices` must outlive the store; if it is null, failures are not
    /// reported.
    explicit IniSettingsStore(const QString& folder = defaultFolder(), Notices* notices = nullptr);

    // A section is stored as a [section] of the INI file. Names of sections and keys must not
    // contain a slash or a backslash. Values may be any bytes. If `application` is not
    // applicationName, GetSetting() returns `fallback`, and the other two functions do nothing.
    [[nodiscard]] std::string GetSetting(const std::string& application, const std::string& section,
                                         const std::string& key,
                                         const std::string& fallback) const override;
    void SaveSetting(const std::string& application, const std::string& section,
                     const std::string& key, const std::string& value) override;
    void DeleteSetting(const std::string& application, const std::string& section,
                       const std::string& key) override;

  private:
    void beginTransaction() override { ++transactions_; }
    void endTransaction() override;

    using Key = std::pair<std::string, std::string>;
    /// Identifies a state of the file: the stamp differs after another program has written the
    /// file.
    struct Stamp {
        qint64 bytes = -1;
        QDateTime changed;
        bool operator==(const Stamp&) const = default;
    };

    enum class State {
        written,     ///< the file contains all changes
        toBeWritten, ///< the last write failed; the next change writes again
        untouchable  ///< the file at this path must not be changed
    };

    [[nodiscard]] Stamp stampNow() const;
    /// Renames the file if it is damaged or is not a settings file. Returns false if the path must
    /// not be overwritten, because its file could not be read or renamed.
    [[nodiscard]] bool makeFileTrustworthy();
    void read();
    void change(const Key& key, const std::optional<std::string>& value);
    void saveChanges();
    [[nodiscard]] IniValues withChanges() const;
    void writeOut();
    void makeFolder();
    void reportState();

    QString folder_;
    QString path_;
    Notices* notices_;
    State state_ = State::written;
    /// The stamp and the values that the file had when this object last read or wrote it.
    Stamp stamp_;
    IniValues onDisk_;
    /// The keys that this object has saved or deleted, whether the file contains the change or not.
    /// A saved key maps to its value, a deleted key to nullopt. An entry overrides the file.
    std::map<Key, std::optional<std::string>> changes_;
    int transactions_ = 0; ///< nesting depth
    bool changesWait_ = false;
};

} // namespace sonarith
