// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the controls of the file finder's window, and the functions for the last steps of a
// search. The results of a search and the folders still to scan are stored only in the lists of
// this window.
#pragma once

#include <cstdint>

#include "platform/controls/basic_controls.h"
#include "platform/controls/folder_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/list_box.h"
#include "platform/directory_walk.h"
#include "platform/file_system.h"

namespace sonarith {

/// Captions of Command1. The caption decides whether a click starts or stops a search.
inline constexpr const char* searchCaption = "Search !";
inline constexpr const char* continueCaption = "Continue"; ///< set only while a click is handled
inline constexpr const char* stopCaption = "Stop!";

/// Text of lbltime before the first search, and from the click that stops a search until the search
/// ends.
inline constexpr const char* noTimeCaption = "Time taken: 0 second(s)";

class FrmSearch : public Form {
  public:
    /// Both parameters must outlive this object.
    FrmSearch(const FileSystem& files, Directories& directories);

    ListBox lstdirs{*this, "lstdirs"};           ///< folders to scan; the first is being scanned
    ListBox List1{*this, "List1"};               ///< all folders found
    ListBox lstfiles{*this, "lstfiles"};         ///< the results, in order of finding
    TextBox zFileExt{*this, "zFileExt", ".wav"}; ///< the extension to search for
    TextBox Text1{*this, "Text1"};               ///< the name to search for, without extension
    TextBox zFileExt2{*this, "zFileExt2"};       ///< the extension of the file being compared
    TextBox Text2{*this, "Text2"};               ///< the name of that file, without extension
    DriveListBox Drive1;
    DirListBox Dir1;
    /// Starts and stops a search. The button's caption also stores the state of the search.
    CommandButton Command1{*this, "Command1", searchCaption};
    CommandButton cmdend{*this, "cmdend", "Close"};
    CheckBox chkhidelist{*this, "chkhidelist", "Hide lists when searching"};
    Label lbltime{*this, "lbltime", noTimeCaption};
    Label Label1{*this, "Label1"};
    Label Label2{*this, "Label2", "Right-click on a file name for pop-up menu options"};

    MenuItem mnuSeelectfile{*this, "mnuSeelectfile", "Select for Conversion"};
    MenuItem mnuRemoveFile{*this, "mnuRemoveFile", "Remove File from list"};
    MenuItem mnuDelete{*this, "mnuDelete", "Delete File"};
    MenuItem mnuClose{*this, "mnuClose", "Close Window"};
    MenuItem mnupopup{
        *this, "mnupopup", "popup", {&mnuSeelectfile, &mnuRemoveFile, &mnuDelete, &mnuClose}};

    std::int16_t DirCount = 0;  ///< folders counted, at most 32767
    std::int16_t FileCount = 0; ///< entries of lstfiles, counted for the summary
};

// Steps that run at the end of a search, unless the window was closed during the search. The click
// that stops a search runs these steps, too.

/// Sets FileCount to the count of lstfiles; a count above 32767 leaves FileCount unchanged.
void countFiles(FrmSearch& finder);
/// Shows the summary (both counters) in Label1 and resets the counters.
void showSummary(FrmSearch& finder);
/// Enables the controls that are disabled during a search, and shows chkhidelist.
void reopenControls(FrmSearch& finder);

} // namespace sonarith
