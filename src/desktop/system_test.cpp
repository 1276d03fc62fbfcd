// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/system.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <string>

#include "support/fake_file_system.h"
#include "support/fake_system_information.h"

namespace sonarith {
namespace {

class SystemTest : public ::testing::Test {
  protected:
    test::FakeSystemInformation machine;
    test::FakeFileSystem disk;
    System system{machine, disk};
};

// --- drives --------------------------------------------------------------------------------------

TEST_F(SystemTest, DriveInfoReturnsTheTotalAndFreeBytesOfADiskOfAnySize) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t size : {std::int64_t{2'147'483'647}, std::int64_t{2'147'483'648},
                                    std::int64_t{20'000'000'000'000}, largest}) {
        machine.drives["C:\\"].space = DiskSpace{size, size - 1};
        std::int64_t total = 1;
        std::int64_t free = 1;
        system.DriveInfo("C:\\", total, free);
        EXPECT_EQ(total, size);
        EXPECT_EQ(free, size - 1);
    }
}

TEST_F(SystemTest, DriveInfoReturnsZeroForADriveThatCannotBeQueried) {
    machine.drives["D:\\"].space = std::nullopt;
    for (const char* root : {"D:\\", "X:\\"}) {
        std::int64_t total = 1;
        std::int64_t free = 1;
        system.DriveInfo(root, total, free);
        EXPECT_EQ(total, 0) << root;
        EXPECT_EQ(free, 0) << root;
    }
}

TEST_F(SystemTest, DriveTypeNamesFiveKindsOfDrivesAndIsEmptyForOthers) {
    struct Row {
        DriveKind kind;
        const char* text;
    };
    for (const Row& row :
         {Row{DriveKind::unknown, ""}, Row{DriveKind::noRoot, ""},
          Row{DriveKind::removable, "Removable drive"}, Row{DriveKind::fixed, "Fixed drive"},
          Row{DriveKind::network, "Network drive"}, Row{DriveKind::cdRom, "CD-ROM drive"},
          Row{DriveKind::ramDisk, "RAM-disk"}, Row{static_cast<DriveKind>(7), ""}}) {
        machine.drives["C:\\"].kind = row.kind;
        EXPECT_EQ(system.DriveType("C:\\"), row.text);
    }
}

TEST_F(SystemTest, DriveTypeOfADriveThatDoesNotExistIsEmpty) {
    EXPECT_EQ(system.DriveType("X:\\"), "");
}

TEST_F(SystemTest, EachCallOfDrivesAddsToTheCounters) {
    machine.drives["D:\\"].kind = DriveKind::fixed;
    machine.drives["E:\\"].kind = DriveKind::removable;
    machine.drives["F:\\"].kind = DriveKind::network;
    machine.drives["G:\\"].kind = DriveKind::cdRom;
    machine.drives["H:\\"].kind = DriveKind::ramDisk;
    machine.drives["I:\\"].kind = DriveKind::unknown;
    System::DriveCounts counts;
    system.Drives(counts);
    system.Drives(counts);
    EXPECT_EQ(counts.fixed, 4);
    EXPECT_EQ(counts.removable, 2);
    EXPECT_EQ(counts.network, 2);
    EXPECT_EQ(counts.cdRom, 2);
    EXPECT_EQ(counts.ramDisks, 2);
}

TEST_F(SystemTest, SerialNumberHasTwoGroupsOfFourDigits) {
    machine.drives["C:\\"].volume = VolumeInformation{"", 0x1A2B3C4D};
    EXPECT_EQ(system.SerialNumber("C:\\"), "1A2B-3C4D");
    machine.drives["C:\\"].volume = VolumeInformation{"", 0xF};
    EXPECT_EQ(system.SerialNumber("C:\\"), "0000-000F");
    EXPECT_EQ(system.SerialNumber("X:\\"), "0000-0000");
}

TEST_F(SystemTest, VolumeLabelEndsAtItsFirstNulAndAnEmptyLabelBecomesTheWordNoName) {
    machine.drives["C:\\"].volume = VolumeInformation{"MUSIC", 0};
    EXPECT_EQ(system.VolumeLabel("C:\\"), "MUSIC");
    machine.drives["C:\\"].volume = VolumeInformation{std::string("A\0B", 3), 0};
    EXPECT_EQ(system.VolumeLabel("C:\\"), "A");
    machine.drives["C:\\"].volume = VolumeInformation{"", 0};
    EXPECT_EQ(system.VolumeLabel("C:\\"), "NoName");
}

TEST_F(SystemTest, VolumeLabelIsEmptyForADriveThatDoesNotExist) {
    EXPECT_EQ(system.VolumeLabel("X:\\"), "");
}

TEST_F(SystemTest, FastDiskSpaceEntersTheDriveAndThenThePreviousFolder) {
    disk.addFolder("d:\\");
    disk.addFolder("c:\\music");
    disk.changeFolder("c:\\music").passOver();
    disk.log.clear();
    machine.drives = {{"d:\\", {DriveKind::fixed, DiskSpace{9'000'000'000, 5'000'000'000}, {}}}};
    EXPECT_EQ(system.FastDiskSpace("d:"), 5'000'000'000);
    EXPECT_EQ(disk.currentFolder(), "c:\\music");
    EXPECT_THAT(disk.log, testing::ElementsAre("changeDrive d:", "changeDrive c:\\music",
                                               "changeFolder c:\\music"));
}

TEST_F(SystemTest, FastDiskSpaceIsZeroIfTheDriveCannotBeEnteredOrQueried) {
    disk.addFolder("d:\\");
    EXPECT_EQ(system.FastDiskSpace("x:"), 0); // no such drive
    EXPECT_EQ(disk.log.size(), 1U);
    machine.drives["d:\\"].space = std::nullopt; // a drive whose query fails
    EXPECT_EQ(system.FastDiskSpace("d:"), 0);
    EXPECT_EQ(disk.log.back().substr(0, 13), "changeFolder ");
}

// --- numbers -------------------------------------------------------------------------------------

TEST_F(SystemTest, PutPointsSeparatesGroupsOfThreeDigits) {
    EXPECT_EQ(System::PutPoints(0), "0");
    EXPECT_EQ(System::PutPoints(999), "999");
    EXPECT_EQ(System::PutPoints(1000), "1.000");
    EXPECT_EQ(System::PutPoints(123456), "123.456"); // no leading point
    EXPECT_EQ(System::PutPoints(1234567), "1.234.567");
    EXPECT_EQ(System::PutPoints(2147483647), "2.147.483.647");
    EXPECT_EQ(System::PutPoints(-123456), "-123.456");
    EXPECT_EQ(System::PutPoints(-2147483648), "-2.147.483.648");
}

TEST_F(SystemTest, FreeMemoryIsCountedInWholeKilobytes) {
    machine.memory = {42, 16'000'000'000, 1536};
    System::Memory memory;
    system.FreeMemory(memory);
    EXPECT_EQ(memory.load, 42);
    EXPECT_EQ(memory.totalKb, 15'625'000);
    EXPECT_EQ(memory.availableKb, 2); // halves are rounded to even
    machine.memory = {42, 512, 513};
    system.FreeMemory(memory);
    EXPECT_EQ(memory.totalKb, 0);
    EXPECT_EQ(memory.availableKb, 1);
}

TEST_F(SystemTest, FunctionKeysIsTheNumberThatTheMachineReports) {
    EXPECT_EQ(system.FunctionKeys(), 12);
}

TEST_F(SystemTest, KeyboardTypeNamesTheTypes1To7AndIsEmptyForOthers) {
    const char* names[] = {"",
                           "IBM PC/XT or compatible (83 key)",
                           "Olivetti \"ico\" (102 key)",
                           "IBM PC/AT or compatible (84 key)",
                           "IBM enhanced (101 or 102 key)",
                           "Nokia 1050 or compatible",
                           "Nokia 9140 or compatible",
                           "Japanese",
                           ""};
    for (int type = 0; type < 9; ++type) {
        machine.keyboard = type;
        EXPECT_EQ(system.KeyboardType(), names[type]) << type;
    }
    machine.keyboard = -1;
    EXPECT_EQ(system.KeyboardType(), "");
}

TEST_F(SystemTest, SystemInfoKeepsThePreviousTypeForAProcessorWithoutAName) {
    System::Processors processors;
    machine.processorNow = {386, 1, 1};
    system.SystemInfo(processors);
    EXPECT_EQ(processors.type, "80386");
    machine.processorNow = {486, 1, 1};
    system.SystemInfo(processors);
    EXPECT_EQ(processors.type, "80486");
    machine.processorNow = {586, 4, 0xB};
    system.SystemInfo(processors);
    EXPECT_EQ(processors.type, "Intel Pentium");
    EXPECT_EQ(processors.count, 4);
    EXPECT_EQ(processors.activeMask, 0xBU);
    machine.processorNow = {8664, 2, 3};
    system.SystemInfo(processors);
    EXPECT_EQ(processors.type, "Intel Pentium");
    EXPECT_EQ(processors.count, 2);
}

TEST_F(SystemTest, WinVerHasNamesForThreePlatforms) {
    System::Version version{7, 7, "x"};
    machine.versionNow = SystemVersion{0, 3, 10};
    system.WinVer(version);
    EXPECT_EQ(version.text, "Windows 3.10");
    machine.versionNow = SystemVersion{1, 4, 0};
    system.WinVer(version);
    EXPECT_EQ(version.text, "Windows 95");
    machine.versionNow = SystemVersion{2, 6, 1};
    system.WinVer(version);
    EXPECT_EQ(version.text, "Windows NT");
    EXPECT_EQ(version.major, 6);
    EXPECT_EQ(version.minor, 1);
    machine.versionNow = std::nullopt;
    system.WinVer(version);
    EXPECT_EQ(version.text, "");
    EXPECT_EQ(version.major, 0);
    EXPECT_EQ(version.minor, 0);
}

// --- texts in buffers ----------------------------------------------------------------------------

std::string inBuffer(const std::string& text) {
    return text + '\0' + std::string(5, ' ');
}

TEST_F(SystemTest, FoldersEndWithOneBackslash) {
    machine.temp = std::string("C:\\tmp") + '\0';
    machine.system = std::string("C:\\usr\\lib\\") + '\0';
    machine.windows = "C:\\"; // without a NUL
    EXPECT_EQ(system.TempDir(), "C:\\tmp\\");
    EXPECT_EQ(system.SystemDir(), "C:\\usr\\lib\\");
    EXPECT_EQ(system.WinDir(), "C:\\");
}

TEST_F(SystemTest, NamesEndWithoutABackslash) {
    machine.computer = inBuffer("desk");
    machine.user = inBuffer("jane");
    EXPECT_EQ(system.ComputerName(), "desk");
    EXPECT_EQ(system.UserName(), "jane");
}

TEST_F(SystemTest, TextsEndAtTheirFirstNulOrElseBeforeTheirTrailingBlanks) {
    machine.user = std::string("jane  \0rest   ", 14);
    EXPECT_EQ(system.UserName(), "jane  ");
    machine.user = "jane  ";
    EXPECT_EQ(system.UserName(), "jane");
    machine.user = "    ";
    EXPECT_EQ(system.UserName(), "");
}

TEST_F(SystemTest, TextsAreEmptyOnFailure) {
    for (auto* text :
         {&machine.temp, &machine.system, &machine.windows, &machine.computer, &machine.user}) {
        *text = std::nullopt;
    }
    EXPECT_EQ(system.TempDir() + system.SystemDir() + system.WinDir() + system.ComputerName() +
                  system.UserName(),
              "");
}

TEST_F(SystemTest, TextsLongerThan49CharactersAreEmpty) {
    machine.temp = inBuffer(std::string(49, 'x'));
    machine.user = inBuffer(std::string(49, 'x'));
    EXPECT_EQ(system.TempDir(), std::string(49, 'x') + "\\");
    EXPECT_EQ(system.UserName(), std::string(49, 'x'));
    machine.temp = inBuffer(std::string(50, 'x'));
    machine.user = inBuffer(std::string(50, 'x'));
    EXPECT_EQ(system.TempDir(), "");
    EXPECT_EQ(system.UserName(), "");
}

} // namespace
} // namespace sonarith
