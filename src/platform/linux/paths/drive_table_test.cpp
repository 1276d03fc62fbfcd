// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/drive_table.h"

#include <gmock/gmock.h>

#include "support/fake_settings_store.h"

namespace sonarith {
namespace {

using test::FakeSettingsStore;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::vector<MountPoint> mountsOn(std::initializer_list<const char*> points) {
    std::vector<MountPoint> mounts;
    for (const char* point : points) {
        mounts.push_back({point, "ext4"});
    }
    return mounts;
}

TEST(DriveTable, GivesTheRootTheLetterCAndDoesNotStoreThisLetter) {
    FakeSettingsStore store;
    DriveTable table(store);
    table.update(mountsOn({"/"}));
    EXPECT_THAT(table.drives(), ElementsAre(Drive{'C', "/"}));
    EXPECT_THAT(store.writes, IsEmpty());
}

TEST(DriveTable, AssignsLettersInTheOrderOfTheMountsAndStoresThem) {
    FakeSettingsStore store;
    DriveTable table(store);
    table.update(mountsOn({"/", "/home", "/media/a"}));
    EXPECT_THAT(table.drives(),
                ElementsAre(Drive{'C', "/"}, Drive{'D', "/home"}, Drive{'E', "/media/a"}));
    EXPECT_EQ(store.held("Drives", "D"), "/home");
    EXPECT_EQ(store.held("Drives", "E"), "/media/a");
}

TEST(DriveTable, KeepsAssignedLettersInLaterRunsEvenForDisksThatAreNotMounted) {
    FakeSettingsStore store;
    DriveTable(store).update(mountsOn({"/", "/media/a", "/media/b"}));
    DriveTable later(store);
    later.update(mountsOn({"/", "/media/c", "/media/b"}));
    EXPECT_THAT(later.drives(),
                ElementsAre(Drive{'C', "/"}, Drive{'E', "/media/b"}, Drive{'F', "/media/c"}));
    EXPECT_EQ(store.held("Drives", "D"), "/media/a"); // not mounted, but still assigned
}

TEST(DriveTable, HasNoDriveForALetterWhoseDiskIsNotMounted) {
    FakeSettingsStore store;
    store.put("Drives", "D", "/media/a");
    DriveTable table(store);
    table.update(mountsOn({"/"}));
    EXPECT_EQ(table.mountPointOf('D'), std::nullopt);
    table.update(mountsOn({"/", "/media/a"}));
    EXPECT_EQ(table.mountPointOf('d'), "/media/a");
}

TEST(DriveTable, FindsTheDeepestDriveThatContainsAPath) {
    FakeSettingsStore store;
    DriveTable table(store);
    table.update(mountsOn({"/home/me/disk", "/home"}));
    EXPECT_EQ(table.driveOf("/home/me/disk/x").mountPoint, "/home/me/disk");
    EXPECT_EQ(table.driveOf("/home/me/diskette").mountPoint, "/home");
    EXPECT_EQ(table.driveOf("/home").mountPoint, "/home");
    EXPECT_EQ(table.driveOf("/homes").letter, 'C');
    EXPECT_EQ(table.driveOf("/").letter, 'C');
}

TEST(DriveTable, TreatsALetterWithAnInvalidValueInTheStoreAsFree) {
    FakeSettingsStore store;
    store.put("Drives", "D", "garbage");
    store.put("Drives", "E", "/home");
    DriveTable table(store);
    table.update(mountsOn({"/home", "/media/a"}));
    EXPECT_THAT(table.drives(),
                ElementsAre(Drive{'C', "/"}, Drive{'D', "/media/a"}, Drive{'E', "/home"}));
}

TEST(DriveTable, TreatsMountsAsPartOfTheEnclosingDriveIfNoLetterIsFree) {
    FakeSettingsStore store;
    DriveTable table(store);
    std::vector<MountPoint> mounts;
    for (int i = 0; i < 40; ++i) {
        mounts.push_back({"/m/" + std::to_string(i), "ext4"});
    }
    table.update(mounts);
    EXPECT_THAT(table.drives(), SizeIs(23)); // C: to Z: without H:, the letter of the home folder
    EXPECT_EQ(table.driveOf("/m/21/x").letter, 'Z');
    EXPECT_EQ(table.driveOf("/m/22/x").letter, 'C');
}

// --- the home folder ------------------------------------------------------------------------

TEST(DriveTable, GivesTheHomeFolderTheLetterHAndDoesNotStoreThisLetter) {
    FakeSettingsStore store;
    DriveTable table(store, "/home/jane.doe/");
    EXPECT_THAT(table.drives(), ElementsAre(Drive{'C', "/"}, Drive{'H', "/home/jane.doe"}));
    table.update(mountsOn({"/", "/home"}));
    EXPECT_THAT(table.drives(),
                ElementsAre(Drive{'C', "/"}, Drive{'D', "/home"}, Drive{'H', "/home/jane.doe"}));
    EXPECT_EQ(table.mountPointOf('h'), "/home/jane.doe");
    EXPECT_EQ(store.writes, (std::vector<test::StoreWrite>{{"Drives", "D", "/home"}}));
}

TEST(DriveTable, UsesTheHomeLetterForTheHomeFolderButNotForAMountInTheHomeFolder) {
    FakeSettingsStore store;
    DriveTable table(store, "/home/jane");
    table.update(mountsOn({"/home", "/home/jane/stick"}));
    EXPECT_EQ(table.driveOf("/home/jane").letter, 'H');
    EXPECT_EQ(table.driveOf("/home/jane/music").letter, 'H');
    EXPECT_EQ(table.driveOf("/home/janet").letter, 'D');
    EXPECT_EQ(table.driveOf("/home/jane/stick/a.wav").letter, 'E');
    EXPECT_EQ(table.driveOf("/home/jane/sticks").letter, 'H');
}

TEST(DriveTable, HasNoHomeLetterIfTheHomeFolderIsTheRootOrUnknown) {
    FakeSettingsStore store;
    for (const char* home : {"/", "", "//"}) {
        DriveTable table(store, home);
        table.update(mountsOn({"/"}));
        EXPECT_THAT(table.drives(), ElementsAre(Drive{'C', "/"}));
        EXPECT_EQ(table.mountPointOf('H'), std::nullopt);
    }
}

TEST(DriveTable, NeverAssignsTheHomeLetterToAMount) {
    FakeSettingsStore store;
    DriveTable(store).update(mountsOn({"/1", "/2", "/3", "/4", "/5"}));
    EXPECT_EQ(store.held("Drives", "G"), "/4");
    EXPECT_EQ(store.held("Drives", "H"), std::nullopt);
    EXPECT_EQ(store.held("Drives", "I"), "/5");
}

TEST(DriveTable, TheHomeFolderTakesPrecedenceOverAMountThatHadTheLetterH) {
    FakeSettingsStore store;
    store.put("Drives", "H", "/media/a");
    DriveTable table(store, "/home/jane");
    table.update(mountsOn({"/", "/media/a"}));
    EXPECT_THAT(table.drives(),
                ElementsAre(Drive{'C', "/"}, Drive{'D', "/media/a"}, Drive{'H', "/home/jane"}));
}

TEST(DriveTable, AMountOnTheHomeFolderGetsNoLetterBesidesTheHomeLetter) {
    FakeSettingsStore store;
    DriveTable table(store, "/home/jane");
    table.update(mountsOn({"/", "/home/jane", "/media/a"}));
    EXPECT_THAT(table.drives(),
                ElementsAre(Drive{'C', "/"}, Drive{'D', "/media/a"}, Drive{'H', "/home/jane"}));
}

TEST(DriveTable, AMountOnTheHomeFolderKeepsAStoredLetterBesidesTheHomeLetter) {
    for (const char* letter : {"D", "K"}) {
        FakeSettingsStore store;
        store.put("Drives", letter, "/home/jane");
        DriveTable table(store, "/home/jane");
        table.update(mountsOn({"/", "/home/jane"}));
        EXPECT_EQ(table.mountPointOf(letter[0]), "/home/jane");
        EXPECT_EQ(table.mountPointOf('H'), "/home/jane");
        EXPECT_EQ(table.driveOf("/home/jane/music").letter, 'H');
    }
}

} // namespace
} // namespace sonarith
