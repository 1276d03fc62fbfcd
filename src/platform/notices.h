// SPDX-License-Identifier: GPL-3.0-or-later
// Notices of the platform to the user about failures that the logic does not report: a track that
// was not saved, audio that could not be read, an output that was lost. The display is implemented
// elsewhere.
#pragma once

#include <string>

namespace sonarith {

/// One report to the user.
struct Notice {
    /// A complete sentence with file, place and cause: "Track 2 was not saved: no space left in
    /// /music; 0:42 are kept".
    std::string text;
    /// Identifies the cause ("output hw:0", "store"). While a cause holds, further notices of it
    /// are not shown. Empty: every notice is shown.
    std::string cause = {};
};

/// All members may be called on any thread. They return at once and hold a lock no longer than a
/// copy takes.
class Notices {
  public:
    virtual ~Notices() = default;
    virtual void report(Notice notice) = 0;
    /// The cause no longer holds: its next notice is shown again. A `text` that is not empty ("The
    /// output ... is back") is shown only if a notice of this cause was shown.
    virtual void settled(const std::string& cause, const std::string& text) = 0;
};

} // namespace sonarith
