// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_shell.h"

#include <fstream>

#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

#include "platform/controls/basic_controls.h"
#include "platform/qt/dialog_loop.h"

#include "platform/controls/form.h"
#include "platform/controls/picture_box.h"
#include "support/fake_notices.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QtShellTest : public testing::Test {
  protected:
    QObject context;
    QTemporaryDir folder;
    std::vector<std::string> opened;
    test::FakeNotices notices;
    bool pagesExist = true;
    int pagesShown = 0;
    QtShell shell{"Sonarith v2.0",
                  {.version = "2.0.7", .libraries = "libone 1.5, libtwo 3"},
                  [this](const std::string& path) {
                      return folder.path().toStdString() + "/" + path.substr(3);
                  },
                  notices,
                  [this] {
                      pagesShown += pagesExist ? 1 : 0;
                      return pagesExist;
                  },
                  [this](const std::string& path) {
                      opened.push_back(path);
                  }};
};

TEST_F(QtShellTest, TheScreensSizeIsInTwips) {
    const QSize pixels = QGuiApplication::primaryScreen()->geometry().size();
    EXPECT_EQ(shell.screenWidth(), Twips(pixels.width() * 15));
    EXPECT_EQ(shell.screenHeight(), Twips(pixels.height() * 15));
}

TEST_F(QtShellTest, AHelpFileIsOpenedByItsMachinePath) {
    const std::string machinePath = folder.path().toStdString() + "/sonarith.chm";
    std::ofstream(machinePath) << "help";
    shell.showHelp("c:\\sonarith.chm");
    EXPECT_THAT(opened, ElementsAre(machinePath));
    EXPECT_EQ(pagesShown, 0);
}

TEST_F(QtShellTest, WithoutAHelpFileTheProgramsOwnPagesAreShown) {
    shell.showHelp("c:\\sonarith.chm");
    EXPECT_EQ(pagesShown, 1);
    EXPECT_THAT(opened, IsEmpty());
    EXPECT_THAT(notices.texts(), IsEmpty());
}

TEST_F(QtShellTest, WithoutHelpPagesAMissingFileAndAFolderAreReportedAndNotOpened) {
    pagesExist = false;
    shell.showHelp("c:\\sonarith.chm");
    shell.showHelp("c:\\.");
    EXPECT_THAT(opened, IsEmpty());
    const std::string there = folder.path().toStdString();
    EXPECT_THAT(notices.texts(),
                ElementsAre("The help file does not exist: " + there + "/sonarith.chm",
                            "The help file does not exist: " + there + "/."));
}

TEST_F(QtShellTest, AControlHasTheHandleOfItsWindowOrZeroWithoutAView) {
    Form form("Form1");
    const PictureBox clip(form, "Picture6");
    EXPECT_EQ(shell.windowHandle(clip), 0U);
    QWidget window;
    auto* view = new QWidget(&window);
    view->setObjectName(QStringLiteral("Picture6"));
    window.show();
    EXPECT_EQ(shell.windowHandle(clip), window.winId());
    EXPECT_EQ(shell.windowHandle(PictureBox(form, "Picture5")), 0U);
}

TEST_F(QtShellTest, TheAboutBoxShowsTitleVersionLicenseAndLibrariesAndEscapeClosesIt) {
    QString title;
    std::string text;
    QTimer::singleShot(0, &context, [&] {
        auto* box = qobject_cast<QMessageBox*>(runningDialog());
        ASSERT_NE(box, nullptr);
        title = box->windowTitle();
        text = box->informativeText().toStdString();
        QTest::keyClick(box, Qt::Key_Escape);
    });
    shell.showAboutBox();
    EXPECT_EQ(title.toStdString(), "Sonarith v2.0");
    EXPECT_THAT(text, HasSubstr("Version 2.0.7"));
    EXPECT_THAT(text, HasSubstr("GNU General Public License, version 3 or later"));
    EXPECT_THAT(text, HasSubstr(std::string("Qt ") + qVersion() + ", libone 1.5, libtwo 3"));
}

} // namespace
} // namespace sonarith
