// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/linux_directory_walk.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include <sys/stat.h>

#include "platform/linux/files/file_error.h"
#include "platform/linux/paths/folder_listing.h"
#include "platform/linux/paths/machine_names.h"
#include "platform/linux/paths/path_names.h"
#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// Two names in one folder may differ only in case. Returns whether the lower-case spelling refers
/// to `name` rather than to `other`. PathMap::locate() has the same preference.
bool preferred(std::string_view name, std::string_view other) {
    return name == lowerCase(name) || (other != lowerCase(other) && name < other);
}

class LinuxDirectoryWalk final : public DirectoryWalk {
  public:
    LinuxDirectoryWalk(PathMap& paths, std::shared_ptr<WalkedFolders> walked)
        : paths_(paths), walked_(std::move(walked)) {}

    FindHandle FindFirst(const std::string& pattern, FindRecord& record) override;
    bool FindNext(FindHandle handle, FindRecord& record) override;
    void FindClose(FindHandle handle) override { listings_.erase(handle); }

  private:
    struct Listing {
        std::string folder; ///< the logic's path, with a trailing backslash
        FolderListing entries;
        bool parentToCome = true; ///< ".." has not been returned yet
    };

    [[nodiscard]] std::optional<std::string> machinePathOf(const std::string& folder);
    void noteFolder(const Listing& listing, const std::string& name,
                    const std::string& logicalName);

    PathMap& paths_;
    std::map<FindHandle, Listing> listings_;
    FindHandle lastHandle_ = 0;
    const std::shared_ptr<WalkedFolders> walked_;
    /// The machine paths of folders that FindNext() has returned and FindFirst() has not opened
    /// yet. The key is the logic's path in lower case with a trailing backslash. The file search
    /// passes paths in lower case to FindFirst(), which then needs no PathMap::locate().
    std::unordered_map<std::string, std::string> met_;
};

std::optional<std::string> LinuxDirectoryWalk::machinePathOf(const std::string& folder) {
    if (const auto known = met_.extract(folder)) {
        // A chosen spelling of this folder (rememberChosen(), toLogic()) has priority over the
        // listed spelling. When the logic later opens a listed file, PathMap::locate() looks for
        // the file in the folder with the chosen spelling. So the walk must list that folder.
        auto chosen = paths_.hasChosen(known.mapped()) ? paths_.chosenFor(folder) : std::nullopt;
        return chosen ? chosen : known.mapped();
    }
    const Result<Located> located = paths_.locate(folder);
    return located.ok() && located.value().found ? std::optional(located.value().path)
                                                 : std::nullopt;
}

FindHandle LinuxDirectoryWalk::FindFirst(const std::string& pattern, FindRecord& record) {
    constexpr std::string_view allOfIt = "\\*.*";
    if (!pattern.ends_with(allOfIt)) {
        return invalidFindHandle;
    }
    std::string folder = pattern.substr(0, pattern.size() - allOfIt.size() + 1);
    const auto machinePath = machinePathOf(folder);
    auto entries = machinePath ? FolderListing::open(*machinePath) : std::nullopt;
    if (!entries || !walked_->add(entries->identity())) {
        return invalidFindHandle;
    }
    paths_.rememberWalked(entries->path());
    listings_.emplace(++lastHandle_, Listing{std::move(folder), std::move(*entries)});
    record = {file_attribute::directory, "."};
    return lastHandle_;
}

bool LinuxDirectoryWalk::FindNext(FindHandle handle, FindRecord& record) {
    const auto found = listings_.find(handle);
    if (found == listings_.end()) {
        return false;
    }
    Listing& listing = found->second;
    if (std::exchange(listing.parentToCome, false)) {
        record = {file_attribute::directory, ".."};
        return true;
    }
    ListedEntry entry;
    do {
        if (!listing.entries.next(entry)) {
            return false;
        }
    } while (entry.kind == EntryKind::other);
    const bool isFolder = entry.kind == EntryKind::folder;
    record.attributes = (isFolder ? file_attribute::directory : file_attribute::archive) |
                        (entry.name.front() == '.' ? file_attribute::hidden : 0);
    record.name = logicName(entry.name);
    if (isFolder) {
        noteFolder(listing, entry.name, record.name);
    }
    return true;
}

void LinuxDirectoryWalk::noteFolder(const Listing& listing, const std::string& name,
                                    const std::string& logicalName) {
    const std::string& parent = listing.entries.path();
    const std::size_t nameStart = parent.size() + (parent.back() == '/' ? 0 : 1);
    std::string path = parent;
    path.append(nameStart - parent.size(), '/').append(name);
    const auto [known, isNew] =
        met_.try_emplace(lowerCase(listing.folder + logicalName + "\\"), path);
    // If two names differ only in case, the logic's path means the preferred one.
    if (!isNew && preferred(name, std::string_view(known->second).substr(nameStart))) {
        known->second = path;
    }
}

/// Normalises an absolute path with a drive; the separators become backslashes.
std::string plainPath(std::string_view path) {
    std::string plain(path.substr(0, 2));
    const std::vector<std::string> names = namesOf(path.substr(2), "\\/");
    for (const std::string& name : names) {
        plain.append("\\").append(name);
    }
    return names.empty() ? plain + "\\" : plain;
}

} // namespace

bool WalkedFolders::add(const FolderIdentity& folder) {
    const std::lock_guard lock(mutex_);
    return folders_.insert(folder).second;
}

std::unique_ptr<DirectoryWalk> LinuxDirectories::startWalk() {
    return continueWalk(std::make_shared<WalkedFolders>());
}

std::unique_ptr<DirectoryWalk>
LinuxDirectories::continueWalk(std::shared_ptr<WalkedFolders> walked) {
    return std::make_unique<LinuxDirectoryWalk>(paths_, std::move(walked));
}

Result<std::string> LinuxDirectories::folder(const std::string& path) const {
    if (path.empty()) {
        return fileError(ErrorNumber::pathNotFound);
    }
    const std::string whole = absolutePath(path, files_.currentFolder());
    const Result<Located> located = paths_.locate(whole);
    struct stat status {};
    if (!located.ok() || ::stat(located.value().path.c_str(), &status) != 0 ||
        !S_ISDIR(status.st_mode)) {
        return fileError(ErrorNumber::pathNotFound);
    }
    return plainPath(whole);
}

std::vector<std::string> LinuxDirectories::drives() const {
    std::vector<std::string> names;
    for (const Drive& drive : paths_.drives().drives()) {
        names.push_back(lowerCase(std::string(1, drive.letter)) + ":");
    }
    return names;
}

} // namespace sonarith
