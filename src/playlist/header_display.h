// SPDX-License-Identifier: GPL-3.0-or-later
// Shows header and tag of the edited file (Text5), and lets the user choose that file in a dialog.
// The analysis itself is formats/mp3_analysis.h.
#pragma once

#include <string>

#include "formats/mp3_info.h"
#include "forms/frm_playlist.h"
#include "platform/platform.h"

namespace sonarith {

/// Shown for a file that is too short, or cannot be read.
inline constexpr const char* noDataText = "File contains no data";

class HeaderDisplay {
  public:
    /// Becomes the handler of cmdHdr1 and cmdHdr2. Both outlive this.
    HeaderDisplay(const Platform& platform, FrmPlayList& form);
    HeaderDisplay(const HeaderDisplay&) = delete;
    HeaderDisplay& operator=(const HeaderDisplay&) = delete;

    /// "...": after a cancel it reads the edited file.
    void cmdHdr1_Click();
    /// "Read header". Of a file whose analysis fails it shows the values of the file before. Yields
    /// before it shows them.
    void cmdHdr2_Click();

    /// What the analyses have left, for the time that the program runs.
    [[nodiscard]] const Mp3Info& info() const { return Mp3Info_; }

  private:
    void showHeader();
    void showTag();

    const Platform& platform_;
    FrmPlayList& form_;
    Mp3Info Mp3Info_;
    std::string Mp3Path_; ///< the file under analysis
};

} // namespace sonarith
