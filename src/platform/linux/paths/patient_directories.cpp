// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/patient_directories.h"

#include <cstddef>
#include <map>
#include <utility>

#include "platform/linux/files/file_error.h"
#include "platform/linux/paths/path_names.h"
#include "platform/linux/waiting/release_elsewhere.h"

namespace sonarith {

namespace {

/// Entries per call. Nearly all folders fit into one part, and a folder with millions of files is
/// not waited for as a whole.
constexpr std::size_t mostRecords = 1000;

/// The machine's side of a walk: owned by the calls, and left behind with one that hangs.
struct MachineWalk {
    explicit MachineWalk(std::shared_ptr<WalkedFolders> folders) : walked(std::move(folders)) {}

    /// The walk through these files. They are new objects after a call to the previous ones,
    /// perhaps not of this walk, was left behind.
    DirectoryWalk& of(MachineFiles& machine) {
        if (owner.get() != &machine) {
            walk = machine.continueWalk(walked);
            owner = machine.shared_from_this();
            ++number;
        }
        return *walk;
    }

    const std::shared_ptr<WalkedFolders> walked;
    std::shared_ptr<MachineFiles> owner; ///< owner of the walk, which must not outlive it
    std::unique_ptr<DirectoryWalk> walk;
    int number = 0; ///< identifies the walk: handles are valid only in it
};

/// A part of a folder.
struct Part {
    int walk = 0;                          ///< as MachineWalk::number
    FindHandle handle = invalidFindHandle; ///< in that walk
    std::vector<FindRecord> records{};
    bool atEnd = false; ///< no more follow, and the machine's side is closed
};

void readOn(DirectoryWalk& walk, Part& part) {
    FindRecord record;
    while (part.records.size() < mostRecords) {
        if (!walk.FindNext(part.handle, record)) {
            walk.FindClose(part.handle);
            part.atEnd = true;
            return;
        }
        part.records.push_back(std::move(record));
    }
}

class PatientWalk final : public DirectoryWalk {
  public:
    explicit PatientWalk(PatientPaths& paths) : paths_(paths) {}
    ~PatientWalk() override {
        // This also closes folders that are still open.
        waiting::releaseElsewhere(std::move(machine_));
    }
    PatientWalk(const PatientWalk&) = delete;
    PatientWalk& operator=(const PatientWalk&) = delete;

    FindHandle FindFirst(const std::string& pattern, FindRecord& record) override;
    bool FindNext(FindHandle handle, FindRecord& record) override;
    void FindClose(FindHandle handle) override;

  private:
    struct Listing {
        std::string folder;
        Part part;
        std::size_t next = 0;                 ///< in the part's records
        std::weak_ptr<MachineWalk> machine{}; ///< the owner of the open folder with the rest
    };

    /// `question` is called with the machine's side and its walk.
    template <typename Question>
    auto ask(const std::string& folder, Question question);
    [[nodiscard]] bool fetch(Listing& listing);
    [[nodiscard]] bool isOpen(const Listing& listing) const {
        return !listing.part.atEnd && listing.machine.lock() == machine_;
    }

    PatientPaths& paths_;
    std::shared_ptr<WalkedFolders> walked_ = std::make_shared<WalkedFolders>();
    std::shared_ptr<MachineWalk> machine_ = std::make_shared<MachineWalk>(walked_);
    std::map<FindHandle, Listing> listings_;
    FindHandle lastHandle_ = 0;
};

/// The result of a call to the machine's side. If it times out, that side is left behind: the list
/// of its folders is kept, and the rest of its open folders is not read.
template <typename Question>
auto PatientWalk::ask(const std::string& folder, Question question) {
    auto answer = paths_.ask({folder}, [machine = machine_, question = std::move(question)](
                                           MachineFiles& files) mutable {
        DirectoryWalk& walk = machine->of(files);
        return question(*machine, walk);
    });
    if (!answer) {
        machine_ = std::make_shared<MachineWalk>(walked_);
    }
    return answer;
}

FindHandle PatientWalk::FindFirst(const std::string& pattern, FindRecord& record) {
    const std::string folder = pattern.substr(0, pattern.rfind('\\') + 1);
    auto part = ask(folder, [pattern](const MachineWalk& machine, DirectoryWalk& walk) {
        Part first{.walk = machine.number};
        FindRecord entry;
        first.handle = walk.FindFirst(pattern, entry);
        if (first.handle != invalidFindHandle) {
            first.records.push_back(std::move(entry));
            readOn(walk, first);
        }
        return first;
    });
    if (!part || part->handle == invalidFindHandle) {
        return invalidFindHandle;
    }
    record = std::move(part->records.front());
    listings_.emplace(++lastHandle_, Listing{folder, std::move(*part), 1, machine_});
    return lastHandle_;
}

bool PatientWalk::fetch(Listing& listing) {
    if (!isOpen(listing)) {
        return false;
    }
    auto part = ask(listing.folder, [walked = listing.part.walk, handle = listing.part.handle](
                                        const MachineWalk& machine, DirectoryWalk& walk) {
        Part next{.walk = walked, .handle = handle};
        if (walked == machine.number) {
            readOn(walk, next);
        }
        return next;
    });
    listing.part = part ? std::move(*part) : Part{};
    listing.part.atEnd = listing.part.atEnd || listing.part.records.empty();
    listing.next = 0;
    return !listing.part.records.empty();
}

bool PatientWalk::FindNext(FindHandle handle, FindRecord& record) {
    const auto found = listings_.find(handle);
    if (found == listings_.end()) {
        return false;
    }
    Listing& listing = found->second;
    if (listing.next == listing.part.records.size() && !fetch(listing)) {
        return false;
    }
    record = std::move(listing.part.records[listing.next++]);
    return true;
}

void PatientWalk::FindClose(FindHandle handle) {
    const auto found = listings_.find(handle);
    if (found == listings_.end()) {
        return;
    }
    const Listing listing = std::move(found->second);
    listings_.erase(found);
    if (isOpen(listing)) {
        static_cast<void>(ask(
            listing.folder, [part = listing.part](const MachineWalk& machine, DirectoryWalk& walk) {
                if (part.walk == machine.number) {
                    walk.FindClose(part.handle);
                }
                return true;
            }));
    }
}

} // namespace

std::unique_ptr<DirectoryWalk> PatientDirectories::startWalk() {
    return std::make_unique<PatientWalk>(paths_);
}

Result<std::string> PatientDirectories::folder(const std::string& path) const {
    if (path.empty()) {
        return fileError(ErrorNumber::pathNotFound);
    }
    const std::string whole = absolutePath(path, files_.currentFolder());
    const auto found = paths_.ask(
        {whole}, [whole](MachineFiles& machine) { return machine.directories().folder(whole); });
    return found ? *found : fileError(ErrorNumber::pathNotFound);
}

std::vector<std::string> PatientDirectories::drives() const {
    if (auto drives =
            paths_.ask({}, [](MachineFiles& machine) { return machine.directories().drives(); })) {
        drives_ = std::move(*drives);
    }
    return drives_;
}

} // namespace sonarith
