// SPDX-License-Identifier: GPL-3.0-or-later
// Declares the controls of the playlist editor: the list, the edited file with its header and tag,
// and the window's own player. The folder playlist/ implements their behaviour.
#pragma once

#include <array>

#include "platform/active_mp3.h"
#include "platform/controls/active_mp3_host.h"
#include "platform/controls/basic_controls.h"
#include "platform/controls/common_dialog.h"
#include "platform/controls/form.h"
#include "platform/controls/list_box.h"

namespace sonarith {

class FrmPlayList : public Form {
  public:
    /// `mp3Controls` must outlive this object.
    explicit FrmPlayList(Mp3Controls& mp3Controls);

    // The playlist.
    Frame Playlist{*this, "Playlist", "MP3 PlayList "};
    ListBox List2{*this, "List2"}; ///< one full path per line
    ListBox List3{*this, "List3"}; ///< scratch list while the entries are rewritten; not shown
    CommandButton Command20{*this, "Command20", "Add to PlayList"};
    CommandButton Command6{*this, "Command6", "Delist"};
    CommandButton Command11{*this, "Command11"}; ///< plays the current line of List2
    CommandButton Command12{*this, "Command12"}; ///< stops playing
    CheckBox Check11{*this, "Check11", "Click on a file to add it to the Files List"};
    ActiveMp3Host ActiveMP31;

    // The edited file.
    TextBox Text5{*this, "Text5"}; ///< its path
    CommandButton cmdHdr1{*this, "cmdHdr1", "..."};
    CommandButton cmdHdr2{*this, "cmdHdr2", "Read header"};
    CommandButton Command2{*this, "Command2", "Rename File"};
    CommandButton Command10{*this, "Command10", "Delete  File"}; ///< the two blanks are intended
    CommandButton cmdTag{*this, "cmdTag", " Write tag"};         ///< the leading blank is intended
    CommonDialog CommonDialog2{*this};
    ListBox List1{*this, "List1"}; ///< lines about the file's MP3 header

    static constexpr std::size_t text4Count = 8;
    /// The labels of Text4(1) to Text4(8).
    static constexpr std::array<const char*, text4Count> text4Labels = {
        "Artist", "Title", "Album", "Year", "Comment", "Genre", "HasTag", "Length"};
    /// The boxes Text4(1) to Text4(8): the tag's fields with the genre as a number, whether there
    /// is a tag, and the length of the file in bytes.
    [[nodiscard]] TextBox& Text4(std::size_t number) { return text4_.at(number - 1); }

  private:
    std::array<TextBox, text4Count> text4_;
};

} // namespace sonarith
