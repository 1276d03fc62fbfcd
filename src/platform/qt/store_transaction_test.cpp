// SPDX-License-Identifier: GPL-3.0-or-later
// Tests transactions of the settings store: their effect on the file and on readers, and the file
// after a kill.
#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include <sys/inotify.h>
#include <sys/resource.h>
#include <unistd.h>

#include "platform/qt/ini_settings_store.h"
#include "platform/text/store_file_check.h"
#include "support/folder_entries.h"
#include "support/forked_child.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;

/// Counts how often the file `name` is created in `folder`, renamed into `folder` or changed there.
class ReplacementCount {
  public:
    ReplacementCount(const fs::path& folder, std::string name)
        : name_(std::move(name)), queue_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        watched_ = ::inotify_add_watch(queue_, folder.c_str(), IN_MOVED_TO | IN_CREATE | IN_MODIFY);
    }
    ~ReplacementCount() { ::close(queue_); }
    ReplacementCount(const ReplacementCount&) = delete;
    ReplacementCount& operator=(const ReplacementCount&) = delete;

    [[nodiscard]] bool works() const { return watched_ >= 0; }
    int sinceLastAsked() {
        int count = 0;
        alignas(inotify_event) std::array<char, 65536> block{};
        for (ssize_t bytes = 0; (bytes = ::read(queue_, block.data(), block.size())) > 0;) {
            for (ssize_t at = 0; at < bytes;) {
                const auto* event = reinterpret_cast<const inotify_event*>(block.data() + at);
                count += event->len > 0 && name_ == event->name ? 1 : 0;
                at += static_cast<ssize_t>(sizeof(inotify_event)) + event->len;
            }
        }
        return count;
    }

  private:
    std::string name_;
    int queue_;
    int watched_ = -1;
};

class StoreTransactionTest : public ::testing::Test {
  protected:
    [[nodiscard]] QString folder() const { return QString::fromStdString(temp_.path().string()); }
    [[nodiscard]] fs::path file() const { return temp_ / fileName; }
    [[nodiscard]] std::string fileText() const {
        std::ifstream stream(file());
        return (std::stringstream() << stream.rdbuf()).str();
    }
    static void put(IniSettingsStore& store, const std::string& key, const std::string& value) {
        store.SaveSetting(applicationName, "Settings", key, value);
    }
    static std::string read(const IniSettingsStore& store, const std::string& key) {
        return store.GetSetting(applicationName, "Settings", key, "(default)");
    }

    inline static const std::string fileName = "Sonarith v2.0.ini";
    fakes::TempFolder temp_;
};

TEST_F(StoreTransactionTest, WritesSeveralChangesInOneReplacementOfTheFile) {
    IniSettingsStore store(folder());
    put(store, "HDWarning", "0");
    ReplacementCount replacements(temp_.path(), fileName);
    ASSERT_TRUE(replacements.works());
    {
        const StoreTransaction transaction(store);
        for (int i = 0; i < 7; ++i) {
            put(store, "key" + std::to_string(i), "1");
        }
        store.DeleteSetting(applicationName, "Settings", "HDWarning");
        EXPECT_EQ(replacements.sinceLastAsked(), 0);
        EXPECT_THAT(fileText(), HasSubstr("HDWarning=0"));
    }
    EXPECT_EQ(replacements.sinceLastAsked(), 1);
    for (int i = 0; i < 7; ++i) {
        EXPECT_THAT(fileText(), HasSubstr("key" + std::to_string(i) + "=1"));
    }
    EXPECT_THAT(fileText(), Not(HasSubstr("HDWarning")));
    // Without a transaction each write replaces the file.
    put(store, "a", "1");
    put(store, "b", "1");
    EXPECT_EQ(replacements.sinceLastAsked(), 2);
}

TEST_F(StoreTransactionTest, DuringATransactionTheStoreReturnsNewValuesAndTheFileKeepsTheOldOnes) {
    IniSettingsStore store(folder());
    put(store, "HDWarning", "0");
    put(store, "HDStopNo", "7");
    const StoreTransaction transaction(store);
    put(store, "HDWarning", "1");
    put(store, "fresh", "x");
    store.DeleteSetting(applicationName, "Settings", "HDStopNo");
    EXPECT_EQ(read(store, "HDWarning"), "1");
    EXPECT_EQ(read(store, "fresh"), "x");
    EXPECT_EQ(read(store, "HDStopNo"), "(default)");
    EXPECT_EQ(read(IniSettingsStore(folder()), "HDWarning"), "0"); // on disk
}

TEST_F(StoreTransactionTest, WritesAtTheEndOfTheOutermostTransaction) {
    IniSettingsStore store(folder());
    {
        const StoreTransaction outer(store);
        {
            const StoreTransaction inner(store);
            put(store, "inside", "1");
        }
        EXPECT_FALSE(fs::exists(file()));
        put(store, "outside", "1");
        EXPECT_FALSE(fs::exists(file()));
    }
    EXPECT_THAT(fileText(), HasSubstr("inside=1"));
    EXPECT_THAT(fileText(), HasSubstr("outside=1"));
}

TEST_F(StoreTransactionTest, WritesNothingIfATransactionLeavesAllValuesAsTheyWere) {
    IniSettingsStore store(folder());
    { const StoreTransaction empty(store); }
    EXPECT_FALSE(fs::exists(file()));
    put(store, "HDWarning", "1");
    ReplacementCount replacements(temp_.path(), fileName);
    ASSERT_TRUE(replacements.works());
    { const StoreTransaction empty(store); }
    {
        const StoreTransaction same(store);
        put(store, "HDWarning", "0");
        put(store, "HDWarning", "1");
        store.DeleteSetting(applicationName, "Settings", "never there");
    }
    EXPECT_EQ(replacements.sinceLastAsked(), 0);
}

TEST_F(StoreTransactionTest, KeepsWhatAnotherProgramWroteDuringTheTransaction) {
    IniSettingsStore store(folder());
    put(store, "HDWarning", "0");
    {
        const StoreTransaction transaction(store);
        put(store, "mine", "1");
        IniSettingsStore other(folder());
        put(other, "theirs, a longer value than was there", "2");
    }
    const IniSettingsStore next(folder());
    EXPECT_EQ(read(next, "mine"), "1");
    EXPECT_EQ(read(next, "theirs, a longer value than was there"), "2");
    EXPECT_EQ(read(next, "HDWarning"), "0");
}

TEST_F(StoreTransactionTest, AKillDuringATransactionLeavesTheOldFile) {
    {
        IniSettingsStore store(folder());
        put(store, "HDWarning", "0");
    }
    const std::string before = fileText();
    test::ReportingChild child([this](const auto& report) {
        IniSettingsStore store(folder());
        const StoreTransaction transaction(store);
        put(store, "HDWarning", "1");
        put(store, "HDStopNo", "7");
        report('x');
        ::pause(); // the transaction does not end
    });
    ASSERT_TRUE(child.reports(1));
    ASSERT_TRUE(child.kill());
    EXPECT_EQ(fileText(), before);
    EXPECT_EQ(test::entriesIn(temp_.path()), 1);
}

TEST_F(StoreTransactionTest, AKillDuringConsecutiveTransactionsLeavesTheOldOrTheNewFile) {
    for (int round = 0; round < 5; ++round) {
        test::ReportingChild child([this](const auto& report) {
            IniSettingsStore store(folder());
            for (int value = 1;; ++value) {
                {
                    const StoreTransaction transaction(store);
                    put(store, "first", std::to_string(value));
                    put(store, "filler", std::string(20'000, 'f'));
                    put(store, "last", std::to_string(value));
                }
                report('x');
            }
        });
        ASSERT_TRUE(child.reports(2 + round * 5));
        ASSERT_TRUE(child.kill());
        ASSERT_EQ(checkStoreFile(fileText()), StoreFileState::whole);
        const IniSettingsStore next(folder());
        ASSERT_NE(read(next, "first"), "(default)");
        EXPECT_EQ(read(next, "first"), read(next, "last"));
        EXPECT_GE(std::stoi(read(next, "first")), 2 + round * 5);
    }
}

TEST_F(StoreTransactionTest, ValuesOfAFailedWriteStayValidAndTheWriteIsRetried) {
    fs::permissions(temp_.path(), fs::perms::all);
    EXPECT_EQ(test::runUnprivileged([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  IniSettingsStore store(folder());
                  put(store, "before", "1");
                  const std::string before = fileText();
                  rlimit limit{};
                  ::getrlimit(RLIMIT_FSIZE, &limit);
                  const rlim_t unlimited = std::exchange(limit.rlim_cur, 10'000);
                  ::setrlimit(RLIMIT_FSIZE, &limit); // simulates a full disk
                  {
                      const StoreTransaction transaction(store);
                      put(store, "filler", std::string(20'000, 'x'));
                      put(store, "second", "2");
                  }
                  if (fileText() != before || read(store, "second") != "2") {
                      return 1; // the values were written in spite of the full disk, or were lost
                  }
                  limit.rlim_cur = unlimited;
                  ::setrlimit(RLIMIT_FSIZE, &limit);
                  put(store, "third", "3");
                  return 0;
              }),
              0);
    const IniSettingsStore next(folder());
    EXPECT_EQ(read(next, "filler"), std::string(20'000, 'x'));
    EXPECT_EQ(read(next, "second"), "2");
    EXPECT_EQ(read(next, "third"), "3");
}

} // namespace
} // namespace sonarith
