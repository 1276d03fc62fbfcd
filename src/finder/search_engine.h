// SPDX-License-Identifier: GPL-3.0-or-later
// Lists the files of one type in a chosen folder and in the folders below it. The walk is not
// recursive: a list box (lstdirs) contains the folders still to scan, and a loop scans them one at
// a time. The engine shows no message and ignores failed steps.
#pragma once

#include <string>

#include "forms/frm_search.h"
#include "platform/directory_walk.h"
#include "platform/event_loop.h"

namespace sonarith {

class SearchEngine {
  public:
    /// All parameters must outlive this object.
    SearchEngine(FrmSearch& finder, Directories& directories, EventLoop& loop)
        : finder_(finder), directories_(directories), loop_(loop) {}

    /// Searches Dir1's folder and the folders below it; yields between the directory
    /// entries of a folder and at the end of each folder. Clearing lstdirs stops the search: the
    /// current folder is scanned to its end, but no other folder. If the window is unloaded during
    /// a yield, the search ends after that yield and does not change a window that is loaded later.
    void SearchFiles();

    /// Scans one folder; ends early if the finder's window is unloaded. Removes surrounding blanks
    /// from `path` and adds a trailing backslash. `pattern` is always "*.*".
    void findfilesapi(DirectoryWalk& walk, std::string& path, const std::string& pattern);

    /// A similar scan, which lists files of every type, but ignores entries with an attribute other
    /// than hidden, system, directory and archive. Nothing in the program calls this function.
    void findfilesdir(DirectoryWalk& walk, std::string& path, const std::string& pattern);

  private:
    enum class Counting { no, yes };
    /// Identifies one load of the window by its number.
    using WindowLoad = int;

    [[nodiscard]] WindowLoad presentLoad();
    /// Whether the window has not been unloaded since the load `load`.
    [[nodiscard]] bool isOpen(WindowLoad load) const;
    void begin();
    void finish(double startSeconds);
    void queueFolder(const std::string& path, const std::string& name, Counting counting);
    void takeFirstEntry(const std::string& path, const FindRecord& entry);
    void takeFile(const std::string& path, const std::string& name, std::string& ext);
    [[nodiscard]] bool isWanted() const;

    FrmSearch& finder_;
    Directories& directories_;
    EventLoop& loop_;
};

} // namespace sonarith
