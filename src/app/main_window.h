// SPDX-License-Identifier: GPL-3.0-or-later
// The life cycle of the main window: its load step, its end, and the commands for the window
// itself. The jobs that its buttons start are in their own folders; the application wires both.
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
    /// Sets the handlers of the window's own events, its tool bar and its menus. All parameters
    /// must outlive this object.
    MainWindow(const Platform& platform, ProcessState& process, Windows& windows,
               DiscInspection& inspection, WorkTree& tree);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /// Places the window, reads settings, disc and destination folder, and shows the window. A step
    /// that fails ends the load. Afterwards the pointer always has its normal shape. Yields.
    void Form_Load();
    /// Stops everything; never refuses the close. Yields while a capture is saved. Another close
    /// during that yield calls this function again, which stops a job that was started during the
    /// yield: that job would block the first close.
    void Form_QueryUnload();
    /// Ends the process.
    void Form_Unload();

    /// Exit: ends the process.
    void Command5_Click();
    void Cmdhelp_Click();
    /// Opens a help file (a path in the logic's form) in the help viewer. Always returns an empty
    /// text, even if the viewer fails.
    std::string ShowHelpFile(const std::string& path);
    void mnuStart_Click();
    void mnuMinimize_Click();
    /// "Refresh List": reads the disc again and rebuilds the tree.
    void C1212_Click();
    /// Resets the displays to idle, once.
    void Timer1_Timer();
    /// Starts to move the window with the pointer, as if the user dragged its caption.
    void N1Drag();
    /// Shapes the window by its picture, with white areas cut away. Nothing calls it.
    void ShapeFromPicture();

  private:
    void wireWindow();
    void wireToolBar();
    void wireMenus();
    Status runLoadSteps();
    /// Loads the panel without showing it, and mutes or unmutes the disc's line according to the
    /// settings. Yields in the message about a missing mixer.
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
