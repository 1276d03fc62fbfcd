// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/patient_walk.h"

#include <utility>

#include "platform/linux/waiting/release_elsewhere.h"
#include "platform/text/unicode.h"

namespace sonarith {

PatientWalk::~PatientWalk() {
    waiting::releaseElsewhere(std::move(machine_));
}

std::shared_ptr<MachineWalk> PatientWalk::makeMachineWalk() const {
    return std::make_shared<MachineWalk>(walked_, longestReadAhead_);
}

/// The first folder is read without the folders below it: see PatientWalk. Nothing is read ahead
/// before the logic has listed all folders that were read ahead earlier. This limits the memory, in
/// whatever order the logic lists folders. Nothing is read ahead while a call hangs, because the
/// folders below may be on the hanging mount.
ReadAhead PatientWalk::mayReadAhead() const {
    const bool isFirst = lastHandle_ == 0;
    return !isFirst && ahead_.empty() && paths_.allReturned() ? ReadAhead::yes : ReadAhead::no;
}

void PatientWalk::read(const std::string& folder) {
    const auto folders = std::make_shared<ReadFolders>(folder);
    const auto read = paths_.askInSteps(
        paths_.bound(), [folders] { return std::vector{folders->folder()}; },
        [machine = machine_, folder, ahead = mayReadAhead(), folders](MachineFiles& files) {
            machine->read(files, folder, ahead, *folders);
            return true;
        });
    for (ReadFolder& found : folders->take()) {
        std::string key = lowerCase(found.folder);
        ahead_.insert_or_assign(
            std::move(key), Listing{std::move(found.folder), std::move(found.part), 0, machine_});
    }
    if (!read) {
        machine_ = makeMachineWalk();
    }
}

FindHandle PatientWalk::FindFirst(const std::string& pattern, FindRecord& record) {
    const std::string_view allOfIt = "\\*.*";
    if (!pattern.ends_with(allOfIt)) {
        return invalidFindHandle;
    }
    const std::string folder = pattern.substr(0, pattern.size() - allOfIt.size() + 1);
    const std::string key = lowerCase(folder);
    if (!ahead_.contains(key)) {
        read(folder);
    }
    auto found = ahead_.extract(key);
    if (!found) {
        return invalidFindHandle;
    }
    Listing& listing = found.mapped();
    record = std::move(listing.part.records[listing.next++]);
    listings_.emplace(++lastHandle_, std::move(listing));
    return lastHandle_;
}

bool PatientWalk::fetch(Listing& listing) {
    if (!isOpen(listing)) {
        return false;
    }
    listing.part.records.clear();
    auto part = paths_.ask({listing.folder},
                           [machine = machine_, part = listing.part](MachineFiles& files) mutable {
                               return machine->readOn(files, std::move(part));
                           });
    if (!part) {
        machine_ = makeMachineWalk();
    }
    listing.part = part ? std::move(*part) : FolderPart{};
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
    Listing listing = std::move(found->second);
    listings_.erase(found);
    if (!isOpen(listing)) {
        return;
    }
    listing.part.records.clear();
    const auto closed =
        paths_.ask({listing.folder},
                   [machine = machine_, part = std::move(listing.part)](MachineFiles& files) {
                       machine->close(files, part);
                       return true;
                   });
    if (!closed) {
        machine_ = makeMachineWalk();
    }
}

} // namespace sonarith
