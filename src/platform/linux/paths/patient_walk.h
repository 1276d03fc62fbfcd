// SPDX-License-Identifier: GPL-3.0-or-later
// A walk through the machine's folders for the thread of the logic: it waits for each call with a
// bound, and skips folders that do not respond. machine_walk.h reads the folders.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "platform/linux/paths/machine_walk.h"
#include "platform/linux/paths/patient_paths.h"

namespace sonarith {

/// As PatientDirectories::startWalk says. From the second folder on it reads ahead, so a walk that
/// lists one folder only accesses that one. What was read ahead is at most as old as the walk
/// through it takes.
class PatientWalk final : public DirectoryWalk {
  public:
    /// Keeps a slow disk from delaying the folder that the logic waits for. A call that was left
    /// behind has taken longer, so it ends with the folder that hung, and the walk lists the
    /// others itself.
    static constexpr std::chrono::milliseconds usualReadAhead{5};

    /// `paths` must outlive this.
    explicit PatientWalk(PatientPaths& paths,
                         MachineWalk::Duration longestReadAhead = usualReadAhead)
        : paths_(paths), longestReadAhead_(longestReadAhead) {}
    /// Waits for nothing: folders that are still open are closed on another thread.
    ~PatientWalk() override;
    PatientWalk(const PatientWalk&) = delete;
    PatientWalk& operator=(const PatientWalk&) = delete;

    FindHandle FindFirst(const std::string& pattern, FindRecord& record) override;
    bool FindNext(FindHandle handle, FindRecord& record) override;
    void FindClose(FindHandle handle) override;

  private:
    struct Listing {
        std::string folder;
        FolderPart part;
        std::size_t next = 0;                 ///< in the part's records
        std::weak_ptr<MachineWalk> machine{}; ///< the owner of the open folder with the rest
    };

    [[nodiscard]] std::shared_ptr<MachineWalk> makeMachineWalk() const;
    [[nodiscard]] ReadAhead mayReadAhead() const;
    void read(const std::string& folder);
    [[nodiscard]] bool fetch(Listing& listing);
    [[nodiscard]] bool isOpen(const Listing& listing) const {
        return !listing.part.atEnd && listing.machine.lock() == machine_;
    }

    PatientPaths& paths_;
    const MachineWalk::Duration longestReadAhead_;
    std::shared_ptr<WalkedFolders> walked_ = std::make_shared<WalkedFolders>();
    /// Left behind with a call that timed out.
    std::shared_ptr<MachineWalk> machine_ = makeMachineWalk();
    /// Folders that were read and not asked for yet, keyed by their path in lower case.
    std::map<std::string, Listing> ahead_;
    std::map<FindHandle, Listing> listings_;
    FindHandle lastHandle_ = 0;
};

} // namespace sonarith
