// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/main_window.h"

#include "app/bars.h"
#include "app/resize_layout.h"
#include "desktop/control_panel.h"
#include "desktop/shape_from_picture.h"
#include "settings/app_settings.h"

namespace sonarith {

namespace {
/// The distance by which the window's centre is to the left of the screen's centre.
constexpr Twips leftOfCentre = 1500_twips;
} // namespace

MainWindow::MainWindow(const Platform& platform, ProcessState& process, Windows& windows,
                       DiscInspection& inspection, WorkTree& tree)
    : platform_(platform),
      process_(process),
      windows_(windows),
      form_(windows.Form1),
      inspection_(inspection),
      tree_(tree) {
    wireWindow();
    wireToolBar();
    wireMenus();
}

void MainWindow::wireWindow() {
    form_.onLoad = [this] {
        Form_Load();
    };
    form_.onQueryUnload = [this] {
        Form_QueryUnload();
    };
    form_.onUnload = [this] {
        Form_Unload();
    };
    form_.onUnloadAgain = [this] {
        Form_QueryUnload();
    };
    form_.onResize = [this] {
        runResizeLayout(form_);
    };
    form_.onMouseDown = [this](MouseButtons buttons) {
        if (buttons.left) {
            N1Drag();
        }
    };
    form_.Image3.onMouseDown = [this](MouseButtons buttons) {
        if (buttons.left) {
            form_.captionGrasped.emit();
        }
    };
    form_.Timer1.onTimer = [this] {
        Timer1_Timer();
    };
}

void MainWindow::wireToolBar() {
    form_.Command5.onClick = [this] {
        Command5_Click();
    };
    form_.Cmdhelp.onClick = [this] {
        Cmdhelp_Click();
    };
    form_.C5555555.onClick = [this] {
        windows_.frmPlayList.show();
    };
    form_.Copt.onClick = [this] {
        windows_.FrmPrefs.show();
    };
    form_.C777.onClick = [this] {
        windows_.frmsearch.show();
    };
}

void MainWindow::wireMenus() {
    // mnuDevices is not handled by the logic; main.cpp sets its handler.
    form_.mnuExit.onClick = [this] {
        form_.Command5.click();
    };
    form_.mnuStart2.onClick = [this] {
        form_.mnuStart.click();
    };
    form_.mnuMinimize.onClick = [this] {
        mnuMinimize_Click();
    };
    form_.mnuExit2.onClick = [this] {
        form_.Command5.click();
    };

    form_.mnuStart.onClick = [this] {
        mnuStart_Click();
    };
    form_.mnuStop.onClick = [this] {
        form_.Command8.click();
    };
    form_.mnuRefreshlist.onClick = [this] {
        C1212_Click();
    };

    form_.mnuGetMainPrefs.onClick = [this] {
        windows_.FrmPrefs.show();
    };
    form_.mnuToolbar.onClick = [this] {
        mnuToolbar_Click(form_);
    };
    form_.mnuCDbar.onClick = [this] {
        mnuCDbar_Click(form_);
    };
    form_.mnuActivityBar.onClick = [this] {
        mnuActivityBar_Click(form_);
    };
    form_.mnuStatusbar.onClick = [this] {
        mnuStatusbar_Click(form_);
    };
    form_.MnuOpenCD.onClick = [this] {
        windows_.Form4.show();
    };
    form_.mnuCloseCD.onClick = [this] {
        windows_.Form4.unload();
    };
    form_.mnuSearch.onClick = [this] {
        windows_.frmsearch.show();
    };
    form_.mnuPlaylist.onClick = [this] {
        windows_.frmPlayList.show();
    };

    form_.mnuHelpfile.onClick = [this] {
        form_.Cmdhelp.click();
    };
    form_.mnuAbout.onClick = [this] {
        platform_.shell.showAboutBox();
    };
}

void MainWindow::Form_Load() {
    platform_.pointer.set(Pointer::hourglass);
    runLoadSteps().passOver();
    platform_.pointer.set(Pointer::normal);
}

Status MainWindow::runLoadSteps() {
    if (Status status = platform_.files.changeFolder(platform_.files.programFolder());
        !status.ok()) {
        return status;
    }
    placeWindow();
    form_.ProgressBar1.setValue(0).passOver();
    LoadSettings(platform_.store, platform_.files.programFolder(), process_.settings);
    loadPlayer();
    inspection_.InspectCD();
    // Loads the preferences' window without showing it. The load creates the destination folder,
    // and saves its path and the setting of each check box that the load ticks.
    windows_.FrmPrefs.load();
    form_.Label2.setCaption(process_.settings.decodePath + "\\");
    tree_.showfiles();
    runResizeLayout(form_);
    platform_.loop.yield();
    form_.show();
    platform_.loop.yield();
    windows_.Form4.show();
    platform_.loop.yield();
    return {};
}

void MainWindow::loadPlayer() {
    windows_.Form4.load();
    if (process_.settings.muteButton == 1) {
        windows_.Form4.Option13.click();
    } else {
        windows_.Form4.Option14.click();
    }
}

void MainWindow::placeWindow() {
    form_.setLeft((platform_.shell.screenWidth() - form_.width()) / 2 - leftOfCentre);
    form_.setTop((platform_.shell.screenHeight() - form_.height()) / 2);
}

void MainWindow::Form_QueryUnload() {
    form_.Command8.click();
}

void MainWindow::Form_Unload() {
    for (const char* command : {"stop cd", "close capture", "close cd"}) {
        platform_.media.sendString(command);
    }
    windows_.Form4.Option14.click(); // unmutes the disc's line
    // If the player's panel is loaded, its unload mutes the line that was just unmuted.
    windows_.Form4.unload();
    windows_.frmpopup.unload();
    platform_.loop.endProgram();
}

void MainWindow::Command5_Click() {
    windows_.Form4.unload();
    // Usually this call ends the process. It returns if this window is not loaded, or is already
    // being unloaded.
    form_.unload();
    platform_.loop.endProgram();
}

void MainWindow::Cmdhelp_Click() {
    const std::string folder = platform_.files.programFolder();
    if (platform_.files.changeFolder(folder).ok()) {
        ShowHelpFile(folder + "\\sonarith.chm");
    }
}

std::string MainWindow::ShowHelpFile(const std::string& path) {
    platform_.shell.showHelp(path);
    return {};
}

void MainWindow::mnuStart_Click() {
    forceToolBarOn(form_);
    form_.CmdSelectAction.click();
}

void MainWindow::mnuMinimize_Click() {
    windows_.frmpopup.load();
    minimizeToTray(form_, platform_.tray);
}

void MainWindow::C1212_Click() {
    inspection_.InspectCD();
    tree_.showfiles();
}

void MainWindow::Timer1_Timer() {
    form_.Timer1.setEnabled(false);
    form_.ClearActivity();
}

void MainWindow::ShapeFromPicture() {
    sonarith::ShapeFromPicture(form_, process_);
}

void MainWindow::N1Drag() {
    form_.captionGrasped.emit();
}

} // namespace sonarith
