// SPDX-License-Identifier: GPL-3.0-or-later
// A fake of Directories: folders in memory, which DirectoryWalk objects list. A listing starts with
// "." and ".." (see withoutDots()); the other entries follow in the order in which they were added.
// Paths are found regardless of case.
//
//     FakeDirectories disk;
//     disk.addFile("c:\\music\\A.WAV");                     // also adds the folders above it
//     disk.addFolder("c:\\music\\x");
//     disk.makeUnreadable("c:\\music\\x");
//     disk.withoutDots("c:\\");                             // "c:\\" lists neither "." nor ".."
//     EXPECT_EQ(disk.listed, ...);                          // the patterns of FindFirst, in order
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/directory_walk.h"
#include "platform/text/unicode.h"

namespace sonarith::test {

class FakeDirectories final : public Directories {
  public:
    // --- set by the test -------------------------------------------------------------------

    void addFolder(const std::string& path, std::uint32_t attributes = 0) {
        const std::string full = plain(path);
        if (folders_.contains(caseFolded(full))) {
            return;
        }
        folders_[caseFolded(full)];
        if (!isRoot(full)) {
            addEntry(full, file_attribute::directory | attributes);
        }
    }
    void addFile(const std::string& path, std::uint32_t attributes = file_attribute::archive) {
        addEntry(path, attributes);
    }
    void removeFolder(const std::string& path) { folders_.erase(caseFolded(plain(path))); }
    void makeUnreadable(const std::string& path) { unreadable_.insert(caseFolded(plain(path))); }
    void withoutDots(const std::string& path) { dotless_.insert(caseFolded(plain(path))); }
    /// From now on FindFirst() returns 0 for this folder, which a correct implementation never
    /// does.
    void answerZeroFor(const std::string& path) { zero_.insert(caseFolded(plain(path))); }
    /// Runs at each FindFirst(), before it returns.
    std::function<void()> whileListing;

    // --- read by the test ------------------------------------------------------------------

    /// The patterns passed to FindFirst(), oldest first.
    std::vector<std::string> listed;
    /// The handles passed to FindClose(), oldest first.
    std::vector<FindHandle> closed;
    int walksStarted = 0;

    // --- the interface ---------------------------------------------------------------------

    [[nodiscard]] std::unique_ptr<DirectoryWalk> startWalk() override {
        ++walksStarted;
        return std::make_unique<Walk>(*this);
    }
    [[nodiscard]] Result<std::string> folder(const std::string& path) const override {
        const std::string full = plain(path);
        if (!folders_.contains(caseFolded(full))) {
            return {ErrorNumber::pathNotFound, "Path not found"};
        }
        return full;
    }
    [[nodiscard]] std::vector<std::string> drives() const override {
        std::set<std::string> letters;
        for (const auto& [path, entries] : folders_) {
            letters.insert(path.substr(0, 2));
        }
        return {letters.begin(), letters.end()};
    }

  private:
    class Walk final : public DirectoryWalk {
      public:
        explicit Walk(FakeDirectories& disk) : disk_(disk) {}

        FindHandle FindFirst(const std::string& pattern, FindRecord& record) override {
            disk_.listed.push_back(pattern);
            if (disk_.whileListing) {
                disk_.whileListing();
            }
            const std::string allOfIt = "*.*";
            if (!pattern.ends_with(allOfIt)) {
                return invalidFindHandle;
            }
            const std::string key =
                caseFolded(plain(pattern.substr(0, pattern.size() - allOfIt.size())));
            if (disk_.zero_.contains(key)) {
                return 0;
            }
            const auto found = disk_.folders_.find(key);
            if (found == disk_.folders_.end() || disk_.unreadable_.contains(key)) {
                return invalidFindHandle;
            }
            std::vector<FindRecord> entries;
            if (!disk_.dotless_.contains(key)) {
                entries = {{file_attribute::directory, "."}, {file_attribute::directory, ".."}};
            }
            entries.insert(entries.end(), found->second.begin(), found->second.end());
            if (entries.empty()) {
                return invalidFindHandle;
            }
            listings_.push_back({std::move(entries), 0});
            const auto handle = static_cast<FindHandle>(listings_.size());
            FindNext(handle, record);
            return handle;
        }
        bool FindNext(FindHandle handle, FindRecord& record) override {
            if (handle < 1 || handle > static_cast<FindHandle>(listings_.size())) {
                return false;
            }
            Listing& listing = listings_[static_cast<std::size_t>(handle - 1)];
            if (listing.next == listing.entries.size()) {
                return false;
            }
            record = listing.entries[listing.next++];
            return true;
        }
        void FindClose(FindHandle handle) override { disk_.closed.push_back(handle); }

      private:
        struct Listing {
            std::vector<FindRecord> entries;
            std::size_t next;
        };
        FakeDirectories& disk_;
        std::vector<Listing> listings_;
    };

    static bool isRoot(const std::string& path) { return path.size() == 3; }
    /// The path without backslashes at its end; a root keeps its backslash.
    static std::string plain(std::string path) {
        while (path.size() > 3 && path.back() == '\\') {
            path.pop_back();
        }
        return path;
    }
    void addEntry(const std::string& path, std::uint32_t attributes) {
        const std::size_t last = path.rfind('\\');
        const std::string parent = plain(path.substr(0, last + 1));
        addFolder(parent);
        folders_[caseFolded(parent)].push_back({attributes, path.substr(last + 1)});
    }

    std::map<std::string, std::vector<FindRecord>> folders_;
    std::set<std::string> unreadable_;
    std::set<std::string> dotless_;
    std::set<std::string> zero_;
};

} // namespace sonarith::test
