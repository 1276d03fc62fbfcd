// SPDX-License-Identifier: GPL-3.0-or-later
// The one road by which a new file enters the work tree and its lists: a finished capture, a
// decoded file, a file picked by hand. Scans of the destination folder have a road of their own.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

class FileAdder {
  public:
    /// All outlive this.
    FileAdder(const Platform& platform, ProcessState& process, Form1& form)
        : platform_(platform), process_(process), form_(form) {}

    /// Waits 0.3 s, then adds one WAV or MP3 file: a node at the end of its group, an entry on top
    /// of its list, both in lower case. Nothing happens, and nobody is told, for a file that is too
    /// short or cannot be read, or whose name stands in the tree already.
    void Cmaddfile2(std::string path);

  private:
    [[nodiscard]] bool worthShowing(const std::string& path) const;

    const Platform& platform_;
    ProcessState& process_;
    Form1& form_;
};

} // namespace sonarith
