// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/ini_file.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

#include "platform/text/store_file_check.h"
#include "support/folder_entries.h"
#include "support/killed_at_call.h"
#include "support/small_disk.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using test::entriesIn;
using test::KillOutcome;

QString text(const fs::path& path) {
    return QString::fromStdString(path.string());
}

std::string contentOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return (std::stringstream() << in.rdbuf()).str();
}

class IniFileTest : public testing::Test {
  protected:
    void write(const std::string& content) const { std::ofstream(path) << content; }
    [[nodiscard]] IniValues read() const { return readIniFile(text(path)); }
    [[nodiscard]] bool write(const IniValues& values) const {
        return writeIniFile(text(path), values);
    }
    /// The content on the disk, read from a copy: QSettings caches files that it has opened.
    [[nodiscard]] IniValues onDisk() const {
        const fakes::TempFolder elsewhere;
        fs::copy(path, elsewhere / "copy.ini");
        return readIniFile(text(elsewhere / "copy.ini"));
    }

    fakes::TempFolder folder;
    const fs::path path = folder / "a.ini";
};

TEST_F(IniFileTest, HasItsKeysSortedByName) {
    IniValues values;
    std::string expected = "[S]\n";
    for (char name = 'a'; name <= 'z'; ++name) {
        values[QStringLiteral("S/") + QLatin1Char(name)] = name;
        expected += std::string(1, name) + "=" + name + "\n";
    }
    ASSERT_TRUE(write(values));
    EXPECT_EQ(contentOf(path), expected);
}

TEST_F(IniFileTest, ContainsExactlyTheWrittenValues) {
    EXPECT_EQ(read(), IniValues());
    ASSERT_TRUE(write({{"S/a", "1"}, {"T/b", "caf\xe9"}, {"T/c", ""}}));
    EXPECT_EQ(onDisk(), (IniValues{{"S/a", "1"}, {"T/b", "caf\xe9"}, {"T/c", ""}}));
    ASSERT_TRUE(write({{"T/c", "x"}}));
    EXPECT_EQ(contentOf(path), "[T]\nc=x\n");
    ASSERT_TRUE(write(IniValues()));
    EXPECT_EQ(contentOf(path), "");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(IniFileTest, AWriteKeepsTheModeAndFollowsASymbolicLink) {
    fs::create_directory(folder / "real");
    std::ofstream(folder / "real/b.ini") << "[S]\na=1\n";
    fs::permissions(folder / "real/b.ini", fs::perms(0640));
    fs::create_symlink("real/b.ini", path);
    ASSERT_TRUE(write({{"S/a", "2"}}));
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(contentOf(folder / "real/b.ini"), "[S]\na=2\n");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
    EXPECT_EQ(entriesIn(folder / "real"), 1);
}

TEST_F(IniFileTest, IsNotChangedWithoutWritePermission) {
    write("[S]\na=1\n");
    // The unprivileged process cannot write the file: the file belongs to the superuser if the
    // superuser runs the tests, otherwise the file is write-protected.
    fs::permissions(path, fs::perms(::geteuid() == 0 ? 0644 : 0444));
    fs::permissions(folder.path(), fs::perms(0777));
    EXPECT_EQ(test::runUnprivileged([&] { return write({{"S/a", "2"}}) ? 1 : 0; }), 0);
    EXPECT_EQ(contentOf(path), "[S]\na=1\n");
    EXPECT_EQ(entriesIn(folder.path()), 1);
}

TEST_F(IniFileTest, CannotBeWrittenIntoAMissingFolder) {
    EXPECT_FALSE(writeIniFile(text(folder / "none/a.ini"), {{"S/a", "1"}}));
}

// Without the checks of writeIniFile(), QSettings would replace the old file by a part of the new
// file and report success.
TEST_F(IniFileTest, KeepsTheOldValuesIfTheDiskIsFull) {
    constexpr int values = 2000;
    IniValues many;
    for (int i = 0; i < values; ++i) {
        many.emplace("S/key" + QString::number(i), std::string(20, 'x'));
    }
    ASSERT_TRUE(write(many));
    const auto whole = static_cast<int>(fs::file_size(path));
    fs::permissions(folder.path(), fs::perms(0777));
    int failures = 0;
    // The limits of the file's size, in bytes. At the last limit, the whole file fits. All other
    // limits cut the file within a line: in the first, a middle or the last flushed block.
    for (const int limit : {100, 1000, 16384, 16385, 20000, 32768, whole - 25, whole - 1, whole}) {
        write("[S]\nold=1\n");
        fs::permissions(path, fs::perms(0666));
        const int answer = test::runUnprivileged([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit size{static_cast<rlim_t>(limit), static_cast<rlim_t>(limit)};
            ::setrlimit(RLIMIT_FSIZE, &size); // simulates the full disk
            return write(many) ? 1 : 0;
        });
        EXPECT_EQ(answer, limit == whole ? 1 : 0) << limit << " bytes";
        EXPECT_EQ(onDisk(), limit == whole ? many : (IniValues{{"S/old", "1"}}))
            << limit << " bytes";
        EXPECT_EQ(entriesIn(folder.path()), 1) << limit << " bytes";
        failures += answer == 0 ? 1 : 0;
    }
    EXPECT_EQ(failures, 8);
}

TEST_F(IniFileTest, AWriteStoresNothingOfAnEarlierFailedWrite) {
    fs::permissions(folder.path(), fs::perms(0777));
    for (const rlim_t limit : {10, 1000}) { // 10 bytes do not suffice even for QSettings' lock file
        EXPECT_EQ(test::runUnprivileged([&] {
                      std::signal(SIGXFSZ, SIG_IGN);
                      rlimit size{};
                      ::getrlimit(RLIMIT_FSIZE, &size);
                      const bool before = write({{"S/a", "0"}});
                      const rlim_t unlimited = std::exchange(size.rlim_cur, limit);
                      ::setrlimit(RLIMIT_FSIZE, &size);
                      const bool during = write({{"S/long", std::string(5000, 'x')}});
                      size.rlim_cur = unlimited;
                      ::setrlimit(RLIMIT_FSIZE, &size);
                      return before && !during && write({{"S/a", "1"}}) ? 0 : 1;
                  }),
                  0);
        EXPECT_EQ(contentOf(path), "[S]\na=1\n") << limit << " bytes";
        fs::remove(path);
    }
}

TEST_F(IniFileTest, ContainsTheOldOrTheNewValuesAfterAKillAtAnySystemCall) {
    int call = 0;
    for (KillOutcome outcome = KillOutcome::killed; outcome == KillOutcome::killed; ++call) {
        const fakes::TempFolder fresh;
        const fs::path file = fresh / "a.ini";
        std::ofstream(file) << "[S]\na=old\n";
        outcome = test::killAtCall(
            call, [] {},
            [&] {
                if (!writeIniFile(text(file), {{"S/a", "new"}})) {
                    ::_exit(1);
                }
            });
        ASSERT_NE(outcome, KillOutcome::failed) << "call " << call;
        const std::string after = contentOf(file);
        EXPECT_TRUE(after == "[S]\na=old\n" || after == "[S]\na=new\n") << after;
        removeUnfinishedIniFiles(text(file));
        EXPECT_EQ(entriesIn(fresh.path()), 1) << "call " << call;
        EXPECT_EQ(contentOf(file), after);
    }
    EXPECT_GT(call, 20)
        << "more than 20 system calls are expected: a write locks, flushes and renames files";
}

// Without removeUnfinishedIniFiles(), the empty lock file of a killed process would delay the next
// write by 30 seconds.
TEST_F(IniFileTest, TheCleanupRemovesOnlyTheUnfinishedFilesAndTheLockOfAKilledProcess) {
    write("[S]\na=1\n");
    for (const char* name : {"a.ini.unfinished.lock", "a.ini.unfinished", "a.ini.unfinished7"}) {
        std::ofstream(folder / name) << "";
    }
    std::ofstream(folder / "a.ini.mine") << "";
    removeUnfinishedIniFiles(text(path));
    EXPECT_EQ(entriesIn(folder.path()), 2);
    EXPECT_EQ(contentOf(path), "[S]\na=1\n");
}

TEST_F(IniFileTest, TheCleanupKeepsTheFilesOfARunningWriter) {
    for (const char* name : {"a.ini.unfinished.lock", "a.ini.unfinished"}) {
        std::ofstream(folder / name) << "";
    }
    const int held = ::open((folder / "a.ini.unfinished.lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    removeUnfinishedIniFiles(text(path));
    EXPECT_EQ(entriesIn(folder.path()), 2);
    ::close(held);
}

TEST_F(IniFileTest, CanBeWrittenAfterAnyEditThatLeavesItWhole) {
    std::mt19937 random(1);
    const auto typed = [&random] {
        static constexpr std::string_view alphabet = "ab=[]\\/\"%@(),; #:\t\r01xU";
        std::string some;
        for (auto left = random() % 12; left > 0; --left) {
            some += alphabet[random() % alphabet.size()];
        }
        return some;
    };
    int written = 0;
    for (int round = 0; round < 300; ++round) {
        std::string content = random() % 2 == 0 ? "[S]\n" : "[" + typed() + "]\n";
        for (auto lines = random() % 4; lines > 0; --lines) {
            content += typed() + "=" + typed() + "\n";
        }
        if (checkStoreFile(content) != StoreFileState::whole) {
            continue;
        }
        const fs::path file = folder / (std::to_string(round) + ".ini");
        std::ofstream(file) << content;
        IniValues values = readIniFile(text(file));
        values["S/ours"] = "1";
        EXPECT_TRUE(writeIniFile(text(file), values)) << content;
        ++written;
    }
    EXPECT_GT(written, 100);
}

} // namespace
} // namespace sonarith
