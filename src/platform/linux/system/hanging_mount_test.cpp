// SPDX-License-Identifier: GPL-3.0-or-later
// Tests LinuxSystemInformation with a real mount on which calls hang: a FUSE file system
// without a process that serves its requests. The test is skipped if this file system cannot be
// mounted, for example because the user has no permission to mount.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

#include "platform/linux/system/linux_system_information.h"
#include "platform/linux/system/sys_fixture.h"
#include "support/forked_child.h"
#include "support/small_disk.h"
#include "support/temp_folder.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;

int threadsNow() {
    int count = 0;
    for ([[maybe_unused]] const auto& thread :
         std::filesystem::directory_iterator("/proc/self/task")) {
        ++count;
    }
    return count;
}

/// Mounts a FUSE file system and returns its descriptor, on which no request is ever served; -1 on
/// failure.
int mountUnserved(const std::string& point) {
    const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (device < 0 || !test::leaveSharedMounts()) {
        return -1;
    }
    const std::string options =
        "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0";
    const bool mounted =
        ::mount("unserved", point.c_str(), "fuse.test", MS_NODEV | MS_NOSUID, options.c_str()) == 0;
    return mounted ? device : -1;
}

/// Returns 0 if all expectations hold, and mayNotMount if the file system cannot be mounted.
/// Otherwise returns the number in the `return` of the expectation that does not hold.
int lookAtAHangingMount(const std::string& point) {
    const int device = mountUnserved(point);
    if (device < 0) {
        return test::mayNotMount;
    }
    const std::vector<Drive> drives = {{'C', "/"}, {'D', point}};
    waiting::WorkerThreads threads;
    PlainWaiting plain;
    const LinuxSystemInformation information(
        threads, plain, [&] { return drives; }, [](const std::string& path) { return path; });
    if (information.driveKind("D:\\") != DriveKind::fixed) {
        return 1;
    }
    if (!system_information::spaceAtLast(information, "C:\\")) {
        return 7;
    }
    const int threadsBefore = threadsNow(); // includes the thread of the previous query
    const auto start = std::chrono::steady_clock::now();
    if (information.diskSpace("D:\\")) {
        return 2;
    }
    const auto waited = std::chrono::steady_clock::now() - start;
    if (waited < 100ms || waited > 5s) {
        return 3;
    }
    for (int tick = 0; tick < 50; ++tick) {
        if (information.diskSpace("D:\\") ||
            !system_information::spaceAtLast(information, "C:\\")) {
            return 4;
        }
    }
    for (int patience = 0; patience < 5000 && threadsNow() > threadsBefore + 1; ++patience) {
        ::usleep(1000); // on a busy machine, slow queries for C: occupy threads, too
    }
    if (information.unanswered() != 1 || threadsNow() != threadsBefore + 1) {
        return 5;
    }
    ::close(device); // the kernel ends the waiting call with an error
    for (int patience = 0; patience < 5000 && information.unanswered() > 0; ++patience) {
        ::usleep(1000);
    }
    return information.unanswered() == 0 && !information.diskSpace("D:\\") ? 0 : 6;
}

TEST(AHangingMount, BlocksOneThreadAndNothingElse) {
    const fakes::TempFolder folder;
    const int answer =
        test::runInChild([&] { return lookAtAHangingMount(folder.path().string()); });
    if (answer == test::mayNotMount) {
        GTEST_SKIP() << "the FUSE file system cannot be mounted";
    }
    EXPECT_EQ(answer, 0);
}

} // namespace
} // namespace sonarith
