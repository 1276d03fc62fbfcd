// SPDX-License-Identifier: GPL-3.0-or-later
// Renames and deletes the edited file (Text5). A deletion changes the list on the screen and in the
// store; a rename changes an existing entry only on the screen.
#pragma once

#include <string>

#include "forms/frm_playlist.h"
#include "platform/platform.h"
#include "platform/result.h"
#include "playlist/playlist_entries.h"

namespace sonarith {

class FileOperations {
  public:
    /// Sets the handlers of Command2 and Command10. All parameters must outlive this object.
    FileOperations(const Platform& platform, FrmPlayList& form, PlaylistEntries& entries);
    FileOperations(const FileOperations&) = delete;
    FileOperations& operator=(const FileOperations&) = delete;

    /// "Rename File": renames the file to a path chosen in a dialog. If this path already exists,
    /// asks whether to overwrite the existing file, but deliberately fails even if the user agrees.
    /// A file without an entry gets an entry, also in the store.
    void Command2_Click();
    /// "Delete  File": asks, deletes, reports the file as deleted even if it still exists, and
    /// removes its entry. An empty file is deleted without asking and keeps its entry. Yields.
    void Command10_Click();

  private:
    /// The result of deleteFile(), the first half of a deletion. reportAndDelist() is the second
    /// half.
    enum class Deletion {
        over,  ///< no second half: the file is not reported as deleted and keeps its entry
        tried, ///< the deletion was attempted; the second half ignores failures
        broken ///< a step failed; the second half starts anyway and ends at its first failure
    };

    Status renameFile();
    void renameEntries(const std::string& target);
    [[nodiscard]] Deletion deleteFile();
    [[nodiscard]] Deletion deleteEmptyFile();
    Status reportAndDelist(Deletion deletion);
    Status showLength();
    void selectEntry();
    void clearDisplay();
    /// The path of the edited file.
    [[nodiscard]] std::string path() const;

    const Platform& platform_;
    FrmPlayList& form_;
    PlaylistEntries& entries_;
};

} // namespace sonarith
