// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/machine_walk.h"

#include <cstddef>

#include "platform/text/unicode.h"

namespace sonarith {

namespace {

// When a call of MachineWalk::read() has read this many records, the call reads no further folder.
// This bounds the memory of the call.
constexpr std::size_t mostReadAhead = 4000;

void readInto(DirectoryWalk& walk, FolderPart& part) {
    FindRecord record;
    while (part.records.size() < FolderPart::mostRecords) {
        if (!walk.FindNext(part.handle, record)) {
            walk.FindClose(part.handle);
            part.atEnd = true;
            return;
        }
        part.records.push_back(std::move(record));
    }
}

/// Appends to `queue` the subfolders that `listed` contains and that the logic's walk will list.
/// MachineWalk::read() takes the next folder from the end of the queue.
void queueFoldersOf(const ReadFolder& listed, std::vector<std::string>& queue) {
    for (const FindRecord& entry : listed.part.records) {
        if ((entry.attributes & file_attribute::directory) != 0 && !entry.name.starts_with('.')) {
            queue.push_back(lowerCase(listed.folder + entry.name + "\\"));
        }
    }
}

} // namespace

void ReadFolders::access(const std::string& folder) {
    const std::lock_guard lock(mutex_);
    folder_ = folder;
}

void ReadFolders::add(ReadFolder folder) {
    const std::lock_guard lock(mutex_);
    read_.push_back(std::move(folder));
}

std::vector<ReadFolder> ReadFolders::take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(read_, {});
}

std::string ReadFolders::folder() const {
    const std::lock_guard lock(mutex_);
    return folder_;
}

/// Returns the walk on `machine`. Creates it at the first call, and whenever `machine` is another
/// object than in the previous call: PatientPaths uses a new MachineFiles object after a timeout.
DirectoryWalk& MachineWalk::of(MachineFiles& machine) {
    if (owner_.get() != &machine) {
        walk_ = machine.continueWalk(walked_);
        owner_ = machine.shared_from_this();
        ++number_;
    }
    return *walk_;
}

void MachineWalk::read(MachineFiles& machine, const std::string& folder, ReadAhead ahead,
                       ReadFolders& read) {
    DirectoryWalk& walk = of(machine);
    const auto latest = std::chrono::steady_clock::now() + longestReadAhead_;
    std::vector<std::string> queue{folder};
    std::size_t records = 0;
    do {
        ReadFolder next{.folder = std::move(queue.back()), .part = {.walk = number_}};
        queue.pop_back();
        FindRecord first;
        read.access(next.folder);
        next.part.handle = walk.FindFirst(next.folder + "*.*", first);
        if (next.part.handle == invalidFindHandle) {
            continue;
        }
        next.part.records.push_back(std::move(first));
        readInto(walk, next.part);
        records += next.part.records.size();
        const bool whole = next.part.atEnd;
        queueFoldersOf(next, queue);
        read.add(std::move(next));
        if (!whole) {
            // The subfolder that the logic's walk lists next may be among the entries that are not
            // read yet.
            return;
        }
    } while (ahead == ReadAhead::yes && !queue.empty() && records < mostReadAhead &&
             std::chrono::steady_clock::now() < latest);
}

FolderPart MachineWalk::readOn(MachineFiles& machine, FolderPart part) {
    DirectoryWalk& walk = of(machine);
    part.records.clear();
    if (part.walk == number_) {
        readInto(walk, part);
    }
    return part;
}

void MachineWalk::close(MachineFiles& machine, const FolderPart& part) {
    DirectoryWalk& walk = of(machine);
    if (part.walk == number_) {
        walk.FindClose(part.handle);
    }
}

} // namespace sonarith
