// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/single_instance.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <sys/wait.h>
#include <unistd.h>

#include "support/temp_folder.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;

TEST(SingleInstance, LetsOneAtATimeBeTheFirst) {
    const fakes::TempFolder folder;
    {
        const SingleInstance first(folder.path().string());
        const SingleInstance second(folder.path().string());
        EXPECT_TRUE(first.isFirst());
        EXPECT_FALSE(second.isFirst());
    }
    EXPECT_TRUE(SingleInstance(folder.path().string()).isFirst());
}

TEST(SingleInstance, CountsByFolder) {
    const fakes::TempFolder mine;
    const fakes::TempFolder yours;
    const SingleInstance first(mine.path().string());
    EXPECT_TRUE(SingleInstance(yours.path().string()).isFirst());
}

TEST(SingleInstance, IsFreeAgainAfterAKill) {
    const fakes::TempFolder folder;
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const SingleInstance first(folder.path().string());
        static_cast<void>(::write(ready[1], first.isFirst() ? "1" : "0", 1));
        ::pause();
        ::_exit(0);
    }
    char answer = 0;
    ASSERT_EQ(::read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, '1');
    EXPECT_FALSE(SingleInstance(folder.path().string()).isFirst());
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_TRUE(SingleInstance(folder.path().string()).isFirst());
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST(SingleInstance, StartsRatherThanNeverWhereNoLockCanBeHad) {
    EXPECT_TRUE(SingleInstance("/no/such/folder").isFirst());
}

TEST(SingleInstance, FollowsNoLinkThatSomebodyPutThere) {
    const fakes::TempFolder folder;
    fs::create_symlink(folder / "victim", folder / "sonarith.lock");
    EXPECT_TRUE(SingleInstance(folder.path().string()).isFirst());
    EXPECT_FALSE(fs::exists(folder / "victim"));
}

TEST(InstanceFolder, IsTheRunTimeFolderIfThatIsTheUsersAlone) {
    const fakes::TempFolder folder;
    ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    EXPECT_EQ(instanceFolder(), folder.path().string());

    fs::permissions(folder.path(), fs::perms::all);
    EXPECT_EQ(instanceFolder(), (folder / "data/sonarith").string());
    EXPECT_TRUE(fs::is_directory(folder / "data/sonarith"));
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(instanceFolder(), (folder / "data/sonarith").string());
    ::unsetenv("XDG_DATA_HOME");
}

} // namespace
} // namespace sonarith
