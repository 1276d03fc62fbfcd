// SPDX-License-Identifier: GPL-3.0-or-later
// The part of a patient walk that accesses the disk: it reads folders, and if wanted the folders
// below them ahead of the walk, since each handover between two threads costs more than reading a
// usual folder. It runs on a thread that may hang; patient_walk.h is the part that waits.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/directory_walk.h"
#include "platform/linux/paths/machine_files.h"

namespace sonarith {

/// Entries of one folder, at most `mostRecords`.
struct FolderPart {
    /// Nearly all folders fit into one part, and a folder with millions of files is not waited for
    /// as a whole.
    static constexpr std::size_t mostRecords = 1000;

    int walk = 0;                          ///< as MachineWalk::number()
    FindHandle handle = invalidFindHandle; ///< in that walk
    std::vector<FindRecord> records{};
    bool atEnd = false; ///< no more entries follow, and the handle is closed
};

struct ReadFolder {
    std::string folder; ///< the logic's path, with its backslash
    FolderPart part;    ///< the first entries, at least one
};

/// Passes the folders of one call to the thread of the logic. Thread-safe.
class ReadFolders {
  public:
    explicit ReadFolders(std::string first) : folder_(std::move(first)) {}

    /// `folder` is the one that is accessed from now on.
    void access(const std::string& folder);
    void add(ReadFolder folder);

    [[nodiscard]] std::vector<ReadFolder> take();
    /// The folder that was accessed last. While the call hangs it hangs there.
    [[nodiscard]] std::string folder() const;

  private:
    mutable std::mutex mutex_;
    std::string folder_;
    std::vector<ReadFolder> read_;
};

enum class ReadAhead { no, yes };

/// For the calls of one walk, one at a time.
class MachineWalk {
  public:
    using Duration = std::chrono::steady_clock::duration;

    /// `longestReadAhead` limits the time of one call that reads ahead.
    MachineWalk(std::shared_ptr<WalkedFolders> folders, Duration longestReadAhead)
        : walked_(std::move(folders)), longestReadAhead_(longestReadAhead) {}

    /// Reads the folder's first part. With ReadAhead::yes the folders below follow, in the order of
    /// a walk that goes on with the folder found last and skips hidden ones, until they are enough
    /// for one call.
    void read(MachineFiles& machine, const std::string& folder, ReadAhead ahead, ReadFolders& read);
    /// The part that follows `part`; an empty one if the files are no longer those of that part.
    [[nodiscard]] FolderPart readOn(MachineFiles& machine, FolderPart part);
    void close(MachineFiles& machine, const FolderPart& part);

  private:
    [[nodiscard]] DirectoryWalk& of(MachineFiles& machine);

    const std::shared_ptr<WalkedFolders> walked_;
    const Duration longestReadAhead_;
    std::shared_ptr<MachineFiles> owner_; ///< owner of the walk, which must not outlive it
    std::unique_ptr<DirectoryWalk> walk_;
    int number_ = 0; ///< identifies the walk: handles are valid only in it
};

} // namespace sonarith
