// SPDX-License-Identifier: GPL-3.0-or-later
// Walks through the machine's folders for the logic thread: limits the wait for each call,
// and skips folders that do not respond. machine_walk.h reads the folders.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "platform/linux/paths/machine_walk.h"
#include "platform/linux/paths/patient_paths.h"

namespace sonarith {

/// Created by PatientDirectories::startWalk(). When the logic requests a folder, the walk may
/// also read ahead folders below it. The first request reads nothing ahead, so a walk through a
/// single folder accesses only this folder. Folders that were read ahead may have changed before
/// the walk lists them.
class PatientWalk final : public DirectoryWalk {
  public:
    /// A call that reads ahead begins no further folder after this time, so that a slow disk hardly
    /// delays the folder that the logic waits for. The limit also keeps a call that was left
    /// behind from reading on: when the folder at which it hung responds again, the limit has long
    /// passed, so the call begins no further folder. The walk reads the remaining folders with new
    /// calls.
    static constexpr std::chrono::milliseconds usualReadAhead{5};

    /// `paths` must outlive this object.
    explicit PatientWalk(PatientPaths& paths,
                         MachineWalk::Duration longestReadAhead = usualReadAhead)
        : paths_(paths), longestReadAhead_(longestReadAhead) {}
    /// Does not wait: folders that are still open are closed on another thread.
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
        std::size_t next = 0;                 ///< index in part.records
        std::weak_ptr<MachineWalk> machine{}; ///< the object that can read the rest of the folder
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
    /// Replaced by a new object when PatientPaths returns no result for a call.
    std::shared_ptr<MachineWalk> machine_ = makeMachineWalk();
    /// Folders that were read but not listed yet, by their path in lower case.
    std::map<std::string, Listing> ahead_;
    std::map<FindHandle, Listing> listings_;
    FindHandle lastHandle_ = 0;
};

} // namespace sonarith
