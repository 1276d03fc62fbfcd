// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/thread_start.h"

#include <gtest/gtest.h>

#include <memory>

#include <sys/resource.h>
#include <unistd.h>

#include "support/forked_child.h"

namespace sonarith {
namespace {

TEST(StartThread, RunsTheBodyOnAThreadOfItsOwn) {
    std::thread::id there;
    Result<std::thread> started = startThread([&] { there = std::this_thread::get_id(); });
    ASSERT_TRUE(started.ok());
    started.value().join();
    EXPECT_NE(there, std::thread::id());
    EXPECT_NE(there, std::this_thread::get_id());
}

/// Runs in a child process. Forbids further threads, then checks the failure of startThread().
/// Returns the exit code: 0 if all is as expected.
int withoutThreads() {
    // This limit counts all processes and threads of a user. It does not apply to the superuser, so
    // a child that runs as the superuser changes to another user.
    const rlimit none{1, 1};
    if (::setrlimit(RLIMIT_NPROC, &none) != 0 || (::geteuid() == 0 && ::setuid(65534) != 0)) {
        return 2;
    }
    const auto owned = std::make_shared<int>();
    Result<std::thread> started = startThread([owned] {});
    if (started.ok()) {
        started.value().join();
        return 3;
    }
    const bool isDestroyed = owned.use_count() == 1;
    return started.error().number == ErrorNumber::deviceUnavailable && isDestroyed ? 0 : 1;
}

TEST(StartThread, ReturnsAnErrorIfTheSystemAllowsNoFurtherThread) {
    // The child process keeps its only thread in spite of the limit, but cannot start another.
    EXPECT_EQ(test::runInChild(&withoutThreads), 0);
}

} // namespace
} // namespace sonarith
