// SPDX-License-Identifier: GPL-3.0-or-later
// Receives the platform's notices to the user about failures that the logic does not report: a
// track that was not saved, audio that could not be read, an output that was lost. Interface only;
// it does not display the notices.
#pragma once

#include <string>

namespace sonarith {

/// One report to the user.
struct Notice {
    /// Complete sentences that name the file or device concerned, and the reason.
    std::string text;
    /// Identifies the cause ("output hw:0"). After the first notice of a cause, further
    /// notices of it are not shown until settled() is called. Empty: the notice is always shown.
    std::string cause = {};
};

/// All members may be called on any thread. They return at once and hold a lock no longer than
/// copying a notice takes.
class Notices {
  public:
    virtual ~Notices() = default;
    virtual void report(Notice notice) = 0;
    /// Reports that the cause is settled: the next notice of this cause will be shown. `text`
    /// ("... is available again") is shown only if a notice of this cause was shown and `text` is
    /// not empty.
    virtual void settled(const std::string& cause, const std::string& text) = 0;
};

} // namespace sonarith
