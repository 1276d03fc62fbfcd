// SPDX-License-Identifier: GPL-3.0-or-later
// Files and folders in memory. As with the real FileSystem, paths are found regardless of case.
//
//     FakeFileSystem disk;                                   // program folder c:\sonarith
//     disk.addFile("c:\\music\\Track1.wav", std::string(100, 'x'));
//     disk.failWith(FakeFileSystem::Operation::rename, "c:\\music\\track1.wav",
//                   ErrorNumber::permissionDenied);          // every later rename of this file
//     EXPECT_EQ(disk.log, ...);                              // entries such as "makeFolder music"
//     disk.failWith(FakeFileSystem::Operation::writeBinary, "c:\\music\\track1.wav",
//                   ErrorNumber::diskFull);                  // also applies to a file already open
//     disk.meanwhile = [&](const std::string& entry) { ... } // runs at each logged call
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_system.h"
#include "platform/text/unicode.h"
#include "support/fake_binary_file.h"

namespace sonarith::test {

class FakeFileSystem final : public FileSystem {
  public:
    enum class Operation {
        fileLength,
        fileDate,
        openBinary,
        lengthOfOpenFile, ///< BinaryFile::length(), which is not logged
        readBinary,
        writeBinary,
        rename,
        touchForWriting,
        removeFile,
        changeDrive,
        changeFolder,
        makeFolder
    };

    FakeFileSystem() { addFolder(programFolder_); }

    // --- set by the test -------------------------------------------------------------------

    void addDrive(char letter) { drives_.insert(lowerCase(std::string(1, letter))); }
    void removeDrive(char letter) { drives_.erase(lowerCase(std::string(1, letter))); }
    /// Also adds all folders above this folder.
    void addFolder(const std::string& path) {
        const std::string full = absolute(path);
        addDrive(full[0]);
        for (std::size_t end = full.find('\\', 3); full.size() > 3;
             end = full.find('\\', end + 1)) {
            const std::string folder = full.substr(0, end);
            entries_.try_emplace(caseFolded(folder), Entry{.path = folder, .folder = true});
            if (end == std::string::npos) {
                break;
            }
        }
    }
    /// Also adds all folders above the file. Replaces the content of an existing file, also for
    /// each BinaryFile that was opened on it before.
    void addFile(const std::string& path, const std::string& content = {}) {
        const std::string full = absolute(path);
        addFolder(parentOf(full));
        Entry& entry = entries_[caseFolded(full)];
        entry.path = full;
        entry.folder = false;
        *entry.content = content;
    }
    /// Sets the result of fileDate() for an existing file. Until then, the result is the epoch of
    /// the system clock.
    void setFileDate(const std::string& path, FileTime date) {
        entries_.at(caseFolded(absolute(path))).date = date;
    }
    /// From now on `operation` fails with `number` if it is called for `path`. For rename, `path`
    /// is compared with `from`; for changeDrive, with the drive of the argument. The comparison
    /// uses absolute paths, and ignores case.
    void failWith(Operation operation, const std::string& path, ErrorNumber number) {
        failures_.insert_or_assign(std::pair(operation, caseFolded(absolute(path))), number);
    }
    void stopFailing() { failures_.clear(); }
    void setProgramFolder(const std::string& path) {
        programFolder_ = path;
        addFolder(path);
    }

    // --- read by the test ------------------------------------------------------------------

    /// The calls that change something, and the calls that open or read a file, oldest first. Each
    /// entry is the operation's name and its arguments, separated by blanks:
    ///     openBinary PATH read|write|readWrite
    ///     readBinary PATH OFFSET BYTES
    ///     writeBinary PATH OFFSET BYTES
    /// In these entries, PATH is the path that was passed to openBinary().
    std::vector<std::string> log;
    /// Called for each logged call, before the call has an effect; the argument is the call's log
    /// entry. Simulates another program that changes files between two steps.
    std::function<void(const std::string& entry)> meanwhile;

    [[nodiscard]] bool folderExists(const std::string& path) const {
        const std::string full = absolute(path);
        return isRoot(full) ? drives_.contains(lowerCase(full.substr(0, 1)))
                            : find(full) != nullptr && find(full)->folder;
    }
    /// The content of a file; no value if the file does not exist.
    [[nodiscard]] std::optional<std::string> content(const std::string& path) const {
        const Entry* entry = find(absolute(path));
        return entry != nullptr && !entry->folder ? std::optional(*entry->content) : std::nullopt;
    }
    /// The full path of a file or folder, spelled as when it was created or last renamed. Empty if
    /// nothing has this path.
    [[nodiscard]] std::string pathAsMade(const std::string& path) const {
        const Entry* entry = find(absolute(path));
        return entry != nullptr ? entry->path : std::string();
    }

    // --- the interface ---------------------------------------------------------------------

    [[nodiscard]] Result<std::int64_t> fileLength(const std::string& path) const override {
        const std::string full = absolute(path);
        if (const auto failure = scripted(Operation::fileLength, full)) {
            return *failure;
        }
        const Entry* entry = find(full);
        if (entry == nullptr || entry->folder) {
            return missing(full);
        }
        return static_cast<std::int64_t>(entry->content->size());
    }
    [[nodiscard]] bool fileExists(const std::string& path) const override {
        return content(path).has_value();
    }
    [[nodiscard]] Result<FileTime> fileDate(const std::string& path) const override {
        const std::string full = absolute(path);
        if (const auto failure = scripted(Operation::fileDate, full)) {
            return *failure;
        }
        const Entry* entry = find(full);
        if (entry == nullptr || entry->folder) {
            return missing(full);
        }
        return entry->date;
    }
    [[nodiscard]] Result<std::unique_ptr<BinaryFile>> openBinary(const std::string& path,
                                                                 FileAccess access) override {
        note("openBinary " + path + " " + nameOf(access));
        const std::string full = absolute(path);
        if (const auto failure = scripted(Operation::openBinary, full)) {
            return *failure;
        }
        if (access == FileAccess::read && find(full) == nullptr && !isRoot(full)) {
            return missing(full);
        }
        if (const Status created = create(full); !created.ok()) {
            return created.error();
        }
        const auto gate = [this, path, full](FakeBinaryFile::Use use, std::int64_t offset,
                                             std::size_t bytes) {
            if (use == FakeBinaryFile::Use::length) {
                return scripted(Operation::lengthOfOpenFile, full);
            }
            const bool reads = use == FakeBinaryFile::Use::read;
            note((reads ? "readBinary " : "writeBinary ") + path + " " + std::to_string(offset) +
                 " " + std::to_string(bytes));
            return scripted(reads ? Operation::readBinary : Operation::writeBinary, full);
        };
        return std::unique_ptr<BinaryFile>(
            std::make_unique<FakeBinaryFile>(find(full)->content, access, gate));
    }
    Status rename(const std::string& from, const std::string& to) override {
        note("rename " + from + " " + to);
        const std::string source = absolute(from);
        const std::string target = absolute(to);
        if (const auto failure = scripted(Operation::rename, source)) {
            return *failure;
        }
        if (find(source) == nullptr) {
            return missing(source);
        }
        // The only colon allowed is the colon after the drive letter.
        if (target.find(':', 2) != std::string::npos) {
            return {ErrorNumber::badFileName, "Bad file name or number"};
        }
        if (find(target) != nullptr && find(target) != find(source)) {
            return {ErrorNumber::fileAlreadyExists, "File already exists"};
        }
        if (!folderExists(parentOf(target))) {
            return {ErrorNumber::pathNotFound, "Path not found"};
        }
        Entry entry = *find(source);
        entries_.erase(caseFolded(source));
        entry.path = target;
        entries_[caseFolded(target)] = entry;
        return {};
    }
    Status touchForWriting(const std::string& path) override {
        note("touchForWriting " + path);
        const std::string full = absolute(path);
        if (const auto failure = scripted(Operation::touchForWriting, full)) {
            return *failure;
        }
        return create(full);
    }
    Status removeFile(const std::string& path) override {
        note("removeFile " + path);
        const std::string full = absolute(path);
        if (const auto failure = scripted(Operation::removeFile, full)) {
            return *failure;
        }
        const Entry* entry = find(full);
        if (entry == nullptr || entry->folder) {
            return missing(full);
        }
        entries_.erase(caseFolded(full));
        return {};
    }
    Status changeDrive(const std::string& path) override {
        note("changeDrive " + path);
        const bool named = path.size() >= 2 && path[1] == ':';
        if (named) {
            if (const auto failure = scripted(Operation::changeDrive, path.substr(0, 2))) {
                return *failure;
            }
        }
        if (!named || !drives_.contains(lowerCase(path.substr(0, 1)))) {
            return {ErrorNumber::deviceUnavailable, "Device unavailable"};
        }
        if (!equalIgnoringCase(path.substr(0, 1), currentFolder_.substr(0, 1))) {
            currentFolder_ = path.substr(0, 2) + "\\";
        }
        return {};
    }
    Status changeFolder(const std::string& path) override {
        note("changeFolder " + path);
        const std::string full = absolute(path);
        if (const auto failure = scripted(Operation::changeFolder, full)) {
            return *failure;
        }
        if (!folderExists(full)) {
            return {ErrorNumber::pathNotFound, "Path not found"};
        }
        currentFolder_ = isRoot(full) ? full : find(full)->path;
        return {};
    }
    [[nodiscard]] std::string currentFolder() const override { return currentFolder_; }
    Status makeFolder(const std::string& name) override {
        note("makeFolder " + name);
        const std::string full = absolute(name);
        if (const auto failure = scripted(Operation::makeFolder, full)) {
            return *failure;
        }
        if (isRoot(full) || find(full) != nullptr) {
            return {ErrorNumber::pathFileAccess, "Path/File access error"};
        }
        if (!folderExists(parentOf(full))) {
            return {ErrorNumber::pathNotFound, "Path not found"};
        }
        entries_[caseFolded(full)] = Entry{.path = full, .folder = true};
        return {};
    }
    [[nodiscard]] std::string programFolder() const override { return programFolder_; }

  private:
    void note(const std::string& entry) {
        log.push_back(entry);
        if (const auto change = meanwhile) { // a copy: the function may replace `meanwhile`
            change(entry);
        }
    }

    struct Entry {
        std::string path;
        /// Shared with the opened files.
        std::shared_ptr<std::string> content = std::make_shared<std::string>();
        bool folder = false;
        FileTime date = {};
    };

    static std::string nameOf(FileAccess access) {
        return access == FileAccess::read    ? "read"
               : access == FileAccess::write ? "write"
                                             : "readWrite";
    }
    /// Creates the file if it does not exist.
    Status create(const std::string& full) {
        const Entry* entry = find(full);
        if (isRoot(full) || (entry != nullptr && entry->folder)) {
            return {ErrorNumber::pathFileAccess, "Path/File access error"};
        }
        if (entry == nullptr) {
            if (!folderExists(parentOf(full))) {
                return {ErrorNumber::pathNotFound, "Path not found"};
            }
            entries_[caseFolded(full)] = Entry{.path = full};
        }
        return {};
    }
    static bool isRoot(const std::string& full) { return full.size() == 3; }
    static std::string parentOf(const std::string& full) {
        const std::size_t last = full.rfind('\\');
        return last <= 2 ? full.substr(0, 3) : full.substr(0, last);
    }
    /// The absolute path: drive, backslash, and the rest without trailing or double backslashes.
    [[nodiscard]] std::string absolute(const std::string& path) const {
        const bool hasDrive = path.size() >= 2 && path[1] == ':';
        std::string base = hasDrive ? path.substr(0, 2) + "\\" : currentFolder_;
        std::string rest = hasDrive ? path.substr(2) : path;
        if (!hasDrive && !path.empty() && path[0] == '\\') {
            base = currentFolder_.substr(0, 3);
        }
        std::string full = base;
        std::size_t start = 0;
        while (start < rest.size()) {
            const std::size_t end = std::min(rest.find('\\', start), rest.size());
            if (end > start) {
                full += (full.back() == '\\' ? "" : "\\") + rest.substr(start, end - start);
            }
            start = end + 1;
        }
        return full;
    }
    [[nodiscard]] const Entry* find(const std::string& full) const {
        const auto found = entries_.find(caseFolded(full));
        return found == entries_.end() ? nullptr : &found->second;
    }
    [[nodiscard]] Error missing(const std::string& full) const {
        return folderExists(parentOf(full)) ? Error{ErrorNumber::fileNotFound, "File not found"}
                                            : Error{ErrorNumber::pathNotFound, "Path not found"};
    }
    [[nodiscard]] std::optional<Error> scripted(Operation operation,
                                                const std::string& path) const {
        const auto found = failures_.find({operation, caseFolded(absolute(path))});
        return found == failures_.end() ? std::nullopt
                                        : std::optional(Error{found->second, "scripted failure"});
    }

    std::string programFolder_ = "c:\\sonarith";
    std::string currentFolder_ = "c:\\";
    std::set<std::string> drives_ = {"c"};
    std::map<std::string, Entry> entries_;
    std::map<std::pair<Operation, std::string>, ErrorNumber> failures_;
};

} // namespace sonarith::test
