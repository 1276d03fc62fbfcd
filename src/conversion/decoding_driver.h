// SPDX-License-Identifier: GPL-3.0-or-later
// Converts MP3 files to WAV files, one after the other, with the conversion worker
// (conversion_worker.h; its window is Form6). The selected node of the work tree determines which
// files: all available MP3 files, all files of the group "Selected MP3 Files", or a single file.
#pragma once

#include <string>

#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"

namespace sonarith {

class DecodingDriver {
  public:
    /// Sets the handler of CmdDecoder. All parameters must outlive this object.
    DecodingDriver(const Platform& platform, ProcessState& process, Windows& windows,
                   FileAdder& adder);
    DecodingDriver(const DecodingDriver&) = delete;
    DecodingDriver& operator=(const DecodingDriver&) = delete;

    /// Yields. Returns when all files are done or a stop was requested, and leaves stopRequested
    /// set in both cases. If the list of files to convert is empty, only shows a message.
    ///
    /// If a file no longer exists, no worker starts for it, and workerBusy stays true. The function
    /// then waits until the program ends, or until a decoding ends that something else started. If
    /// Form6 is still loaded for an earlier file, the function skips the missing file instead.
    void CmdDecoder_Click();

    /// Loads Form6 if the file `path` exists; otherwise does nothing. `path` is only checked: the
    /// worker converts ProcessState::currentFile.
    void StartDecoding(const std::string& path);

  private:
    enum class Case { lowered, unchanged };

    void decodeAll();
    void decodeSelected();
    void decodeOne(const std::string& text);
    void decodeLine(const ListBox& list, Case letters);
    void findFile(const std::string& text);
    [[nodiscard]] bool findIn(const ListBox& list, const std::string& name);
    void showCaption();
    void fileStep();
    void finish();

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    Form1& form_;
    FileAdder& adder_;
};

} // namespace sonarith
