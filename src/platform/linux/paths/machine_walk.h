// SPDX-License-Identifier: GPL-3.0-or-later
// The part of a patient walk (patient_walk.h) that accesses the disk: reads folders, and on request
// reads ahead the folders below them. Reading ahead saves switches between two threads: one switch
// costs more than reading a usual folder. This part runs on a thread that may hang; patient_walk.h
// waits for that thread.
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
    /// Nearly all folders fit into one part. A folder with millions of files is read in many parts,
    /// so that the time of one call is limited.
    static constexpr std::size_t mostRecords = 1000;

    int walk = 0;                          ///< MachineWalk::number_ when the part was read
    FindHandle handle = invalidFindHandle; ///< valid in that walk only
    std::vector<FindRecord> records{};
    bool atEnd = false; ///< whether no more entries follow; the handle is then closed
};

struct ReadFolder {
    std::string folder; ///< the logic's path, with a trailing backslash
    FolderPart part;    ///< the first entries, at least one
};

/// Passes to the logic thread the folders that one call of MachineWalk::read() has read.
/// Thread-safe.
class ReadFolders {
  public:
    explicit ReadFolders(std::string first) : folder_(std::move(first)) {}

    /// Called before each access: `folder` is the folder that is accessed next.
    void access(const std::string& folder);
    void add(ReadFolder folder);

    [[nodiscard]] std::vector<ReadFolder> take();
    /// The folder that was accessed last. If the call hangs, it hangs in this folder.
    [[nodiscard]] std::string folder() const;

  private:
    mutable std::mutex mutex_;
    std::string folder_;
    std::vector<ReadFolder> read_;
};

enum class ReadAhead { no, yes };

/// Accesses the disk for one walk. Not thread-safe: only one call may run at a time.
class MachineWalk {
  public:
    using Duration = std::chrono::steady_clock::duration;

    /// `longestReadAhead` limits the time of one call that reads ahead.
    MachineWalk(std::shared_ptr<WalkedFolders> folders, Duration longestReadAhead)
        : walked_(std::move(folders)), longestReadAhead_(longestReadAhead) {}

    /// Reads the folder's first part. With ReadAhead::yes it then reads the folders below, except
    /// hidden ones. Of the folders that are not read yet, it always reads the one that it found
    /// last. This is the order of the logic's walk, which also skips hidden folders. The call ends
    /// at its limit of time or of entries, or at a folder that does not fit into one part.
    void read(MachineFiles& machine, const std::string& folder, ReadAhead ahead, ReadFolders& read);
    /// Reads and returns the next part of the folder that `part` belongs to. The returned part has
    /// no records if another MachineFiles object read `part`.
    [[nodiscard]] FolderPart readOn(MachineFiles& machine, FolderPart part);
    void close(MachineFiles& machine, const FolderPart& part);

  private:
    [[nodiscard]] DirectoryWalk& of(MachineFiles& machine);

    const std::shared_ptr<WalkedFolders> walked_;
    const Duration longestReadAhead_;
    std::shared_ptr<MachineFiles> owner_; ///< has created walk_; walk_ must not outlive it
    std::unique_ptr<DirectoryWalk> walk_;
    int number_ = 0; ///< identifies walk_: handles are valid only in one walk
};

} // namespace sonarith
