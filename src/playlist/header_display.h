// SPDX-License-Identifier: GPL-3.0-or-later
// Shows header and tag of the edited file (Text5), and lets the user choose that file in a dialog.
// formats/mp3_analysis.h analyses the file.
#pragma once

#include <string>

#include "formats/mp3_info.h"
#include "forms/frm_playlist.h"
#include "platform/platform.h"

namespace sonarith {

/// The text for a file that is too short or cannot be read.
inline constexpr const char* noDataText = "File contains no data";

class HeaderDisplay {
  public:
    /// Sets the handlers of cmdHdr1 and cmdHdr2. Both parameters must outlive this object.
    HeaderDisplay(const Platform& platform, FrmPlayList& form);
    HeaderDisplay(const HeaderDisplay&) = delete;
    HeaderDisplay& operator=(const HeaderDisplay&) = delete;

    /// The button "...": opens the dialog and reads the chosen file. After a cancel, reads the
    /// edited file if the dialog still has the file name of an earlier use; otherwise does nothing.
    void cmdHdr1_Click();
    /// The button "Read header": analyses the edited file, stores the values for info(), yields,
    /// and shows the values. A value that the analysis cannot read keeps its content from an
    /// earlier file. For a file that is too short or cannot be read, shows a message with
    /// noDataText. Text5, the header's lines and the tag's six fields are then empty.
    void cmdHdr2_Click();

    /// The values that were read last, kept as long as the program runs.
    [[nodiscard]] const Mp3Info& info() const { return Mp3Info_; }

  private:
    void showHeader();
    void showTag();

    const Platform& platform_;
    FrmPlayList& form_;
    Mp3Info Mp3Info_;
    std::string Mp3Path_; ///< the file that is analysed
};

} // namespace sonarith
