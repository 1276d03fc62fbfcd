// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the main window's controls and lists, and the procedures that several parts of the
// program call. Classes in other folders set the handlers of the controls.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/controls/basic_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/list_box.h"
#include "platform/controls/picture_box.h"
#include "platform/controls/timer.h"
#include "platform/controls/tree_view.h"
#include "platform/event_loop.h"
#include "platform/pixel_picture.h"
#include "settings/process_state.h"

namespace sonarith {

/// The window's caption while no action is running; also the application's title.
inline constexpr const char* applicationTitle = "Sonarith v2.0";

/// The client area as designed.
inline constexpr Twips designWidth = 3990_twips;
inline constexpr Twips designHeight = 5490_twips;
/// The grip strip's fixed width.
inline constexpr Twips gripWidth = 285_twips;

class Form1 : public Form {
  public:
    /// Disablem() unloads the forms in `closedByActions`. These forms, `loop` and `state` must
    /// outlive this object.
    Form1(EventLoop& loop, const ProcessState& state, std::vector<Form*> closedByActions);

    /// Disables twelve buttons and menus before an action, and unloads the windows that must not
    /// stay open during the action.
    void Disablem();
    void Enablem();
    /// Resets the caption of the window and the texts and progress of the activity and status bars
    /// to their idle state.
    void ClearActivity();

    /// The picture from which the window's shape is computed; null if there is none. Only tests set
    /// a picture.
    [[nodiscard]] const std::shared_ptr<const PixelPicture>& picture() const { return picture_; }
    void setPicture(std::shared_ptr<const PixelPicture> picture) { picture_ = std::move(picture); }

    // The bars and the grip strip.
    PictureBox Picture3{*this, "Picture3"}; ///< tool bar, top
    PictureBox Picture4{*this, "Picture4"}; ///< CD bar, top
    PictureBox Picture2{*this, "Picture2"}; ///< activity bar, bottom
    PictureBox Picture1{*this, "Picture1"}; ///< status bar, bottom
    PictureBox Picture5{*this, "Picture5"}; ///< grip strip, left
    PictureBox Image3{*this, "Image3"};     ///< the hand grip on the grip strip

    // Tool bar.
    CommandButton Command5{*this, "Command5", "Exit"};
    CommandButton Cmdhelp{*this, "Cmdhelp", "Help"};
    CommandButton C5555555{*this, "C5555555", "Playlist Editor"};
    CommandButton Copt{*this, "Copt", "Preferences"};
    CommandButton C777{*this, "C777", "Search for Files"};
    CommandButton Command2{*this, "Command2", "Cancel"};
    CommandButton CmdSelectAction{*this, "CmdSelectAction", "Start "};
    PictureBox Picture6{*this, "Picture6"}; ///< area for the activity clip

    // CD bar. lblCDID and lblNumTracks also store values: code reads them as numbers.
    CommandButton Command11{*this, "Command11"}; ///< plays the disc from the current track on
    CommandButton Command12{*this, "Command12"}; ///< stops playing
    Label Label5{*this, "Label5", "Low Drive space"};
    Label lblCDID{*this, "lblCDID"};
    Label lblNumTracks{*this, "lblNumTracks"};

    // Activity bar.
    PictureBox Image5{*this, "Image5"};
    PictureBox Image4{*this, "Image4"};
    Label Label3{*this, "Label3", "Next Action:"}; ///< the current or the next action
    Label Label2{*this, "Label2"}; ///< the file being written, or the destination folder

    // Status bar.
    ProgressBar ProgressBar1{*this, "ProgressBar1", 0, 100};
    Label Status{*this, "Status", "00.00%"}; ///< constant text; nothing changes it
    Label Label33{*this, "Label33", "OFF"};  ///< progress of the current track or file, in percent
    Label lblStatus{*this, "lblStatus"};     ///< bytes captured, or bytes of the last decoded WAV

    TreeView TreeView1{*this, "TreeView1"};

    // Controls that are never visible: the lists contain the data of the tree; code clicks the
    // buttons to call their handlers.
    ListBox lstTracks{*this, "lstTracks"}; ///< available tracks
    /// The queue of the selected tracks. During its extraction, the current line is the track that
    /// is being captured.
    ListBox lstRecord{*this, "lstRecord"};
    ListBox List1{*this, "List1"}; ///< paths of available WAV files
    ListBox List2{*this, "List2"}; ///< paths of available MP3 files
    ListBox List3{*this, "List3"}; ///< not used
    ListBox List4{*this, "List4"}; ///< paths of selected MP3 files
    ListBox List5{*this, "List5"}; ///< paths of selected WAV files
    ListBox List7{*this,
                  "List7"}; ///< scratch list; its content has no meaning between two operations
    CheckBox Check9{*this, "Check9"}; ///< 1: the next tick of tmrRecord ends the track
    CommandButton cmdStart{*this, "cmdStart", "Start"};      ///< extracts tracks
    CommandButton CmdDecoder{*this, "CmdDecoder", "decode"}; ///< decodes MP3 files
    CommandButton Command8{*this, "Command8",
                           "Cancel"}; ///< stops the current action, keeps its results

    Timer Timer1;     ///< calls ClearActivity() and disables itself
    Timer tmrRecord;  ///< capture monitor; its enabled state marks a capture in progress
    Timer tmrWarning; ///< checks the free disk space
    Timer Timeravi;   ///< for the activity clip; nothing enables this timer

    MenuItem mnuOpenfile{*this, "mnuOpenfile", "Open"};
    MenuItem mnuExit{*this, "mnuExit", "Exit"};
    MenuItem mnuStart2{*this, "mnuStart2", "Start!"};
    MenuItem mnuFileRemove{*this, "mnuFileRemove", "Remove from List"};
    MenuItem mnuRemoveDelete{*this, "mnuRemoveDelete", "Remove and Delete File"};
    MenuItem mnuMinimize{*this, "mnuMinimize", "Minimize"};
    MenuItem mnuExit2{*this, "mnuExit2", "Exit"};
    MenuItem mnupopup{*this,
                      "mnupopup",
                      "popup",
                      {&mnuStart2, &mnuFileRemove, &mnuRemoveDelete, &mnuMinimize, &mnuExit2}};
    MenuItem mnuFile{*this, "mnuFile", "File", {&mnuOpenfile, &mnuExit, &mnupopup}};

    MenuItem mnuStart{*this, "mnuStart", "Start "};
    MenuItem mnuStop{*this, "mnuStop", "Stop"};
    MenuItem mnuRefreshlist{*this, "mnuRefreshlist", "Refresh List"};
    MenuItem mnuActiopn{*this, "mnuActiopn", "Action", {&mnuStart, &mnuStop, &mnuRefreshlist}};

    MenuItem mnuGetMainPrefs{*this, "mnuGetMainPrefs", "Preferences"};
    MenuItem mnuToolbar{*this, "mnuToolbar", "ToolBar"};
    MenuItem mnuCDbar{*this, "mnuCDbar", "CD Bar"};
    MenuItem mnuActivityBar{*this, "mnuActivityBar", "Activity Bar"};
    MenuItem mnuStatusbar{*this, "mnuStatusbar", "Status Bar"};
    MenuItem mnuGetToolbars{*this,
                            "mnuGetToolbars",
                            "Toolbars",
                            {&mnuToolbar, &mnuCDbar, &mnuActivityBar, &mnuStatusbar}};
    MenuItem MnuOpenCD{*this, "MnuOpenCD", "Open"};
    MenuItem mnuCloseCD{*this, "mnuCloseCD", "Close"};
    MenuItem mnuCDplayer{*this, "mnuCDplayer", "CD Player", {&MnuOpenCD, &mnuCloseCD}};
    MenuItem mnuSearch{*this, "mnuSearch", "Search"};
    MenuItem mnuPlaylist{*this, "mnuPlaylist", "Playlist"};
    MenuItem mnuDevices{*this, "mnuDevices",
                        "Devices"}; ///< opens the Devices window, which has no form
    MenuItem mnuPrefs{
        *this,
        "mnuPrefs",
        "Preferences",
        {&mnuGetMainPrefs, &mnuGetToolbars, &mnuCDplayer, &mnuSearch, &mnuPlaylist, &mnuDevices}};

    MenuItem mnuHelpfile{*this, "mnuHelpfile", "Help File"};
    MenuItem mnuAbout{*this, "mnuAbout", "About"};
    MenuItem mnuHelp{*this, "mnuHelp", "Help", {&mnuHelpfile, &mnuAbout}};

  private:
    void enableCommands(bool enabled);

    const ProcessState& state_;
    std::vector<Form*> closedByActions_;
    std::shared_ptr<const PixelPicture> picture_;
};

} // namespace sonarith
