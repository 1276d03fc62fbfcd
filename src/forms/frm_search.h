// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of the file finder's window. Its lists are the search's only data store: what stands
// in them is what is found and what is still to do. No behaviour lives here.
#pragma once

#include <cstdint>

#include "platform/controls/basic_controls.h"
#include "platform/controls/folder_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/list_box.h"
#include "platform/directory_walk.h"
#include "platform/file_system.h"

namespace sonarith {

/// The captions of Command1 that tell what its click does.
inline constexpr const char* searchCaption = "Search !";
inline constexpr const char* continueCaption = "Continue"; ///< within a click alone
inline constexpr const char* stopCaption = "Stop!";

/// lbltime before a search, and from a stop to the search's end.
inline constexpr const char* noTimeCaption = "Time taken: 0 second(s)";

class FrmSearch : public Form {
  public:
    /// Both outlive this.
    FrmSearch(const FileSystem& files, Directories& directories);

    ListBox lstdirs{*this, "lstdirs"};   ///< folders still to scan, the one under scan first
    ListBox List1{*this, "List1"};       ///< all folders met
    ListBox lstfiles{*this, "lstfiles"}; ///< the results, in order of finding
    TextBox zFileExt{*this, "zFileExt", ".wav"}; ///< the extension wanted
    TextBox Text1{*this, "Text1"};               ///< the name wanted, without its extension
    TextBox zFileExt2{*this, "zFileExt2"};       ///< the extension of the entry under test
    TextBox Text2{*this, "Text2"};               ///< the name of the entry under test
    DriveListBox Drive1;
    DirListBox Dir1;
    /// Starts and stops; its caption is the search's state.
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
    std::int16_t FileCount = 0; ///< entries of lstfiles at the end of a search
};

// What both ends of a search, its own and the stop's, have in common.

/// FileCount becomes the count of lstfiles; a count above 32767 leaves it as it is.
void countFiles(FrmSearch& finder);
/// Writes the summary line from the counters, which then begin anew.
void showSummary(FrmSearch& finder);
/// Opens what is closed while a search runs.
void reopenControls(FrmSearch& finder);

} // namespace sonarith
