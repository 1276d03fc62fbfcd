// SPDX-License-Identifier: GPL-3.0-or-later
// Walks through the folders below a chosen one and lists the files of a type. The walk does not
// recurse: the folders to come stand in a list box, and a loop takes them one at a time. It shows
// no message; a step that fails is passed over.
#pragma once

#include <string>

#include "forms/frm_search.h"
#include "platform/directory_walk.h"
#include "platform/event_loop.h"

namespace sonarith {

class SearchEngine {
  public:
    /// All must outlive this.
    SearchEngine(FrmSearch& finder, Directories& directories, EventLoop& loop)
        : finder_(finder), directories_(directories), loop_(loop) {}

    /// A whole search from Dir1's folder on, yielding before each directory entry. Clearing lstdirs
    /// meanwhile stops it: the folder under scan is scanned to its end, and no other. Unloading the
    /// window ends it at the yield in which that happens, and nothing of it reaches a window that
    /// was loaded since.
    void SearchFiles();

    /// Scans one folder; ends early with the window that it began in. `path` comes back without
    /// blanks around it and with a backslash at its end. `pattern` is always "*.*".
    void findfilesapi(DirectoryWalk& walk, std::string& path, const std::string& pattern);

    /// A scan of the same shape that takes every file. Nothing calls it.
    void findfilesdir(DirectoryWalk& walk, std::string& path, const std::string& pattern);

  private:
    enum class Counting { no, yes };
    /// One of the window's loads, by its number.
    using WindowLoad = int;

    [[nodiscard]] WindowLoad presentLoad();
    /// Whether the window is still the one of that load.
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
