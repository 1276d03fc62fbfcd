// SPDX-License-Identifier: GPL-3.0-or-later
// Adds one new file to the work tree and its lists: the WAV file of a stopped capture or of
// a decoding, or a file that the user picks. WorkTree::showfiles() adds the files that a scan of
// the destination folder finds.
#pragma once

#include <string>

#include "forms/form1.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

class FileAdder {
  public:
    /// All parameters must outlive this object.
    FileAdder(const Platform& platform, ProcessState& process, Form1& form)
        : platform_(platform), process_(process), form_(form) {}

    /// Waits 0.3 s, then adds one WAV or MP3 file: a node at the end of its group and an entry at
    /// the top of its list, both in lower case. Does nothing, without a message, if the file is
    /// shorter than leastFileLength, if its length cannot be determined, or if its name is already
    /// in the tree.
    void Cmaddfile2(std::string path);

  private:
    [[nodiscard]] bool worthShowing(const std::string& path) const;

    const Platform& platform_;
    ProcessState& process_;
    Form1& form_;
};

} // namespace sonarith
