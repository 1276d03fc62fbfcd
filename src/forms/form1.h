// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's controls and lists, and the few procedures that the jobs reach back for. What
// the controls do is wired by the application; the jobs live in folders of their own.
#pragma once

#include "forms/windows.h"
#include "platform/controls/basic_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/list_box.h"
#include "platform/controls/timer.h"
#include "platform/controls/tree_view.h"
#include "platform/event_loop.h"
#include "settings/process_state.h"

namespace sonarith {

/// The window's caption at rest, and the application's title.
inline constexpr const char* applicationTitle = "Sonarith v2.0";

/// The client area as designed, in twips.
inline constexpr Twips designWidth = 3990;
inline constexpr Twips designHeight = 5490;
/// The grip strip's fixed width, in twips.
inline constexpr Twips gripWidth = 285;

class Form1 : public Form {
  public:
    Form1(EventLoop& loop, ProcessState& state, Windows& windows);

    /// Closes the commands for the time of an action, and unloads the windows that may not stay
    /// open during it.
    void Disablem();
    void Enablem();
    /// The displays back to idle.
    void ClearActivity();

    // The bars and the grip strip.
    PictureBox Picture3{"Picture3"}; ///< tool bar, top
    PictureBox Picture4{"Picture4"}; ///< CD bar, top
    PictureBox Picture2{"Picture2"}; ///< activity bar, bottom
    PictureBox Picture1{"Picture1"}; ///< status bar, bottom
    PictureBox Picture5{"Picture5"}; ///< grip strip, left
    PictureBox Image3{"Image3"};     ///< the hand grip on it

    // Tool bar.
    CommandButton Command5{"Command5", "Exit"};
    CommandButton Cmdhelp{"Cmdhelp", "Help"};
    CommandButton C5555555{"C5555555", "Playlist Editor"};
    CommandButton Copt{"Copt", "Preferences"};
    CommandButton C777{"C777", "Search for Files"};
    CommandButton Command2{"Command2", "Cancel"};
    CommandButton CmdSelectAction{"CmdSelectAction", "Start "};
    PictureBox Picture6{"Picture6"}; ///< host area of the activity clip

    // CD bar. lblCDID and lblNumTracks are stores as well: they are read back as numbers.
    CommandButton Command11{"Command11"}; ///< lets the track in hand be heard
    CommandButton Command12{"Command12"}; ///< silences it
    Label Label5{"Label5", "Low Drive space"};
    Label lblCDID{"lblCDID"};
    Label lblNumTracks{"lblNumTracks"};

    // Activity bar.
    PictureBox Image5{"Image5"};
    PictureBox Image4{"Image4"};
    Label Label3{"Label3", "Next Action:"}; ///< the action that goes on or comes next
    Label Label2{"Label2"};                 ///< the file that is written, or the destination folder

    // Status bar.
    ProgressBar ProgressBar1{"ProgressBar1", 0, 100};
    Label Status{"Status", "00.00%"}; ///< shown as it is; nothing writes it
    Label Label33{"Label33", "OFF"};  ///< percentage of the track or file
    Label lblStatus{"lblStatus"};     ///< bytes captured, or of the last WAV decoded

    TreeView TreeView1{"TreeView1"};

    // Never seen: the lists are the truth behind the tree, the rest is called as procedures.
    ListBox lstTracks{"lstTracks"}; ///< tracks not chosen
    ListBox lstRecord{"lstRecord"}; ///< queue of tracks to extract; progress is its ListIndex
    ListBox List1{"List1"};         ///< WAV paths
    ListBox List2{"List2"};         ///< MP3 paths
    ListBox List3{"List3"};         ///< no role
    ListBox List4{"List4"};         ///< selected MP3 paths
    ListBox List5{"List5"};         ///< selected WAV paths
    ListBox List7{"List7"};         ///< scratch, holds no meaning between two uses
    CheckBox Check9{"Check9"};      ///< 1: end this track on the next tick
    CommandButton cmdStart{"cmdStart", "Start"};      ///< extracts tracks
    CommandButton CmdDecoder{"CmdDecoder", "decode"}; ///< decodes MP3 files
    CommandButton Command8{"Command8", "Cancel"};     ///< ends what goes on, keeps what is there

    Timer Timer1;     ///< one-shot return of the displays to idle
    Timer tmrRecord;  ///< capture monitor; its enabled state marks a capture in progress
    Timer tmrWarning; ///< disk space guard
    Timer Timeravi;   ///< activity clip; nothing starts it

    MenuItem mnuOpenfile{"mnuOpenfile", "Open"};
    MenuItem mnuExit{"mnuExit", "Exit"};
    MenuItem mnuStart2{"mnuStart2", "Start!"};
    MenuItem mnuFileRemove{"mnuFileRemove", "Remove from List"};
    MenuItem mnuRemoveDelete{"mnuRemoveDelete", "Remove and Delete File"};
    MenuItem mnuMinimize{"mnuMinimize", "Minimize"};
    MenuItem mnuExit2{"mnuExit2", "Exit"};
    MenuItem mnupopup{"mnupopup",
                      "popup",
                      {&mnuStart2, &mnuFileRemove, &mnuRemoveDelete, &mnuMinimize, &mnuExit2}};
    MenuItem mnuFile{"mnuFile", "File", {&mnuOpenfile, &mnuExit, &mnupopup}};

    MenuItem mnuStart{"mnuStart", "Start "};
    MenuItem mnuStop{"mnuStop", "Stop"};
    MenuItem mnuRefreshlist{"mnuRefreshlist", "Refresh List"};
    MenuItem mnuActiopn{"mnuActiopn", "Action", {&mnuStart, &mnuStop, &mnuRefreshlist}};

    MenuItem mnuGetMainPrefs{"mnuGetMainPrefs", "Preferences"};
    MenuItem mnuToolbar{"mnuToolbar", "ToolBar"};
    MenuItem mnuCDbar{"mnuCDbar", "CD Bar"};
    MenuItem mnuActivityBar{"mnuActivityBar", "Activity Bar"};
    MenuItem mnuStatusbar{"mnuStatusbar", "Status Bar"};
    MenuItem mnuGetToolbars{
        "mnuGetToolbars", "Toolbars", {&mnuToolbar, &mnuCDbar, &mnuActivityBar, &mnuStatusbar}};
    MenuItem MnuOpenCD{"MnuOpenCD", "Open"};
    MenuItem mnuCloseCD{"mnuCloseCD", "Close"};
    MenuItem mnuCDplayer{"mnuCDplayer", "CD Player", {&MnuOpenCD, &mnuCloseCD}};
    MenuItem mnuSearch{"mnuSearch", "Search"};
    MenuItem mnuPlaylist{"mnuPlaylist", "Playlist"};
    MenuItem mnuDevices{"mnuDevices", "Devices"}; ///< the platform's own window
    MenuItem mnuPrefs{
        "mnuPrefs",
        "Preferences",
        {&mnuGetMainPrefs, &mnuGetToolbars, &mnuCDplayer, &mnuSearch, &mnuPlaylist, &mnuDevices}};

    MenuItem mnuHelpfile{"mnuHelpfile", "Help File"};
    MenuItem mnuAbout{"mnuAbout", "About"};
    MenuItem mnuHelp{"mnuHelp", "Help", {&mnuHelpfile, &mnuAbout}};

  private:
    void enableCommands(bool enabled);

    ProcessState& state_;
    Windows& windows_;
};

} // namespace sonarith
