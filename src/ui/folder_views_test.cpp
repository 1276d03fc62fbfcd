// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the two views with which a user chooses a folder: the list of folders and the list of
// drives.
#include <QTest>
#include <gmock/gmock.h>

#include "platform/controls/form.h"
#include "support/fake_directories.h"
#include "support/fake_file_system.h"
#include "ui/drive_list_view.h"
#include "ui/folder_list_view.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

class FolderViewsTest : public testing::Test {
  protected:
    FolderViewsTest() {
        disk.addFolder("c:\\music\\one");
        disk.addFolder("c:\\music\\two");
        disk.addFolder("d:\\albums");
        files.setProgramFolder("c:\\music");
        form.load();
        list.resize(200, 300);
        parent.show();
        QCoreApplication::processEvents();
    }
    std::vector<std::string> shown() {
        std::vector<std::string> names;
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            names.push_back(list.model()->index(row, 0).data().toString().toStdString());
        }
        return names;
    }
    QPoint placeOf(int row) { return list.visualRect(list.model()->index(row, 0)).center(); }
    void doubleClick(int row) {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, placeOf(row));
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, placeOf(row));
    }

    test::FakeFileSystem files;
    test::FakeDirectories disk;
    Form form{"frmsearch"};
    DirListBox folder{form, "Dir1", disk, files};
    DriveListBox drive{form, "Drive1", disk, files};
    QWidget parent;
    FolderListView list{folder, "Folder", &parent};
    DriveListView drives{drive, "Drive", &parent};
};

TEST_F(FolderViewsTest, TheFolderListShowsThePathToTheCurrentFolderAndThenItsSubfolders) {
    EXPECT_THAT(shown(), ElementsAre("c:\\", "music", "one", "two"));
    EXPECT_EQ(list.currentIndex().row(), 1);
    EXPECT_EQ(list.accessibleName(), "Folder");
}

TEST_F(FolderViewsTest, AChangeOfFolderByCodeIsShown) {
    folder.setPath("d:\\albums").passOver();
    EXPECT_THAT(shown(), ElementsAre("d:\\", "albums"));
    EXPECT_EQ(list.currentIndex().row(), 1);
}

TEST_F(FolderViewsTest, AClickSelectsAFolderAndADoubleClickEntersIt) {
    int changes = 0;
    folder.onChange = [&] {
        ++changes;
    };
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, placeOf(3));
    EXPECT_EQ(list.currentIndex().row(), 3);
    EXPECT_EQ(folder.path(), "c:\\music");
    doubleClick(3);
    EXPECT_EQ(folder.path(), "c:\\music\\two");
    EXPECT_EQ(changes, 1);
    doubleClick(0);
    EXPECT_EQ(folder.path(), "c:\\");
    EXPECT_THAT(shown(), ElementsAre("c:\\", "music"));
}

TEST_F(FolderViewsTest, ACursorKeySelectsAFolderAndTheReturnKeyEntersIt) {
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(folder.path(), "c:\\music");
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(folder.path(), "c:\\music\\one");
}

TEST_F(FolderViewsTest, AMissingFolderIsNotEntered) {
    disk.removeFolder("c:\\music\\two");
    doubleClick(3);
    EXPECT_EQ(folder.path(), "c:\\music");
    EXPECT_EQ(list.currentIndex().row(), 1);
}

TEST_F(FolderViewsTest, TheFolderIsReadAgainAtF5AndWhenTheListIsShown) {
    disk.addFolder("c:\\music\\new");
    EXPECT_THAT(shown(), ElementsAre("c:\\", "music", "one", "two"));
    QTest::keyClick(&list, Qt::Key_F5);
    EXPECT_THAT(shown(), ElementsAre("c:\\", "music", "new", "one", "two"));
    parent.hide();
    disk.addFolder("c:\\music\\later");
    parent.show();
    EXPECT_THAT(shown(), ElementsAre("c:\\", "music", "later", "new", "one", "two"));
}

TEST_F(FolderViewsTest, DeeperFoldersAreIndented) {
    const QImage image = list.viewport()->grab().toImage();
    const auto firstDarkColumn = [&](int row) {
        const QRect place = list.visualRect(list.model()->index(row, 0));
        for (int x = 0; x < place.width(); ++x) {
            for (int y = place.top(); y <= place.bottom(); ++y) {
                if (qGray(image.pixel(x, y)) < 200) {
                    return x;
                }
            }
        }
        return -1;
    };
    EXPECT_GT(firstDarkColumn(2), firstDarkColumn(0) + 10);
    EXPECT_EQ(firstDarkColumn(2), firstDarkColumn(3));
}

TEST_F(FolderViewsTest, TheListOfDrivesShowsTheDrivesThatExistWhenItOpens) {
    EXPECT_EQ(drives.currentText(), "c:");
    EXPECT_EQ(drives.accessibleName(), "Drive");
    disk.addFolder("e:\\");
    drives.showPopup();
    EXPECT_EQ(drives.count(), 3);
    drives.hidePopup();
}

TEST_F(FolderViewsTest, AChosenDriveIsSetInTheControlAndADriveThatCodeSetsIsShown) {
    int changes = 0;
    drive.onChange = [&] {
        ++changes;
    };
    QTest::keyClick(&drives, Qt::Key_Down);
    EXPECT_EQ(drive.drive(), "d:");
    EXPECT_EQ(changes, 1);
    drive.setDrive("c:\\music").passOver();
    EXPECT_EQ(drives.currentText(), "c:");
}

TEST_F(FolderViewsTest, AMissingDriveCannotBeChosenButAChosenDriveStaysShownWhenRemoved) {
    drives.showPopup();
    disk.removeFolder("d:\\albums");
    disk.removeFolder("d:\\");
    drives.activated(1);
    EXPECT_EQ(drive.drive(), "c:");
    EXPECT_EQ(drives.currentText(), "c:");
    disk.removeFolder("c:\\music\\one");
    disk.removeFolder("c:\\music\\two");
    disk.removeFolder("c:\\music");
    disk.removeFolder("c:\\");
    drives.showPopup();
    EXPECT_EQ(drives.currentText(), "c:");
    drives.hidePopup();
}

} // namespace
} // namespace sonarith
