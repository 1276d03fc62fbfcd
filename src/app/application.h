// SPDX-License-Identifier: GPL-3.0-or-later
// The whole logic of the program: owns the process-wide variables, the forms and every subsystem.
// The subsystems set the handlers of their forms; this class only starts the program, and reads the
// disc again after the user has chosen another disc or drive.
#pragma once

#include "app/activity_clip.h"
#include "app/main_window.h"
#include "conversion/conversion.h"
#include "desktop/control_panel.h"
#include "extraction/extraction.h"
#include "finder/finder.h"
#include "finder/finder_scanner.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "player/player.h"
#include "playlist/playlist.h"
#include "settings/preferences/preferences.h"
#include "settings/process_state.h"
#include "worktree/work_tree_jobs.h"

namespace sonarith {

class Application {
  public:
    /// The parts of `platform` must outlive the application. The constructor only connects the
    /// subsystems and their forms.
    explicit Application(const Platform& platform);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Makes the program's folder the current folder and loads the main window. The load yields:
    /// it lets the event loop handle the events that are due. So the program may end before start()
    /// returns.
    void start();

    /// Call after another disc or drive was chosen. Runs "Refresh List"; a player that is on opens
    /// the new disc. Yields.
    void readChosenDisc();

    [[nodiscard]] Windows& windows() { return windows_; }
    [[nodiscard]] ProcessState& process() { return process_; }
    /// Whether an extraction is running. An extraction opens the drive anew for each track, so the
    /// user must not choose another drive before the extraction has ended.
    [[nodiscard]] bool driveInUse() const { return extraction_.capture.running(); }

  private:
    Platform platform_;
    ProcessState process_;
    Windows windows_;

    FinderScanner scanner_;
    WorkTreeJobs workTree_;
    Finder finder_;
    Extraction extraction_;
    Conversion conversion_;
    Player player_;
    Preferences preferences_;
    Playlist playlist_;
    ActivityClip clip_;
    ControlPanel controlPanel_;
    MainWindow mainWindow_;
};

} // namespace sonarith
