// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the controls of the preferences' window. The folder settings/preferences/ implements
// their behaviour.
#pragma once

#include "platform/controls/basic_controls.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/folder_controls.h"
#include "platform/controls/form.h"
#include "platform/controls/picture_box.h"
#include "platform/directory_walk.h"
#include "platform/file_system.h"

namespace sonarith {

class FrmPrefs : public Form {
  public:
    /// Both parameters must outlive this object.
    FrmPrefs(const FileSystem& files, Directories& directories);

    TabControl SSTab2{*this, "SSTab2", {"Disk Space", "Audio, Misc.", " Destination Path"}};

    // "Disk Space"
    Frame DriveSpace{*this, "DriveSpace", "Drives; Drive Space"};
    CheckBox Check6{*this, "Check6", "Warn me when hard drive space falls below"};
    TextBox Text7{*this, "Text7", "100"}; ///< warning limit, MB
    CheckBox Check7{*this, "Check7", "Stop converting when hard drive space falls below "};
    TextBox Text8{*this, "Text8", "100"}; ///< stop limit, MB
    TextBox Text6{*this, "Text6"};        ///< a line for each fixed drive
    CommandButton Command3{*this, "Command3", "Refresh data"};
    CommandButton Command1{*this, "Command1", "Set"};
    Label lblSpace{*this, "lblSpace", "Available space in hard drive(s):"}; ///< above Text6
    // Label3 and Label4 are never visible; they only store values. Only tests read Label3. Until a
    // value is stored, the caption of each is its name, and the caption of Label4 counts as 0 MB.
    Label Label3{*this, "Label3", "Label3"}; ///< root of the destination's drive
    Label Label4{*this, "Label4", "Label4"}; ///< free space of that drive in MB

    // "Audio, Misc."
    Frame Encoding{*this, "Encoding", "Encoding/Decoding Preferences"};
    Frame Audio{*this, "Audio", "Audio Preferences"};
    Label lblQuality{*this, "lblQuality", "Encoding Quality"}; ///< beside Combo1
    ComboBox Combo1{*this, "Combo1"};
    Label lblBitsize{*this, "lblBitsize", "Encoding Bitsize"}; ///< beside Combo2
    ComboBox Combo2{*this, "Combo2"};                          ///< encoding bit rate
    CheckBox Check11{*this, "Check11", "Show File names as Full File Path"};
    CheckBox Check10{*this, "Check10", "Encode to MP3 after extracting"};
    CheckBox Check3{*this, "Check3", "Delete WAV file after encoding"};
    CheckBox Check5{*this, "Check5", "Minimize program during conversion"};
    Label lblTray{*this, "lblTray", "Minimize program to Desktop Tray Now"}; ///< beside Check4
    CheckBox Check4{*this, "Check4"};
    Label lblFormat{*this, "lblFormat", "Audio Format"};                      ///< beside cbxFormat
    ComboBox cbxFormat{*this, "cbxFormat"};                                   ///< capture format
    Label lblMute{*this, "lblMute", "Turn off/on CD sound while extracting"}; ///< beside Check1
    CheckBox Check1{*this, "Check1",
                    "Mute"}; ///< a click sets the caption: "Mute" if ticked, else "Play"

    // " Destination Path"
    Label lblDestination{*this, "lblDestination",
                         "Destination Path for converted files (WAV, MP3)"}; ///< above Text9
    TextBox Text9{*this, "Text9"};                                           ///< the full path
    CheckBox Check2{*this, "Check2", "I'll select the destination path and directory"};
    PictureBox Picture6{*this, "Picture6"}; ///< contains all following controls; hidden at first
    Label lblCreate{*this, "lblCreate", "To create a new Destination Directory:"};
    TextBox Text10{*this, "Text10"}; ///< name of the new folder
    Label lblCreate1{*this, "lblCreate1", "1. Enter a name in the space above"};
    Label lblCreate2{
        *this, "lblCreate2",
        "2. Use the file controls on your right to select a parent drive and directory."};
    Label lblCreate3{*this, "lblCreate3", "3. Click \"Create\""};
    CommandButton Co111{*this, "Co111", "Create"};
    DriveListBox Drive2;
    DirListBox Dir2;
};

} // namespace sonarith
