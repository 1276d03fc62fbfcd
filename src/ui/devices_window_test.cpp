// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/devices_window.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTest>
#include <gmock/gmock.h>

#include "ui/tool_tip.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DevicesWindowTest : public testing::Test {
  protected:
    struct Devices final : DeviceChoice {
        explicit Devices(DevicesWindowTest& test_) : test(test_) {}
        DevicesWindowTest& test;

        [[nodiscard]] std::vector<std::string> opticalDrives() const override { return test.found; }
        [[nodiscard]] std::vector<DeviceEntry> outputs() const override { return test.outputs; }
        [[nodiscard]] std::vector<DeviceEntry> sources() const override { return {{"none", ""}}; }
        [[nodiscard]] std::string drive() const override { return test.drive; }
        [[nodiscard]] std::string output() const override { return test.output; }
        [[nodiscard]] std::string source() const override { return test.source; }
        void setDrive(const std::string& name) override {
            test.drive = name;
            test.log.push_back("drive " + name);
        }
        void setOutput(const std::string& name) override { test.output = name; }
        void setSource(const std::string& name) override { test.source = name; }
        [[nodiscard]] std::string report() const override { return test.report; }
    };
    DevicesWindowCalls calls() {
        return {
            .driveInUse = [this] { return inUse; },
            .readChosenDisc =
                [this] {
                    log.push_back("refresh " + drive);
                    if (onRefresh) {
                        std::exchange(onRefresh, nullptr)();
                    }
                },
            .notices = [this] { return notices; },
            .pickImage = [this](const std::string&) { return picked; },
        };
    }
    template <typename Widget>
    Widget& child(const char* name) {
        auto* found_ = window.findChild<Widget*>(name);
        EXPECT_NE(found_, nullptr) << name;
        return *found_;
    }
    bool inUse = false;
    std::vector<std::string> listed() {
        std::vector<std::string> texts;
        const auto& list = child<QListWidget>("drives");
        for (int i = 0; i < list.count(); ++i) {
            texts.push_back(list.item(i)->text().toStdString());
        }
        return texts;
    }
    void clickDrive(int row) {
        auto& list = child<QListWidget>("drives");
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                          list.visualItemRect(list.item(row)).center());
    }

    std::vector<std::string> found = {"/dev/sr0", "/dev/sr1"};
    std::vector<DeviceEntry> outputs = {{"default", "Default"}, {"none", "No sound"}};
    std::string drive;
    std::string output = "default";
    std::string source;
    std::string report;
    std::vector<std::string> notices;
    std::string picked;
    std::function<void()> onRefresh;
    std::vector<std::string> log;
    Devices devices{*this};
    DevicesWindow window{devices, calls()};
};

TEST_F(DevicesWindowTest, ListsADefaultEntryAndThenAllDrives) {
    window.open();
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(window.isModal());
    EXPECT_EQ(window.windowTitle(), "Devices");
    EXPECT_THAT(listed(), ElementsAre("First drive found", "/dev/sr0", "/dev/sr1"));
    EXPECT_EQ(child<QListWidget>("drives").currentRow(), 0);
    EXPECT_THAT(log, IsEmpty()) << "opening the window must not choose a drive";
}

// Qt reports the selected entry of a drop-down list as the accessible name of the list, so a label
// must state the purpose of the list.
TEST_F(DevicesWindowTest, EachBoxHasALabelForScreenReaders) {
    window.open();
    const QList<QComboBox*> boxes = window.findChildren<QComboBox*>();
    EXPECT_EQ(boxes.size(), 2);
    for (QComboBox* box : boxes) {
        const auto labels =
            QAccessible::queryAccessibleInterface(box)->relations(QAccessible::Label);
        ASSERT_EQ(labels.size(), 1) << box->objectName().toStdString();
        EXPECT_EQ(labels.first().first->text(QAccessible::Name), box->accessibleName());
    }
}

TEST_F(DevicesWindowTest, TheStoredChoiceIsListedLastIfItIsAnImageOrAMissingDrive) {
    drive = "/m/Die Lieder.cue";
    window.open();
    EXPECT_EQ(listed().back(), "Disc image: Die Lieder.cue");
    drive = "/dev/sr7";
    window.open();
    EXPECT_EQ(listed().back(), "/dev/sr7 (not found)");
    EXPECT_EQ(child<QListWidget>("drives").currentRow(), 3);
}

TEST_F(DevicesWindowTest, AClickOnADriveStoresItThenReadsItsDiscThenShowsTheReport) {
    window.open();
    onRefresh = [&] {
        report = "Sector 12 is torn.";
    };
    clickDrive(1);
    EXPECT_THAT(log, ElementsAre("drive /dev/sr0", "refresh /dev/sr0"));
    EXPECT_EQ(child<QPlainTextEdit>("report").toPlainText(), "Sector 12 is torn.");
    EXPECT_EQ(child<QListWidget>("drives").currentRow(), 1);
}

TEST_F(DevicesWindowTest, CursorKeysChooseNoDriveButTheReturnKeyChoosesTheCurrentRow) {
    window.open();
    auto& list = child<QListWidget>("drives");
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_THAT(log, IsEmpty());
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(drive, "/dev/sr1");
}

TEST_F(DevicesWindowTest, EachPickOfAnImageStoresItsPathByteForByteAndReadsTheImage) {
    window.open();
    picked = "/m/caf\xE9.toc";
    child<QPushButton>("pickImage").click();
    child<QPushButton>("pickImage").click();
    EXPECT_THAT(log, ElementsAre("drive /m/caf\xE9.toc", "refresh /m/caf\xE9.toc",
                                 "drive /m/caf\xE9.toc", "refresh /m/caf\xE9.toc"));
    // The user can then choose the entry "First drive found", which is stored as an empty name.
    clickDrive(0);
    EXPECT_EQ(drive, "");
}

TEST_F(DevicesWindowTest, ChoosesNothingIfNoImageIsPicked) {
    window.open();
    child<QPushButton>("pickImage").click();
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(DevicesWindowTest, AChoiceDuringARefreshCausesAnotherRefresh) {
    window.open();
    onRefresh = [&] {
        window.chooseDrive("/dev/sr1");
        log.push_back("first refresh ends");
    };
    window.chooseDrive("/dev/sr0");
    EXPECT_THAT(log, ElementsAre("drive /dev/sr0", "refresh /dev/sr0", "drive /dev/sr1",
                                 "first refresh ends", "refresh /dev/sr1"));
}

TEST_F(DevicesWindowTest, OutputAndSourceAreStoredWhenChosen) {
    window.open();
    auto& box = child<QComboBox>("output");
    EXPECT_EQ(box.currentText(), "Default");
    QTest::keyClick(&box, Qt::Key_Down);
    EXPECT_EQ(output, "none");
    // While no source is stored, the sources' box has an additional first entry "None".
    EXPECT_EQ(child<QComboBox>("source").currentText(), "None");
    QTest::keyClick(&child<QComboBox>("source"), Qt::Key_Down);
    EXPECT_EQ(source, "none");
}

TEST_F(DevicesWindowTest, AStoredOutputThatIsMissingIsShownAndStaysStored) {
    output = "hw:7";
    window.open();
    EXPECT_EQ(child<QComboBox>("output").currentText(), "hw:7 (not found)");
    EXPECT_EQ(output, "hw:7");
}

TEST_F(DevicesWindowTest, EscapeAndTheCloseButtonHideTheWindow) {
    window.open();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    window.open();
    child<QPushButton>("close").click();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(DevicesWindowTest, ToolTipsShowMarkupInNamesAsPlainText) {
    drive = "/m/<b>Die Lieder</b>.cue";
    outputs = {{"hw:1", "<b>Loud</b> & clear"}};
    window.open();
    const auto& drives = child<QListWidget>("drives");
    EXPECT_EQ(drives.item(drives.count() - 1)->toolTip(),
              plainToolTip(QStringLiteral("/m/<b>Die Lieder</b>.cue")));
    EXPECT_EQ(child<QComboBox>("output").itemData(1, Qt::ToolTipRole).toString(),
              plainToolTip(QStringLiteral("<b>Loud</b> & clear")));
}

TEST_F(DevicesWindowTest, UpdatesTheDiscReportWhileTheWindowIsOpen) {
    window.open();
    auto& shown = child<QPlainTextEdit>("report");
    report = "Sector 12 is torn.";
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown.toPlainText() == "Sector 12 is torn."; }));
    // An update with an unchanged report keeps the selection of the text.
    shown.selectAll();
    QTest::qWait(600); // longer than the interval between two updates
    EXPECT_TRUE(shown.textCursor().hasSelection());
    report.clear();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown.toPlainText() == "No problems were found."; }));
}

TEST_F(DevicesWindowTest, DoesNotUpdateTheDiscReportWhileTheWindowIsHidden) {
    window.open();
    window.hide();
    report = "Sector 12 is torn.";
    QTest::qWait(600); // longer than the interval between two updates
    EXPECT_EQ(child<QPlainTextEdit>("report").toPlainText(), "No problems were found.");
}

TEST_F(DevicesWindowTest, AClickOnTheChosenDriveReadsItAgainButADoubleClickReadsItOnce) {
    found = {"/dev/sr0"};
    window.open();
    auto& list = child<QListWidget>("drives");
    clickDrive(1);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {},
                       list.visualItemRect(list.item(1)).center());
    EXPECT_THAT(log, ElementsAre("drive /dev/sr0", "refresh /dev/sr0"));
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    clickDrive(1);
    EXPECT_THAT(log, ElementsAre("drive /dev/sr0", "refresh /dev/sr0", "drive /dev/sr0",
                                 "refresh /dev/sr0"));
}

TEST_F(DevicesWindowTest, AnImageInAFolderBelowDevIsListedAsAnImage) {
    drive = "/dev/shm/x.cue";
    window.open();
    EXPECT_EQ(listed().back(), "Disc image: x.cue");
}

TEST_F(DevicesWindowTest, EachOfItsControlsHasAnAccessibleName) {
    window.open();
    for (const char* name : {"drives", "pickImage", "output", "source", "report", "close"}) {
        EXPECT_FALSE(child<QWidget>(name).accessibleName().isEmpty()) << name;
    }
}

TEST_F(DevicesWindowTest, RefusesAChoiceAndShowsAMessageWhileTheDriveIsInUse) {
    drive = "/dev/sr0";
    inUse = true;
    window.chooseDrive("/discs/other.cue");
    EXPECT_THAT(log, IsEmpty());
    EXPECT_EQ(drive, "/dev/sr0");
    // An image can be dropped on another window while this window is hidden. The user must see
    // the message.
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(child<QPlainTextEdit>("report").toPlainText(),
              "The drive is in use. Choose again after the action has ended.");
    inUse = false;
    window.chooseDrive("/discs/other.cue");
    EXPECT_THAT(log, ElementsAre("drive /discs/other.cue", "refresh /discs/other.cue"));
}

TEST_F(DevicesWindowTest, ShowsTheNoticesBelowTheReportNewestFirst) {
    report = "Sector 12 is torn.";
    notices = {"first", "second"};
    window.open();
    EXPECT_EQ(child<QPlainTextEdit>("report").toPlainText(),
              "Sector 12 is torn.\n\nNotices, newest first:\nsecond\nfirst");
}

} // namespace
} // namespace sonarith
