// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/program_help.h"

#include <QTest>
#include <gmock/gmock.h>

#include "forms/windows.h"
#include "support/fake_machine.h"
#include "ui/devices_window.h"
#include "ui/finder_layout.h"
#include "ui/help_pages.h"
#include "ui/main_window_view.h"
#include "ui/player_layout.h"
#include "ui/playlist_layout.h"
#include "ui/preferences_layout.h"

namespace sonarith {
namespace {

/// Connects the help key of each window to the help, as the program does.
class ProgramHelpTest : public testing::Test {
  protected:
    struct NoDevices final : DeviceChoice {
        [[nodiscard]] std::vector<std::string> opticalDrives() const override { return {}; }
        [[nodiscard]] std::vector<DeviceEntry> outputs() const override { return {}; }
        [[nodiscard]] std::vector<DeviceEntry> sources() const override { return {}; }
        [[nodiscard]] std::string drive() const override { return {}; }
        [[nodiscard]] std::string output() const override { return {}; }
        [[nodiscard]] std::string source() const override { return {}; }
        void setDrive(const std::string&) override {}
        void setOutput(const std::string&) override {}
        void setSource(const std::string&) override {}
        [[nodiscard]] std::string report() const override { return {}; }
    };

    ProgramHelpTest() {
        machine.directories.addFolder("c:\\");
        windows.Form1.Cmdhelp.onClick = [this] {
            shown = help.show();
        };
    }
    void ask(const std::string& name) {
        help.askFrom(name, [this] { windows.Form1.Cmdhelp.click(); });
    }
    std::string pageAfterF1(QWidget& window) {
        shown = false;
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, Qt::Key_F1);
        return shown ? help.window()->page().toStdString() : "none";
    }
    std::string pageOf(WindowLayout layout) {
        FormWindow window(std::move(layout), [this](const Form& asked) { ask(asked.name()); });
        return pageAfterF1(window);
    }

    test::FakeMachine machine;
    ProcessState process;
    Windows windows{machine.platform, process};
    ProgramHelp help{helpFolder};
    bool shown = false;
};

TEST_F(ProgramHelpTest, F1OpensThePageAboutTheWindowInWhichItIsPressed) {
    EXPECT_EQ(pageOf(playerLayout(windows.Form4)), "player.html");
    EXPECT_EQ(pageOf(preferencesLayout(windows.FrmPrefs)), "preferences.html");
    EXPECT_EQ(pageOf(finderLayout(windows.frmsearch)), "finder.html");
    EXPECT_EQ(pageOf(playlistLayout(windows.frmPlayList)), "playlist.html");
    NoDevices none;
    DevicesWindowCalls calls;
    calls.driveInUse = [] {
        return false;
    };
    calls.notices = [] {
        return std::vector<std::string>();
    };
    calls.help = [this] {
        ask("Devices");
    };
    DevicesWindow devices(none, calls);
    EXPECT_EQ(pageAfterF1(devices), "devices.html");
    MainWindowView view(windows.Form1);
    EXPECT_EQ(pageAfterF1(view), "main.html");
}

TEST_F(ProgramHelpTest, TheHelpButtonOpensTheMainWindowsPageAfterHelpOnAnotherWindow) {
    ask("Form4");
    windows.Form1.Cmdhelp.click();
    EXPECT_EQ(help.window()->page(), "main.html");
}

TEST_F(ProgramHelpTest, HelpOnAWindowWithoutAPageShowsTheFirstPage) {
    ask("frmpopup");
    EXPECT_EQ(help.window()->page(), "first.html");
}

TEST(ProgramHelp, LooksForItsPagesOnlyWhenHelpIsFirstShown) {
    int searches = 0;
    ProgramHelp help([&] {
        ++searches;
        return helpFolder();
    });
    EXPECT_EQ(searches, 0);
    EXPECT_TRUE(help.show());
    EXPECT_TRUE(help.show());
    EXPECT_EQ(searches, 1);
}

TEST(ProgramHelp, ShowReturnsFalseAndOpensNoWindowIfThePagesAreMissing) {
    ProgramHelp help([] { return QString("/nowhere"); });
    EXPECT_FALSE(help.show());
    EXPECT_FALSE(help.window()->isVisible());
}

} // namespace
} // namespace sonarith
