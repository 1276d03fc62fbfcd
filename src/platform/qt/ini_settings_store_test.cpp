// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/ini_settings_store.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/text/store_file_check.h"
#include "support/fake_notices.h"
#include "support/folder_entries.h"
#include "support/forked_child.h"
#include "support/refused_call.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using ::testing::_;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class IniSettingsStoreTest : public ::testing::Test {
  protected:
    [[nodiscard]] QString folder() const {
        return QString::fromStdString((temp_ / "config/sonarith").string());
    }
    [[nodiscard]] fs::path file(const std::string& suffix = "") const {
        return temp_ / ("config/sonarith/Sonarith v2.0.ini" + suffix);
    }
    static std::string read(const fs::path& path) {
        std::ifstream stream(path);
        return (std::stringstream() << stream.rdbuf()).str();
    }
    void write(const std::string& content, const std::string& suffix = "") const {
        fs::create_directories(file().parent_path());
        std::ofstream(file(suffix)) << content;
    }
    /// Changes the permissions of the existing folders only, not of folders created later.
    void letEverybodyWrite() const {
        for (const fs::path& path : {temp_.path(), temp_ / "config", temp_ / "config/sonarith"}) {
            fs::permissions(path, fs::perms::all);
        }
    }
    static void save(IniSettingsStore& store, const std::string& key, const std::string& value,
                     const std::string& section = "Settings") {
        store.SaveSetting(applicationName, section, key, value);
    }
    static std::string get(const IniSettingsStore& store, const std::string& key,
                           const std::string& section = "Settings") {
        return store.GetSetting(applicationName, section, key, "(default)");
    }

    fakes::TempFolder temp_;
};

TEST_F(IniSettingsStoreTest, ReturnsTheFallbackForAnAbsentKeyAndWritesNothing) {
    const IniSettingsStore store(folder());
    EXPECT_EQ(get(store, "HDWarning"), "(default)");
    EXPECT_FALSE(fs::exists(file()));
}

TEST_F(IniSettingsStoreTest, StoresEachChangeOnDiskBeforeTheCallReturns) {
    IniSettingsStore store(folder());
    save(store, "Audio format", "1");
    EXPECT_THAT(read(file()), HasSubstr("[Settings]"));
    EXPECT_THAT(read(file()), HasSubstr("=1"));
    store.DeleteSetting(applicationName, "Settings", "Audio format");
    EXPECT_EQ(read(file()).find("=1"), std::string::npos);
}

TEST_F(IniSettingsStoreTest, ReturnsValuesOfAnyBytesAtTheNextStart) {
    const std::vector<std::string> values = {"",
                                             " ",
                                             "1",
                                             "C:\\Music\\Wav",
                                             "a, b; c=d",
                                             "@At(1)",
                                             "@@",
                                             "\"quoted\"",
                                             "line\nend\r\t",
                                             "añ日\U0001F3B5",
                                             "caf\xe9",
                                             "\xff\xfe\x80",
                                             std::string("a\0b", 3),
                                             "%41",
                                             "[x]",
                                             "\\x41",
                                             "true",
                                             "1,2",
                                             "trailing ",
                                             "C:\\",
                                             "\xef\x81\x9c",
                                             "\xef\xbf\xbf"};
    {
        IniSettingsStore store(folder());
        for (std::size_t i = 0; i < values.size(); ++i) {
            save(store, std::to_string(i), values[i], "music");
        }
    }
    ASSERT_EQ(checkStoreFile(read(file())), StoreFileState::whole);
    // The values are read from a copy, so that they cannot come from a cache of the process.
    fs::create_directory(temp_ / "copy");
    fs::copy(file(), temp_ / "copy");
    const IniSettingsStore next(QString::fromStdString((temp_ / "copy").string()));
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(get(next, std::to_string(i), "music"), values[i]) << "value number " << i;
    }
}

TEST_F(IniSettingsStoreTest, StoresTheSameKeyOfTwoSectionsSeparately) {
    IniSettingsStore store(folder());
    save(store, "Drive", "a", "Devices");
    save(store, "Drive", "b", "Settings");
    save(store, "D", "/mnt", "Drives");
    EXPECT_EQ(get(store, "Drive", "Devices"), "a");
    EXPECT_EQ(get(store, "Drive", "Settings"), "b");
    EXPECT_EQ(get(store, "D", "Drives"), "/mnt");
    EXPECT_EQ(get(store, "D", "music"), "(default)");
}

TEST_F(IniSettingsStoreTest, DeletesAKeyPermanently) {
    write("[Settings]\nHDWarning=0\nHDStopNo=7\n");
    IniSettingsStore store(folder());
    store.DeleteSetting(applicationName, "Settings", "HDWarning");
    EXPECT_EQ(get(store, "HDWarning"), "(default)");
    EXPECT_EQ(get(IniSettingsStore(folder()), "HDWarning"), "(default)");
    EXPECT_EQ(get(IniSettingsStore(folder()), "HDStopNo"), "7");
}

TEST_F(IniSettingsStoreTest, DoesNotWriteAnUnchangedValue) {
    write("; a user's comment\n[Settings]\nHDWarning=0\n");
    IniSettingsStore store(folder());
    save(store, "HDWarning", "0");
    store.DeleteSetting(applicationName, "Settings", "HDStopNo");
    EXPECT_EQ(read(file()), "; a user's comment\n[Settings]\nHDWarning=0\n");
    save(store, "HDWarning", "1");
    EXPECT_THAT(read(file()), HasSubstr("HDWarning=1"));
    save(store, "HDWarning", "0");
    EXPECT_THAT(read(file()), HasSubstr("HDWarning=0"));
}

TEST_F(IniSettingsStoreTest, RewritesTheFileIfItWasRemovedDuringTheRun) {
    IniSettingsStore store(folder());
    save(store, "HDWarning", "0");
    fs::remove(file());
    save(store, "HDWarning", "0");
    EXPECT_THAT(read(file()), HasSubstr("HDWarning=0"));
}

TEST_F(IniSettingsStoreTest, ReportsAFailedWriteAndTheFirstSuccessfulWriteAfterIt) {
    const fs::path place = temp_ / "settings";
    std::ofstream(place) << "a file at the path of the folder";
    test::FakeNotices notices;
    IniSettingsStore store(QString::fromStdString(place.string()), &notices);
    EXPECT_THAT(notices.texts(), IsEmpty());
    save(store, "HDWarning", "1");
    const std::string name = (place / (std::string(applicationName) + ".ini")).string();
    EXPECT_THAT(notices.texts(),
                ElementsAre("Settings apply to this run only: " + name + " could not be written"));
    fs::remove(place);
    save(store, "HDWarning", "0");
    EXPECT_THAT(notices.texts(),
                ElementsAre(_, "settled [settings store]: Settings are stored again in " + name));
}

TEST_F(IniSettingsStoreTest, StoresNoValuesOfAnotherApplication) {
    IniSettingsStore store(folder());
    store.SaveSetting("Other", "Settings", "HDWarning", "1");
    EXPECT_EQ(store.GetSetting("Other", "Settings", "HDWarning", "d"), "d");
    EXPECT_FALSE(fs::exists(file()));
}

TEST_F(IniSettingsStoreTest, ReadsWhatTheUserTypedIntoTheFile) {
    write("[Settings]\r\nHDWarningNo = 250\r\nDecodePath=C:\\\\a, b\r\n");
    const IniSettingsStore store(folder());
    EXPECT_EQ(get(store, "HDWarningNo"), "250");
    EXPECT_EQ(get(store, "DecodePath"), "C:\\a, b");
}

TEST_F(IniSettingsStoreTest, RenamesATornOrForeignFileAndStartsEmpty) {
    for (const std::string content :
         {"[Settings]\nHDWarning=0\nHDStop", "hello\n", "[Settings]\nx=\"open\n"}) {
        write(content);
        const IniSettingsStore store(folder());
        EXPECT_EQ(get(store, "HDWarning"), "(default)") << content;
        EXPECT_FALSE(fs::exists(file())) << content;
    }
    EXPECT_EQ(read(file(".damaged-1")), "[Settings]\nHDWarning=0\nHDStop");
    EXPECT_EQ(read(file(".damaged-2")), "hello\n");
    EXPECT_EQ(read(file(".damaged-3")), "[Settings]\nx=\"open\n");
}

TEST_F(IniSettingsStoreTest, RenamesAPipeAtThePathOfTheFile) {
    fs::create_directories(file().parent_path());
    ASSERT_EQ(::mkfifo(file().c_str(), 0666), 0);
    IniSettingsStore store(folder());
    save(store, "HDWarning", "0");
    EXPECT_TRUE(fs::is_regular_file(file()));
    EXPECT_TRUE(fs::is_fifo(file(".damaged-1")));
}

TEST_F(IniSettingsStoreTest, RenamesAForeignFileThatReplacedTheSettingsDuringTheRun) {
    IniSettingsStore store(folder());
    save(store, "HDWarning", "0");
    write("somebody else's notes, longer than the settings were\n");
    save(store, "HDStopNo", "7");
    EXPECT_EQ(read(file(".damaged-1")), "somebody else's notes, longer than the settings were\n");
    const IniSettingsStore next(folder());
    EXPECT_EQ(get(next, "HDWarning"), "0");
    EXPECT_EQ(get(next, "HDStopNo"), "7");
}

TEST_F(IniSettingsStoreTest, KeepsNewValuesForTheRunIfNothingCanBeWritten) {
    std::ofstream(temp_ / "config") << "a file at the path of the folder";
    IniSettingsStore store(folder());
    save(store, "HDWarning", "0");
    save(store, "HDStopNo", "7");
    store.DeleteSetting(applicationName, "Settings", "HDStopNo");
    EXPECT_EQ(get(store, "HDWarning"), "0");
    EXPECT_EQ(get(store, "HDStopNo"), "(default)");
    EXPECT_EQ(read(temp_ / "config"), "a file at the path of the folder");
}

TEST_F(IniSettingsStoreTest, NeverReplacesAnUnreadableFileAndKeepsNewValuesForTheRun) {
    write("[Settings]\nHDWarning=1\n");
    letEverybodyWrite();
    fs::permissions(file(), fs::perms(0222));
    EXPECT_EQ(test::runUnprivileged([&] {
                  IniSettingsStore store(folder());
                  if (get(store, "HDWarning") != "(default)") {
                      return 1;
                  }
                  save(store, "HDWarning", "0");
                  save(store, "HDStopNo", "7");
                  store.DeleteSetting(applicationName, "Settings", "HDStopNo");
                  const bool holds = get(store, "HDWarning") == "0";
                  return holds && get(store, "HDStopNo") == "(default)" ? 0 : 2;
              }),
              0);
    fs::permissions(file(), fs::perms::owner_all);
    EXPECT_EQ(read(file()), "[Settings]\nHDWarning=1\n");
    EXPECT_EQ(test::entriesIn(file().parent_path()), 1);
}

TEST_F(IniSettingsStoreTest, NeverReplacesAFileThatOpensButCannotBeRead) {
    write("[Settings]\nHDWarning=1\n");
    letEverybodyWrite();
    fs::permissions(file(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  if (!test::refuseReads()) {
                      return 1;
                  }
                  IniSettingsStore store(folder());
                  save(store, "HDWarning", "0");
                  return get(store, "HDWarning") == "0" ? 0 : 2;
              }),
              0);
    EXPECT_EQ(read(file()), "[Settings]\nHDWarning=1\n");
    EXPECT_EQ(test::entriesIn(file().parent_path()), 1);
}

TEST_F(IniSettingsStoreTest, RetriesFailedWritesAtTheFirstSaveAfterTheDiskHasSpaceAgain) {
    write("[Settings]\nfirst=1\n");
    letEverybodyWrite();
    fs::permissions(file(), fs::perms(0666));
    EXPECT_EQ(test::runUnprivileged([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  IniSettingsStore store(folder());
                  rlimit limit{};
                  ::getrlimit(RLIMIT_FSIZE, &limit);
                  const rlim_t unlimited = std::exchange(limit.rlim_cur, 10'000);
                  ::setrlimit(RLIMIT_FSIZE, &limit); // simulates the full disk
                  save(store, "filler", std::string(20'000, 'x'));
                  save(store, "second", "2");
                  if (read(file()) != "[Settings]\nfirst=1\n") {
                      return 1;
                  }
                  if (get(store, "second") != "2" || get(store, "filler").size() != 20'000) {
                      return 2;
                  }
                  limit.rlim_cur = unlimited;
                  ::setrlimit(RLIMIT_FSIZE, &limit);
                  save(store, "first", "1"); // unchanged value, but it triggers a retry
                  return 0;
              }),
              0);
    const IniSettingsStore next(folder());
    EXPECT_EQ(get(next, "first"), "1");
    EXPECT_EQ(get(next, "filler"), std::string(20'000, 'x'));
    EXPECT_EQ(get(next, "second"), "2");
    EXPECT_EQ(test::entriesIn(file().parent_path()), 1);
}

TEST_F(IniSettingsStoreTest, RemovesTheUnfinishedFilesOfAKilledProcess) {
    write("[Settings]\nHDWarning=1\n");
    write("", ".unfinished.lock");
    write("[Settings]\nHDWarn", ".unfinished");
    const IniSettingsStore store(folder());
    EXPECT_EQ(get(store, "HDWarning"), "1");
    EXPECT_EQ(test::entriesIn(file().parent_path()), 1);
}

TEST_F(IniSettingsStoreTest, CreatesAFolderThatOnlyTheUserCanAccess) {
    IniSettingsStore store(folder());
    save(store, "HDWarning", "0");
    EXPECT_EQ(fs::status(file().parent_path()).permissions(), fs::perms::owner_all);
}

TEST_F(IniSettingsStoreTest, AKillDuringAWriteLeavesTheOldOrTheNewFile) {
    const auto filler = [](int value) {
        return std::string(20000, static_cast<char>('a' + value % 26));
    };
    for (int round = 0; round < 5; ++round) {
        const fakes::TempFolder fresh;
        const QString place = QString::fromStdString(fresh.path().string());
        const fs::path path = fresh / "Sonarith v2.0.ini";
        test::ReportingChild child([&](const auto& report) {
            IniSettingsStore store(place);
            for (int value = 1;; ++value) {
                save(store, "first", std::to_string(value));
                save(store, "filler", filler(value));
                report('x');
            }
        });
        const int acknowledged = 3 + round * 7;
        ASSERT_TRUE(child.reports(acknowledged));
        ASSERT_TRUE(child.kill());
        ASSERT_EQ(checkStoreFile(read(path)), StoreFileState::whole);
        IniSettingsStore next(place);
        ASSERT_NE(get(next, "first"), "(default)");
        const int kept = std::stoi(get(next, "first"));
        EXPECT_GE(kept, acknowledged);
        EXPECT_THAT(get(next, "filler"), AnyOf(filler(kept), filler(kept - 1)));
        save(next, "after", "the kill"); // the killed process's files do not block later writes
        EXPECT_THAT(read(path), HasSubstr("after=the kill"));
    }
}

} // namespace
} // namespace sonarith
