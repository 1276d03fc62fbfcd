// SPDX-License-Identifier: GPL-3.0-or-later
// The whole program below its windows: owns the process-wide variables, the windows and every job,
// and wires the controls' events to the jobs. It holds no behaviour of its own.
#pragma once

#include "app/activity_clip.h"
#include "app/main_window.h"
#include "conversion/decoding_driver.h"
#include "conversion/worker_window.h"
#include "extraction/capture_monitor.h"
#include "extraction/disc_inspection.h"
#include "extraction/track_capture.h"
#include "extraction/track_preview.h"
#include "finder/finder_scanner.h"
#include "finder/finder_window.h"
#include "finder/search_engine.h"
#include "forms/form1.h"
#include "forms/frm_search.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"
#include "worktree/drag_state.h"
#include "worktree/label_edit.h"
#include "worktree/open_file.h"
#include "worktree/popup_menu.h"
#include "worktree/start_action.h"
#include "worktree/tree_drag.h"
#include "worktree/tree_moves.h"
#include "worktree/tree_selection.h"
#include "worktree/work_tree.h"

namespace sonarith {

class Application {
  public:
    /// The platform's parts outlive the application. No step of the logic runs here.
    explicit Application(const Platform& platform);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Makes the program's folder the current one and loads the main window, which yields. The
    /// program's end may come before this returns.
    void start();

    [[nodiscard]] Form1& form1() { return form1_; }
    [[nodiscard]] Windows& windows() { return windows_; }
    [[nodiscard]] ProcessState& process() { return process_; }

  private:
    void wireWindow();
    void wireToolBar();
    void wireMenus();
    void wireTree();
    void wireJobs();

    Platform platform_;
    ProcessState process_;
    Windows windows_;
    Form1 form1_;

    FinderForm finder_;
    SearchEngine searchEngine_;
    FinderScanner finderScanner_;

    DragState drag_;
    FileAdder fileAdder_;
    WorkTree workTree_;
    FinderWindow finderWindow_;
    TreeMoves treeMoves_;
    TreeSelection treeSelection_;
    TreeDrag treeDrag_;
    LabelEdit labelEdit_;
    PopupMenu popupMenu_;
    OpenFile openFile_;
    ActionStarter actionStarter_;

    CaptureState captureState_;
    ExtractionContext extraction_;
    DiscInspection inspection_;
    CaptureMonitor monitor_;
    TrackCapture capture_;
    TrackPreview preview_;

    WorkerWindow worker_;
    DecodingDriver decoding_;

    ActivityClip clip_;
    MainWindow mainWindow_;
};

} // namespace sonarith
