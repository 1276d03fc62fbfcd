// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's life: its load step, its end, and the commands that concern the window itself.
// The jobs that its buttons start live in folders of their own; the application wires both.
#pragma once

#include <string>

#include "extraction/disc_inspection.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/work_tree.h"

namespace sonarith {

class MainWindow {
  public:
    /// Becomes the handler of the window's own events, its tool bar and its menus. All outlive
    /// this.
    MainWindow(const Platform& platform, ProcessState& process, Windows& windows,
               DiscInspection& inspection, WorkTree& tree);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /// Places the window, reads settings, disc and destination folder, and shows it. A failure ends
    /// the load where it stands; the pointer is the normal one afterwards. Yields.
    void Form_Load();
    /// Stops everything; never refuses the close. Yields while a capture is saved. Again for a
    /// close meanwhile: something may have been started in that yield, and would hold the first up.
    void Form_QueryUnload();
    /// Ends the process.
    void Form_Unload();

    /// Exit: ends the process.
    void Command5_Click();
    void Cmdhelp_Click();
    /// Asks the help viewer to show a help file (a path in the logic's form). The text that comes
    /// back is empty, whatever the viewer makes of it.
    std::string ShowHelpFile(const std::string& path);
    void mnuStart_Click();
    void mnuMinimize_Click();
    /// "Refresh List": reads the disc again and rebuilds the tree.
    void C1212_Click();
    /// The displays go back to idle, once.
    void Timer1_Timer();
    /// Lets the window follow the pointer as if its caption had been grasped.
    void N1Drag();
    /// Gives the window the shape of its picture, with white cut away. Nothing calls it.
    void ShapeFromPicture();

  private:
    void wireWindow();
    void wireToolBar();
    void wireMenus();
    Status runLoadSteps();
    /// The panel, unshown, and the disc's line muted or not as the settings say. Yields in the
    /// message of a missing mixer.
    void loadPlayer();
    void placeWindow();

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    Form1& form_;
    DiscInspection& inspection_;
    WorkTree& tree_;
};

} // namespace sonarith
