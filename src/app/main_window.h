// SPDX-License-Identifier: GPL-3.0-or-later
// Loads and unloads the main window and runs the commands for the window itself. Other folders
// contain the jobs that the window's buttons start; Application connects these jobs to the window.
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

    /// Makes the program folder the current folder; if that fails, does nothing more. Otherwise
    /// places the window, reads settings, disc and destination folder, and shows the window and the
    /// player's panel. The mouse pointer has its normal shape afterwards in both cases. Yields.
    void Form_Load();
    /// Saves a running capture and requests every other job to end. Never refuses the close. Yields
    /// while the capture is saved. A job that the user starts in that yield delays this close until
    /// the job ends. A second close stops that job.
    void Form_QueryUnload();
    /// Ends the process.
    void Form_Unload();

    /// Exit: ends the process.
    void Command5_Click();
    void Cmdhelp_Click();
    /// Shows the help file `path`, or the program's own help if there is no such file. `path` is a
    /// path of the logic (drive letter, backslashes). Always returns an empty text, even if no help
    /// could be shown.
    std::string ShowHelpFile(const std::string& path);
    void mnuStart_Click();
    void mnuMinimize_Click();
    /// "Refresh List": reads the disc and the destination folder again and updates the tree.
    void C1212_Click();
    /// Stops Timer1 and resets the displays to idle.
    void Timer1_Timer();
    /// Starts to move the window with the pointer, as if the user dragged its caption.
    void N1Drag();
    /// Sets the window's region to the pixels of its picture that are not white. Only a test calls
    /// this function.
    void ShapeFromPicture();

  private:
    void wireWindow();
    void wireToolBar();
    void wireMenus();
    Status runLoadSteps();
    /// Loads the player's panel without showing it, and mutes or unmutes the disc's line according
    /// to the settings. Yields while it shows the message about a missing mixer.
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
