// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/linux_system_information.h"

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <fstream>
#include <limits>
#include <memory>
#include <mutex>
#include <sstream>
#include <thread>

#include "platform/linux/system/sys_fixture.h"
#include "support/command_output.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using system_information::FakeSys;
using system_information::RemovableFlag;
using system_information::spaceAtLast;

std::string unchanged(const std::string& path) {
    return path;
}

std::string beforeNul(const std::optional<std::string>& text) {
    EXPECT_TRUE(text.has_value());
    EXPECT_EQ(text.value_or("").find('\0') + 1, text.value_or("").size());
    return text.value_or("").substr(0, text.value_or("").find('\0'));
}

// --- this machine, compared with its own tools ---------------------------------------------------

class ThisMachine : public ::testing::Test {
  protected:
    std::vector<Drive> drives = {{'C', "/"}, {'D', "/dev/shm"}, {'H', "/no/such/home"}};
    waiting::WorkerThreads threads;
    PlainWaiting plain;
    LinuxSystemInformation information{threads, plain, [this] { return drives; }, unchanged};
};

TEST_F(ThisMachine, HasTheSizesThatDfPrints) {
    for (const Drive& drive : drives) {
        if (drive.letter == 'H') {
            continue;
        }
        SCOPED_TRACE(drive.mountPoint);
        const auto space = spaceAtLast(information, std::string(1, drive.letter) + ":\\");
        ASSERT_TRUE(space.has_value());
        std::istringstream df(
            test::outputOf("df -B1 --output=size,avail " + drive.mountPoint + " | tail -1"));
        std::int64_t total = 0;
        std::int64_t available = 0;
        df >> total >> available;
        EXPECT_EQ(space->totalBytes, total);
        // Other programs may write to the disk between the two queries.
        constexpr double tolerance = 256e6;
        EXPECT_NEAR(static_cast<double>(space->freeBytes), static_cast<double>(available),
                    tolerance);
    }
}

TEST_F(ThisMachine, HasNoSizesForAHomeFolderOrDriveThatDoesNotExist) {
    EXPECT_FALSE(information.diskSpace("H:\\").has_value());
    EXPECT_FALSE(information.diskSpace("X:\\").has_value());
    EXPECT_FALSE(information.diskSpace("").has_value());
}

TEST_F(ThisMachine, HasTheKindsOfItsDrivesAndTheMountsThatFindmntPrints) {
    const std::string type = test::outputOf("findmnt -n -o FSTYPE --target /");
    ASSERT_FALSE(type.empty());
    // Precondition: the tests run on a fixed disk.
    EXPECT_EQ(information.driveKind("C:\\"), DriveKind::fixed) << type;
    EXPECT_EQ(information.driveKind("c:\\"), DriveKind::fixed);
    EXPECT_EQ(test::outputOf("findmnt -n -o FSTYPE --target /dev/shm | tail -1"), "tmpfs");
    EXPECT_EQ(information.driveKind("D:\\"), DriveKind::fixed);
    EXPECT_EQ(information.driveKind("X:\\"), DriveKind::noRoot);
    system_information::MountTable table("/proc/self/mountinfo");
    EXPECT_TRUE(table.update());
    EXPECT_EQ(table.holding("/")->fileSystemType, type);
    EXPECT_EQ(table.holding("/dev/shm/x")->path, "/dev/shm");
    EXPECT_EQ(table.holding("/dev/shmx")->path,
              test::outputOf("findmnt -n -o TARGET --target /dev"));
}

TEST_F(ThisMachine, HasTheMemoryThatTheKernelPrints) {
    const MemoryStatus memory = information.memoryStatus();
    const std::int64_t kilobytes =
        std::stoll(test::outputOf("awk '/^MemTotal:/ {print $2}' /proc/meminfo"));
    EXPECT_EQ(memory.totalBytes, kilobytes * 1024);
    EXPECT_GT(memory.availableBytes, 0);
    EXPECT_LT(memory.availableBytes, memory.totalBytes);
    EXPECT_GT(memory.loadPercent, 0);
    EXPECT_LT(memory.loadPercent, 100);
}

TEST_F(ThisMachine, HasTheProcessorsThatTheKernelHasOnline) {
    const ProcessorInformation processors = information.processor();
    EXPECT_EQ(processors.count, std::stoi(test::outputOf("getconf _NPROCESSORS_ONLN")));
    EXPECT_EQ(processors.activeMask & 1U, 1U);
    EXPECT_EQ(processors.type == 586, test::outputOf("uname -m") == "x86_64");
}

TEST_F(ThisMachine, HasTheVersionThatUnamePrints) {
    const auto version = information.version();
    ASSERT_TRUE(version.has_value());
    const std::string both = std::to_string(version->major) + "." + std::to_string(version->minor);
    EXPECT_EQ(test::outputOf("uname -r").substr(0, both.size()), both);
}

TEST_F(ThisMachine, HasTheNamesThatItsToolsPrint) {
    EXPECT_EQ(beforeNul(information.computerName()), test::outputOf("uname -n"));
    std::optional<std::string> user;
    for (int tries = 0; tries < 300 && !user; ++tries) {
        user = information.userName(); // may time out on a busy machine
    }
    EXPECT_EQ(beforeNul(user), test::outputOf("id -un"));
}

TEST_F(ThisMachine, HasItsFoldersAsPathsOfTheLogic) {
    const LinuxSystemInformation mapped(
        threads, plain, [] { return std::vector<Drive>(); },
        [](const std::string& path) { return "C:" + path; });
    EXPECT_EQ(beforeNul(mapped.systemFolder()), "C:/usr/lib");
    EXPECT_EQ(beforeNul(mapped.windowsFolder()), "C:/usr");
    EXPECT_EQ(beforeNul(mapped.tempFolder()), "C:" + test::outputOf("echo ${TMPDIR:-/tmp}"));
}

TEST_F(ThisMachine, ReportsAKeyboardTypeIfAndOnlyIfItReportsFunctionKeys) {
    const int type = information.keyboardType();
    EXPECT_EQ(type, information.functionKeys() > 0 ? 4 : 0);
}

TEST_F(ThisMachine, FormatsTheListOfDrivesAsTheInterfaceDefines) {
    std::string buffer(10, ' ');
    EXPECT_EQ(information.logicalDriveStrings(buffer, buffer.size()), 13U);
    EXPECT_EQ(buffer, std::string(10, ' '));
    buffer.assign(13, ' ');
    EXPECT_EQ(information.logicalDriveStrings(buffer, buffer.size()), 12U);
    EXPECT_EQ(buffer, std::string("C:\\\0D:\\\0H:\\\0\0", 13));
    const LinuxSystemInformation without(
        threads, plain, [] { return std::vector<Drive>(); }, unchanged);
    EXPECT_EQ(without.logicalDriveStrings(buffer, buffer.size()), 0U);
}

TEST_F(ThisMachine, ListsItsDrivesOnceWhileTheMountsDoNotChange) {
    int asked = 0;
    const LinuxSystemInformation counted(
        threads, plain,
        [&] {
            ++asked;
            return drives;
        },
        unchanged);
    for (int tick = 0; tick < 3; ++tick) {
        std::string buffer(13, ' ');
        EXPECT_EQ(counted.logicalDriveStrings(buffer, buffer.size()), 12U);
        EXPECT_EQ(counted.driveKind("C:\\"), DriveKind::fixed);
    }
    EXPECT_LE(asked, 3); // 1, unless another program mounts a file system during this test
}

// --- a simulated machine -------------------------------------------------------------------------

class SimulatedMachine : public ::testing::Test {
  protected:
    SimulatedMachine() {
        sys.addDisk("sda", "8:0", RemovableFlag::set);
        sys.addPartition("sda", "sda1", "8:1");
        sys.addLink("by-label", "STICK", "sda1");
        sys.addLink("by-uuid", "1A2B-3C4D", "sda1");
        std::ofstream(sys / "mounts") << "1 0 254:0 / / rw - ext4 /dev/vda rw\n"
                                      << "2 1 8:1 / /media/stick rw - vfat /dev/sda1 rw\n"
                                      << "3 1 0:50 / /net rw - nfs4 host:/music rw\n";
        places.mountList = (sys / "mounts").string();
        places.sys = sys.sys();
        places.disks = sys.disks();
    }
    FakeSys sys;
    InformationPlaces places;
    waiting::WorkerThreads threads;
    PlainWaiting plain;
    std::vector<Drive> drives = {
        {'C', "/"}, {'D', "/media/stick"}, {'E', "/net"}, {'H', "/net/home/jane"}};
};

TEST_F(SimulatedMachine, ReturnsTheKindTheLabelAndTheSerialNumberOfADrive) {
    const LinuxSystemInformation information(
        threads, plain, [this] { return drives; }, unchanged, places);
    EXPECT_EQ(information.driveKind("D:\\"), DriveKind::removable);
    EXPECT_EQ(information.driveKind("E:\\"), DriveKind::network);
    EXPECT_EQ(information.driveKind("H:\\"), DriveKind::network); // a home folder on the server
    EXPECT_EQ(information.volumeInformation("D:\\")->label, "STICK");
    EXPECT_EQ(information.volumeInformation("D:\\")->serialNumber, 0x1A2B3C4DU);
    EXPECT_EQ(information.volumeInformation("E:\\")->label, "");
    EXPECT_EQ(information.volumeInformation("E:\\")->serialNumber, 0U);
    EXPECT_FALSE(information.volumeInformation("X:\\").has_value());
}

TEST_F(SimulatedMachine, WithoutAListOfMountsTheKindOfADriveIsUnknown) {
    places.mountList = "/no/such/list";
    const LinuxSystemInformation information(
        threads, plain, [this] { return drives; }, unchanged, places);
    EXPECT_EQ(information.driveKind("C:\\"), DriveKind::unknown);
    EXPECT_FALSE(information.volumeInformation("C:\\").has_value());
}

TEST_F(SimulatedMachine, TakesTheSerialNumberFromTheEndOfTheUuid) {
    EXPECT_EQ(serialNumberIn("1A2B-3C4D"), 0x1A2B3C4DU);
    EXPECT_EQ(serialNumberIn("0123456789abcdef"), 0x89ABCDEFU);
    EXPECT_EQ(serialNumberIn("3e6be9de-8139-4a2b-9106-a43f08d823a6"), 0x08D823A6U);
    EXPECT_EQ(serialNumberIn(""), 0U);
    EXPECT_EQ(serialNumberIn("xyz"), 0U);
}

TEST_F(SimulatedMachine, ReturnsTheLargestSizesUnchangedAndNothingIfTheReadFails) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const LinuxSystemInformation information(
        threads, plain, [this] { return drives; }, unchanged, places,
        [](const std::string& path) -> std::optional<DiskSpace> {
            return path == "/" ? std::optional(DiskSpace{most, most - 1}) : std::nullopt;
        });
    const auto space = spaceAtLast(information, "C:\\");
    ASSERT_TRUE(space.has_value());
    EXPECT_EQ(space->totalBytes, most);
    EXPECT_EQ(space->freeBytes, most - 1);
    EXPECT_FALSE(information.diskSpace("D:\\").has_value());
}

/// Hangs on the drives of the mount /net until respond() is called.
struct HangingReader {
    std::mutex mutex;
    std::condition_variable changed;
    bool responding = false;
    std::atomic<int> asked = 0;

    std::optional<DiskSpace> read(const std::string& path) {
        if (path != "/net" && path != "/net/home/jane") {
            return DiskSpace{1000, 10};
        }
        ++asked;
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return responding; });
        return DiskSpace{2000, 20};
    }
    void respond() {
        const std::lock_guard lock(mutex);
        responding = true;
        changed.notify_all();
    }
};

TEST_F(SimulatedMachine, AHangingMountIsQueriedOnlyOnceUntilItResponds) {
    const auto reader = std::make_shared<HangingReader>();
    const LinuxSystemInformation information(
        threads, plain, [this] { return drives; }, unchanged, places,
        [reader](const std::string& path) { return reader->read(path); });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(information.diskSpace("E:\\").has_value());
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
    for (int tick = 0; tick < 100; ++tick) {
        EXPECT_FALSE(information.diskSpace("E:\\").has_value());
        EXPECT_FALSE(information.diskSpace("H:\\").has_value()); // on the same mount
        EXPECT_TRUE(spaceAtLast(information, "C:\\").has_value());
        EXPECT_TRUE(spaceAtLast(information, "D:\\").has_value());
    }
    EXPECT_EQ(reader->asked, 1);
    EXPECT_EQ(information.unanswered(), 1U);

    reader->respond();
    while (information.unanswered() > 0) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(spaceAtLast(information, "E:\\").value_or(DiskSpace{}).freeBytes, 20);
    EXPECT_EQ(spaceAtLast(information, "H:\\").value_or(DiskSpace{}).freeBytes, 20);
}

} // namespace
} // namespace sonarith
