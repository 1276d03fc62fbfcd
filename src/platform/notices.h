// SPDX-License-Identifier: GPL-3.0-or-later
// What the platform has to tell the user while the logic stays silent: a track that was not saved,
// sound that could not be read, an output that was lost. How it is shown is decided elsewhere.
#pragma once

#include <string>

namespace sonarith {

/// One report to the user.
struct Notice {
    /// A whole sentence with file, place and cause: "Track 2 was not saved: no space left in
    /// /music; 0:42 are kept".
    std::string text;
    /// Names what went wrong ("output hw:0", "store"). While a cause holds, further notices of it
    /// are not shown. Empty: every notice is shown.
    std::string cause = {};
};

/// Any thread may call the members. They return at once and take no lock for longer than a copy.
class Notices {
  public:
    virtual ~Notices() = default;
    virtual void report(Notice notice) = 0;
    /// The cause no longer holds: its next notice is shown again. `text`, if not empty, is shown
    /// ("The output ... is back"), but only if a notice of this cause was.
    virtual void settled(const std::string& cause, const std::string& text) = 0;
};

} // namespace sonarith
