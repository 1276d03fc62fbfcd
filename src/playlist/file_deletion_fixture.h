// SPDX-License-Identifier: GPL-3.0-or-later
// The base class of the deletion tests: opens the playlist editor with three files and deletes a
// file.
#pragma once

#include <string>

#include "support/playlist_world.h"

namespace sonarith::test {

inline const ShownBox deletionQuestion{"Are you sure you want to delete this file?",
                                       BoxIcon::warning, BoxButtons::yesNoCancel, "Delete File"};
inline const ShownBox noDataBox{"File contains no data"};

class FileDeletionTest : public PlaylistWorld {
  protected:
    /// Opens the window with three files, each of which has an entry.
    void openThree() {
        addMp3(pathA, "Title A");
        addMp3(pathB, "Title B");
        addMp3(pathC, "Title C");
        open({pathA, pathB, pathC});
    }
    void remove(const std::string& path, BoxAnswer answer = BoxAnswer::yes) {
        editor.Text5.setText(path);
        boxes.answers = {answer};
        editor.Command10.click();
    }
    /// The number of yields during the deletion of a file that has an entry.
    int yieldsOfADeletion() {
        editor.unload();
        openThree();
        choose(0);
        const int before = loop.yieldCount();
        remove(pathA);
        return loop.yieldCount() - before;
    }
    static ShownBox deleted(const std::string& path) { return {path + " has been Deleted"}; }
};

} // namespace sonarith::test
