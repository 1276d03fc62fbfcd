// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of the file finder's window. Its lists are the search's only data store: what stands
// in them is what is found and what is still to do. No behaviour lives here.
#pragma once

#include <cstdint>

#include "platform/controls/basic_controls.h"
#include "platform/controls/folder_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/list_box.h"
#include "platform/controls/tree_view.h"
#include "platform/directory_walk.h"
#include "platform/file_system.h"

namespace sonarith {

/// A list box that tells of presses on it.
class PressedListBox : public ListBox {
  public:
    using ListBox::ListBox;
    /// Any button, after a left press has made its line the current one.
    Handler<MouseButtons> onMouseDown;
};

class FinderForm {
  public:
    /// `frmsearch` is the window's own model. All must outlive this.
    FinderForm(Form& frmsearch, const FileSystem& files, const Directories& directories);
    FinderForm(const FinderForm&) = delete;
    FinderForm& operator=(const FinderForm&) = delete;

    /// Whoever reaches for a control from outside loads the window by it, unshown.
    void touch() { window.load(); }
    /// Gives every control the state in which a window loads.
    void reset();

    Form& window;

    ListBox lstdirs{"lstdirs"};          ///< folders still to scan, the one under scan first
    ListBox List1{"List1"};              ///< all folders met
    PressedListBox lstfiles{"lstfiles"}; ///< the results, in order of finding
    TextBox zFileExt{"zFileExt"};        ///< the extension wanted
    TextBox Text1{"Text1"};              ///< the name wanted, without its extension
    TextBox zFileExt2{"zFileExt2"};      ///< the extension of the entry under test
    TextBox Text2{"Text2"};              ///< the name of the entry under test
    DriveListBox Drive1;
    DirListBox Dir1;
    CommandButton Command1{"Command1"}; ///< starts and stops; its caption is the search's state
    CommandButton cmdend{"cmdend", "Close"};
    CheckBox chkhidelist{"chkhidelist", "Hide lists when searching"};
    Label lbltime{"lbltime"};
    Label Label1{"Label1"};
    Label Label2{"Label2", "Right-click on a file name for pop-up menu options"};

    MenuItem mnuSeelectfile{"mnuSeelectfile", "Select for Conversion"};
    MenuItem mnuRemoveFile{"mnuRemoveFile", "Remove File from list"};
    MenuItem mnuDelete{"mnuDelete", "Delete File"};
    MenuItem mnuClose{"mnuClose", "Close Window"};
    MenuItem mnupopup{
        "mnupopup", "popup", {&mnuSeelectfile, &mnuRemoveFile, &mnuDelete, &mnuClose}};

    std::int16_t DirCount = 0;  ///< folders counted, at most 32767
    std::int16_t FileCount = 0; ///< entries of lstfiles at the end of a search

  private:
    const FileSystem& files_;
};

/// The captions of Command1 that tell what its click does.
inline constexpr const char* searchCaption = "Search !";
inline constexpr const char* continueCaption = "Continue"; ///< within a click alone
inline constexpr const char* stopCaption = "Stop!";

/// lbltime before a search, and from a stop to the search's end.
inline constexpr const char* noTimeCaption = "Time taken: 0 second(s)";

// What both ends of a search, its own and the stop's, have in common.

/// FileCount becomes the count of lstfiles; a count above 32767 leaves it as it is.
void countFiles(FinderForm& finder);
/// Writes the summary line from the counters, which then begin anew.
void showSummary(FinderForm& finder);
/// Opens what is closed while a search runs.
void reopenControls(FinderForm& finder);

} // namespace sonarith
