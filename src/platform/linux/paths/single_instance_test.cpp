// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/single_instance.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include <unistd.h>

#include "support/forked_child.h"
#include "support/refused_call.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

TEST(SingleInstance, OnlyOneInstanceAtATimeIsFirst) {
    const fakes::TempFolder folder;
    {
        const SingleInstance first({folder.path().string()});
        const SingleInstance second({folder.path().string()});
        EXPECT_TRUE(first.isFirst());
        EXPECT_FALSE(second.isFirst());
    }
    EXPECT_TRUE(SingleInstance({folder.path().string()}).isFirst());
}

TEST(SingleInstance, IsIndependentOfLocksInOtherFolders) {
    const fakes::TempFolder mine;
    const fakes::TempFolder yours;
    const SingleInstance first({mine.path().string()});
    EXPECT_TRUE(SingleInstance({yours.path().string()}).isFirst());
}

TEST(SingleInstance, IsFirstAfterTheProcessThatHeldTheLockWasKilled) {
    const fakes::TempFolder folder;
    test::ReportingChild child([&](const auto& report) {
        const SingleInstance first({folder.path().string()});
        report(first.isFirst() ? '1' : '0');
        ::pause(); // keeps the lock
    });
    EXPECT_EQ(child.nextReport(), '1');
    EXPECT_FALSE(SingleInstance({folder.path().string()}).isFirst());
    ASSERT_TRUE(child.kill());
    EXPECT_TRUE(SingleInstance({folder.path().string()}).isFirst());
}

TEST(SingleInstance, IsFirstIfNoLockIsPossible) {
    EXPECT_TRUE(SingleInstance({"/no/such/folder"}).isFirst());
}

TEST(SingleInstance, DoesNotFollowALinkThatHasTheNameOfTheLockFile) {
    const fakes::TempFolder folder;
    fs::create_symlink(folder / "victim", folder / "sonarith.lock");
    EXPECT_TRUE(SingleInstance({folder.path().string()}).isFirst());
    EXPECT_FALSE(fs::exists(folder / "victim"));
}

TEST(SingleInstance, UsesTheNextFolderIfTheFirstFolderCannotContainTheLock) {
    const fakes::TempFolder folder;
    const std::vector<std::string> folders{"/no/such/folder", folder.path().string()};
    const SingleInstance first(folders);
    EXPECT_TRUE(first.isFirst());
    EXPECT_FALSE(SingleInstance(folders).isFirst());
}

TEST(SingleInstance, TriesNoFurtherFolderAfterItFindsTheLockOfAnotherInstance) {
    const fakes::TempFolder one;
    const fakes::TempFolder other;
    const SingleInstance first({one.path().string()});
    EXPECT_FALSE(SingleInstance({one.path().string(), other.path().string()}).isFirst());
    EXPECT_TRUE(fs::is_empty(other.path()));
}

TEST(SingleInstance, IsFirstOnAFileSystemWithoutLocks) {
    const fakes::TempFolder folder;
    fs::permissions(folder.path(), fs::perms(0777));
    EXPECT_EQ(test::runUnprivileged([&] {
                  if (!test::refuseFileLocks()) {
                      return 1;
                  }
                  const SingleInstance first({folder.path().string()});
                  const SingleInstance second({folder.path().string()});
                  return first.isFirst() && second.isFirst() ? 0 : 2;
              }),
              0);
}

TEST(SingleInstance, SkipsAReadOnlyFolderAndIsFirstIfNoFolderIsLeft) {
    const fakes::TempFolder closed;
    const fakes::TempFolder open;
    fs::permissions(closed.path(), fs::perms(0555));
    fs::permissions(open.path(), fs::perms(0777));
    EXPECT_EQ(test::runUnprivileged([&] {
                  const SingleInstance alone({closed.path().string()});
                  const std::vector<std::string> both{closed.path().string(), open.path().string()};
                  const SingleInstance first(both);
                  return alone.isFirst() && first.isFirst() && !SingleInstance(both).isFirst() ? 0
                                                                                               : 1;
              }),
              0);
    fs::permissions(closed.path(), fs::perms(0755));
}

/// Sets XDG_RUNTIME_DIR during its lifetime, and restores the previous value at the end.
class RunTimeFolder {
  public:
    explicit RunTimeFolder(const std::string& path) {
        if (const char* value = std::getenv("XDG_RUNTIME_DIR")) {
            before_ = value;
        }
        ::setenv("XDG_RUNTIME_DIR", path.c_str(), 1);
    }
    ~RunTimeFolder() {
        before_ ? ::setenv("XDG_RUNTIME_DIR", before_->c_str(), 1) : ::unsetenv("XDG_RUNTIME_DIR");
    }
    RunTimeFolder(const RunTimeFolder&) = delete;
    RunTimeFolder& operator=(const RunTimeFolder&) = delete;

  private:
    std::optional<std::string> before_;
};

TEST(InstanceFolders, AreTheStoresFolderAndThenTheRunTimeFolder) {
    const fakes::TempFolder folder;
    const std::string store = (folder / "config/sonarith").string();
    const RunTimeFolder runTime(folder.path().string());
    EXPECT_THAT(instanceFolders(store), ElementsAre(store, folder.path().string()));
}

TEST(InstanceFolders, CreateTheStoresFolderForThisUserOnly) {
    const fakes::TempFolder folder;
    const std::string store = (folder / "config/sonarith").string();
    EXPECT_EQ(instanceFolders(store).front(), store);
    EXPECT_EQ(fs::status(store).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(folder / "config").permissions(), fs::perms::owner_all);
}

TEST(InstanceFolders, OmitAnInvalidRunTimeFolder) {
    const fakes::TempFolder folder;
    const std::string store = (folder / "config/sonarith").string();
    fs::permissions(folder.path(), fs::perms::all);
    for (const std::string& wrong :
         {folder.path().string(), std::string("relative"), store + "/missing", std::string()}) {
        const RunTimeFolder runTime(wrong);
        EXPECT_THAT(instanceFolders(store), ElementsAre(store)) << wrong;
    }
}

TEST(InstanceFolders, LetASecondSessionDetectTheFirstEvenIfTheirRunTimeFoldersDiffer) {
    const fakes::TempFolder folder;
    const std::string store = (folder / "config/sonarith").string();
    const SingleInstance first(instanceFolders(store));
    EXPECT_TRUE(first.isFirst());
    const RunTimeFolder runTime(folder.path().string());
    EXPECT_FALSE(SingleInstance(instanceFolders(store)).isFirst());
}

} // namespace
} // namespace sonarith
