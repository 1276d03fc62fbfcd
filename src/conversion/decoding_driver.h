// SPDX-License-Identifier: GPL-3.0-or-later
// Turns the MP3 files that the selected node stands for into WAV files, one after the other: all of
// them, the selected ones, or one. The work on each file is the conversion worker's.
#pragma once

#include <string>

#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"

namespace sonarith {

class DecodingDriver {
  public:
    /// Becomes the handler of CmdDecoder. All outlive this.
    DecodingDriver(const Platform& platform, ProcessState& process, Windows& windows,
                   FileAdder& adder);
    DecodingDriver(const DecodingDriver&) = delete;
    DecodingDriver& operator=(const DecodingDriver&) = delete;

    /// Returns when all is done or stopped, with stopRequested set. Yields all the while. A file
    /// that is not there any more makes it wait for the end of the program.
    void CmdDecoder_Click();

    /// Loads a worker for currentFile if there is a file of `path`; else nothing.
    void StartDecoding(const std::string& path);

  private:
    enum class Case { lowered, asItStands };

    void decodeAll();
    void decodeSelected();
    void decodeOne(const std::string& text);
    void decodeLine(const ListBox& list, Case letters);
    void findFile(const std::string& text);
    [[nodiscard]] bool findIn(const ListBox& list, const std::string& name);
    void tellCaption();
    void fileStep();
    void finish();

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    Form1& form_;
    FileAdder& adder_;
};

} // namespace sonarith
