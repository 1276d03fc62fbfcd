// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/drive_roots.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "support/fake_system_information.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DriveRoots, AreEmptyForAMachineWithoutDrives) {
    test::FakeSystemInformation machine;
    machine.drives.clear();
    EXPECT_THAT(driveRoots(machine), IsEmpty());
}

TEST(DriveRoots, AreInTheOrderOfTheMachinesList) {
    test::FakeSystemInformation machine; // lists its drives in the order of their letters
    machine.drives = {{"C:\\", {}}, {"A:\\", {}}};
    EXPECT_THAT(driveRoots(machine), ElementsAre("A:\\", "C:\\"));
}

TEST(DriveRoots, AreCompleteEvenIfTheFirstBufferIsTooSmall) {
    test::FakeSystemInformation machine;
    // The fake has C: by default. With these drives, its list is longer than the ten characters of
    // the buffer that driveRoots() passes first.
    for (const char* root : {"D:\\", "E:\\", "F:\\"}) {
        machine.drives[root] = {};
    }
    EXPECT_THAT(driveRoots(machine), ElementsAre("C:\\", "D:\\", "E:\\", "F:\\"));
}

TEST(DriveRoots, AreRequestedAgainAsLongAsTheListGrows) {
    // Each request for the list first adds a drive, until there are six.
    test::FakeSystemInformation machine;
    std::vector<std::string> now = {"C:\\", "D:\\"};
    int asked = 0;
    machine.listOfRoots = [&] {
        ++asked;
        if (now.size() < 6) {
            now.push_back(std::string(1, static_cast<char>('C' + now.size())) + ":\\");
        }
        return now;
    };
    EXPECT_THAT(driveRoots(machine), ElementsAre("C:\\", "D:\\", "E:\\", "F:\\", "G:\\", "H:\\"));
    EXPECT_EQ(asked, 5);
}

TEST(DriveRoots, OmitAnIncompleteItemAtTheEnd) {
    test::FakeSystemInformation machine;
    machine.listOfRoots = [] {
        return std::vector<std::string>{"C:\\", "D:"};
    };
    EXPECT_THAT(driveRoots(machine), ElementsAre("C:\\"));
}

TEST(DriveRoots, AreAtMostAHundred) {
    test::FakeSystemInformation machine;
    machine.listOfRoots = [] {
        return std::vector<std::string>(101, "C:\\");
    };
    EXPECT_EQ(driveRoots(machine).size(), 100U);
}

} // namespace
} // namespace sonarith
