// SPDX-License-Identifier: GPL-3.0-or-later
// The settings store as an INI file of the user's. It knows no key and no default. What cannot be
// written holds for the run all the same, and is reported once.
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

    /// Opens, or is going to make, "Sonarith v2.0.ini" in `folder`. A file there that is torn or
    /// not of this form is kept aside under another name, and the store is empty. `notices`
    /// outlives the store; without them it is silent.
    explicit IniSettingsStore(const QString& folder = defaultFolder(), Notices* notices = nullptr);

    // Sections are the file's groups. Names of sections and keys hold no slash and no backslash.
    // Values are any bytes. An application name other than applicationName has no keys.
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
    /// What tells that somebody else wrote the file.
    struct Stamp {
        qint64 bytes = -1;
        QDateTime changed;
        bool operator==(const Stamp&) const = default;
    };

    enum class State {
        written,     ///< the file holds all that was changed
        toBeWritten, ///< the last write failed; each change tries again
        untouchable  ///< a file that is not to be touched stands in the way
    };

    [[nodiscard]] Stamp stampNow() const;
    /// Whether the file may be read and written over: it is whole, or absent, or was put aside.
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
    /// The file as it was left by this object, and what it holds.
    Stamp stamp_;
    IniValues onDisk_;
    /// What this run saved or deleted (nothing): it holds whatever becomes of the file.
    std::map<Key, std::optional<std::string>> changes_;
    int transactions_ = 0; ///< that stand within each other
    bool changesWait_ = false;
};

} // namespace sonarith
