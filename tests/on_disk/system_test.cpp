// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the class System on the real machine: compares most of its results with the output of the
// machine's own tools.
#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "desktop/system.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"
#include "platform/linux/system/linux_system_information.h"
#include "platform/linux/system/machine_facts.h"
#include "support/command_output.h"
#include "support/fake_settings_store.h"

namespace sonarith {
namespace {

using testing::MatchesRegex;

class SystemOfThisMachine : public ::testing::Test {
  protected:
    test::FakeSettingsStore store;
    MountInfo mounts;
    DriveTable letters{store};
    PathMap paths{letters, mounts};
    LinuxFileSystem files{paths, "/"};
    waiting::WorkerThreads threads;
    PlainWaiting plain;
    LinuxSystemInformation information{threads, plain, [this] { return paths.drives().drives(); },
                                       [this](const std::string& path) {
                                           return paths.logicPathOf(path);
                                       }};
    System system{information, files};
};

TEST_F(SystemOfThisMachine, ReturnsTheSizeAndTypeOfTheRootDrive) {
    std::int64_t total = 0;
    std::int64_t free = 0;
    for (int tries = 0; tries < 300 && total == 0; ++tries) {
        system.DriveInfo("C:\\", total, free); // on a busy machine the first calls may return 0
    }
    std::istringstream df(test::outputOf("df -B1 --output=size,avail / | tail -1"));
    std::int64_t dfTotal = 0;
    std::int64_t dfAvailable = 0;
    df >> dfTotal >> dfAvailable;
    EXPECT_EQ(total, dfTotal);
    // Other programs may write between the two readings. Neither `free` nor df's `avail` includes
    // the space that is reserved for the superuser.
    constexpr double tolerance = 512e6;
    EXPECT_NEAR(static_cast<double>(free), static_cast<double>(dfAvailable), tolerance);
    EXPECT_NEAR(static_cast<double>(system.FastDiskSpace("c:")), static_cast<double>(free),
                tolerance);
    EXPECT_EQ(system.DriveType("C:\\"), "Fixed drive");
    EXPECT_EQ(system.DriveType("?:\\"), "");
}

TEST_F(SystemOfThisMachine, CountsEachDriveOnce) {
    System::DriveCounts counts;
    system.Drives(counts);
    EXPECT_GE(counts.fixed, 1);
    const int all =
        counts.fixed + counts.removable + counts.network + counts.cdRom + counts.ramDisks;
    EXPECT_EQ(all, static_cast<int>(paths.drives().drives().size()));
}

TEST_F(SystemOfThisMachine, ReturnsTheLabelAndSerialNumberOfTheRootDrive) {
    // On a machine without the device manager (udev), neither the program nor findmnt can read
    // the label and the UUID.
    const std::string label = test::outputOf("findmnt -n -o LABEL /");
    EXPECT_EQ(system.VolumeLabel("C:\\"), label.empty() ? "NoName" : label);
    const std::string serial = system.SerialNumber("C:\\");
    EXPECT_THAT(serial, MatchesRegex("[0-9A-F]{4}-[0-9A-F]{4}"));
    if (test::outputOf("findmnt -n -o UUID /").empty()) {
        EXPECT_EQ(serial, "0000-0000");
    }
    EXPECT_EQ(system.VolumeLabel("?:\\"), "");
    EXPECT_EQ(system.SerialNumber("?:\\"), "0000-0000");
}

TEST_F(SystemOfThisMachine, ReturnsTheMemoryThatTheKernelReports) {
    System::Memory memory;
    system.FreeMemory(memory);
    EXPECT_EQ(memory.totalKb,
              std::stoll(test::outputOf("awk '/^MemTotal:/ {print $2}' /proc/meminfo")));
    const auto availableKb =
        std::stoll(test::outputOf("awk '/^MemAvailable:/ {print $2}' /proc/meminfo"));
    // Other programs may use or free memory between the two readings.
    const double tolerance = 0.25 * static_cast<double>(memory.totalKb);
    EXPECT_NEAR(static_cast<double>(memory.availableKb), static_cast<double>(availableKb),
                tolerance);
    EXPECT_NEAR(memory.load,
                100 - 100.0 * static_cast<double>(memory.availableKb) /
                          static_cast<double>(memory.totalKb),
                1.0);
}

TEST_F(SystemOfThisMachine, ReturnsTheNumberOfProcessorsThatAreOnline) {
    System::Processors processors{"none", 0, 0};
    system.SystemInfo(processors);
    EXPECT_EQ(processors.count, std::stoi(test::outputOf("getconf _NPROCESSORS_ONLN")));
    EXPECT_EQ(processors.type, test::outputOf("uname -m") == "x86_64" ? "Intel Pentium" : "none");
    EXPECT_NE(processors.activeMask, 0U);
}

TEST_F(SystemOfThisMachine, ReturnsTheVersionNumberOfTheKernelAsThatOfWindowsNt) {
    System::Version version;
    system.WinVer(version);
    EXPECT_EQ(version.text, "Windows NT");
    EXPECT_EQ(std::to_string(version.major) + "." + std::to_string(version.minor),
              test::outputOf("uname -r | grep -o '^[0-9]*\\.[0-9]*'"));
}

TEST_F(SystemOfThisMachine, ReturnsTheTypeOfTheKeyboardAndTheNumberOfItsFunctionKeys) {
    std::ifstream devices("/proc/bus/input/devices");
    const auto keyboard =
        system_information::keyboardIn((std::stringstream() << devices.rdbuf()).str());
    EXPECT_EQ(system.KeyboardType(), keyboard.present ? "IBM enhanced (101 or 102 key)" : "");
    EXPECT_EQ(system.FunctionKeys(), keyboard.functionKeys);
}

TEST_F(SystemOfThisMachine, ReturnsTheNamesOfTheComputerAndTheUser) {
    EXPECT_EQ(system.ComputerName(), test::outputOf("uname -n"));
    std::string user;
    for (int tries = 0; tries < 300 && user.empty(); ++tries) {
        user = system.UserName(); // on a busy machine the first calls may return no name
    }
    EXPECT_EQ(user, test::outputOf("id -un"));
}

TEST_F(SystemOfThisMachine, ReturnsSystemFoldersThatExist) {
    EXPECT_EQ(system.SystemDir(), paths.logicPathOf("/usr/lib") + "\\");
    EXPECT_EQ(system.WinDir(), paths.logicPathOf("/usr") + "\\");
    const std::string temp = test::outputOf("echo ${TMPDIR:-/tmp}");
    EXPECT_EQ(system.TempDir(), paths.logicPathOf(temp) + "\\");
    for (const std::string& folder : {system.SystemDir(), system.WinDir(), system.TempDir()}) {
        EXPECT_TRUE(files.changeFolder(folder).ok()) << folder;
    }
}

} // namespace
} // namespace sonarith
