// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/linux_file_system.h"

#include <cerrno>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/file_error.h"
#include "platform/linux/paths/exclusive_rename.h"
#include "platform/linux/paths/linux_binary_file.h"
#include "platform/linux/paths/path_names.h"

namespace sonarith {

namespace {

bool isFolder(const std::string& machinePath) {
    struct stat status {};
    return ::stat(machinePath.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// The error of a failed system call on a path; a missing file and a missing folder are
/// distinguished.
Error errorAt(const Located& located, int systemErrorNumber) {
    if (systemErrorNumber == ENOENT && !isFolder(located.folder)) {
        return fileError(ErrorNumber::pathNotFound);
    }
    return fileErrorOfSystem(systemErrorNumber);
}

/// Whether both paths are spellings of one directory entry, as on a case-insensitive disk. Two
/// different paths count as one entry only for a regular file with a single link: if the file has
/// several links, each path may be a link of its own.
bool sameEntry(const std::string& a, const std::string& b) {
    struct stat first {};
    struct stat second {};
    return a == b || (::lstat(a.c_str(), &first) == 0 && ::lstat(b.c_str(), &second) == 0 &&
                      first.st_dev == second.st_dev && first.st_ino == second.st_ino &&
                      S_ISREG(first.st_mode) && first.st_nlink == 1);
}

} // namespace

LinuxFileSystem::LinuxFileSystem(PathMap& paths, const std::string& programFolder)
    : paths_(paths), programFolder_(paths.logicPathOf(programFolder)) {
    if (programFolder_.back() == '\\') {
        programFolder_.pop_back();
    }
    std::error_code unknown;
    const std::string here = paths_.logicPathOf(std::filesystem::current_path(unknown).string());
    currentLetter_ = here.front();
    currentFolders_[currentLetter_] = here;
}

Result<Located> LinuxFileSystem::locate(const std::string& path, PathCase pathCase) const {
    return paths_.locate(absolutePath(path, currentFolder()), pathCase);
}

std::string LinuxFileSystem::currentFolder() const {
    return currentFolders_.at(currentLetter_);
}

Result<struct stat> LinuxFileSystem::statusOf(const std::string& path) const {
    const Result<Located> located = locate(path);
    if (!located.ok()) {
        return located.error();
    }
    struct stat status {};
    if (::stat(located.value().path.c_str(), &status) != 0) {
        return errorAt(located.value(), errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return fileError(ErrorNumber::fileNotFound);
    }
    return status;
}

Result<std::int64_t> LinuxFileSystem::fileLength(const std::string& path) const {
    const Result<struct stat> status = statusOf(path);
    if (!status.ok()) {
        return status.error();
    }
    return static_cast<std::int64_t>(status.value().st_size);
}

Result<FileTime> LinuxFileSystem::fileDate(const std::string& path) const {
    const Result<struct stat> status = statusOf(path);
    if (!status.ok()) {
        return status.error();
    }
    return fileTimeOf(status.value().st_mtim);
}

bool LinuxFileSystem::fileExists(const std::string& path) const {
    return fileLength(path).ok();
}

Result<Located> LinuxFileSystem::locateBeside(const Result<Located>& known,
                                              const std::string& knownPath,
                                              const std::string& path) const {
    const auto nameStart = [](const std::string& p) {
        return p.find_last_of("\\/:") + 1;
    };
    const std::string name = path.substr(nameStart(path));
    const bool sameFolder =
        path.substr(0, nameStart(path)) == knownPath.substr(0, nameStart(knownPath));
    const bool plainName = !name.empty() && name != "." && name != "..";
    return known.ok() && !known.value().givenName.empty() && sameFolder && plainName
               ? paths_.locateIn(known.value().folder, name)
               : locate(path);
}

Status LinuxFileSystem::rename(const std::string& from, const std::string& to) {
    const Result<Located> source = locate(from);
    const Result<Located> target = locateBeside(source, from, to);
    if (!source.ok() || !target.ok()) {
        return source.ok() ? target.error() : source.error();
    }
    const Located& old = source.value();
    const Located& wanted = target.value();
    if (!old.found) {
        return errorAt(old, ENOENT);
    }
    if (wanted.givenName.empty()) {
        return fileError(ErrorNumber::pathFileAccess); // the root of a drive
    }
    if (wanted.found && !sameEntry(wanted.path, old.path)) {
        return fileError(ErrorNumber::fileAlreadyExists);
    }
    if (!isFolder(wanted.folder)) {
        return fileError(ErrorNumber::pathNotFound);
    }
    const std::string newPath =
        wanted.folder + (wanted.folder.back() == '/' ? "" : "/") + wanted.givenName;
    int failure = renameExclusively(old.path, newPath);
    if (failure == EEXIST && sameEntry(newPath, old.path)) {
        // The new name already refers to the old file: either the name does not change, or only its
        // case changes, on a case-insensitive disk.
        failure = ::rename(old.path.c_str(), newPath.c_str()) == 0 ? 0 : errno;
    }
    if (failure != 0) {
        return errorAt(wanted, failure);
    }
    paths_.rememberChosen(newPath);
    return {};
}

Result<std::unique_ptr<BinaryFile>> LinuxFileSystem::openBinary(const std::string& path,
                                                                FileAccess access) {
    const Result<Located> located = locate(path);
    if (!located.ok()) {
        return located.error();
    }
    Result<std::unique_ptr<BinaryFile>> opened =
        LinuxBinaryFile::open(located.value().path, access);
    if (!opened.ok() && opened.error().number == ErrorNumber::fileNotFound) {
        return errorAt(located.value(), ENOENT);
    }
    return opened;
}

Status LinuxFileSystem::touchForWriting(const std::string& path) {
    const Result<std::unique_ptr<BinaryFile>> opened = openBinary(path, FileAccess::write);
    return opened.ok() ? Status() : Status(opened.error());
}

Status LinuxFileSystem::removeFile(const std::string& path) {
    const Result<Located> located = locate(path);
    if (!located.ok()) {
        return located.error();
    }
    return ::unlink(located.value().path.c_str()) == 0 ? Status()
                                                       : Status(errorAt(located.value(), errno));
}

Status LinuxFileSystem::changeDrive(const std::string& path) {
    const auto mountPoint =
        path.size() >= 2 && path[1] == ':' ? paths_.drives().mountPointOf(path[0]) : std::nullopt;
    if (!mountPoint) {
        return fileError(ErrorNumber::deviceUnavailable);
    }
    const char letter = paths_.drives().driveOf(*mountPoint).letter;
    const auto left = currentFolders_.find(letter);
    if (left != currentFolders_.end() && changeFolder(left->second).ok()) {
        return {};
    }
    // No folder is stored for this drive, or the stored folder cannot be entered (for example, it
    // was deleted): use the drive's root.
    return changeFolder(std::string(1, letter) + ":\\").ok()
               ? Status()
               : Status(fileError(ErrorNumber::deviceUnavailable));
}

Status LinuxFileSystem::changeFolder(const std::string& path) {
    const Result<Located> located = locate(path, PathCase::asGiven);
    if (!located.ok()) {
        return located.error();
    }
    if (::chdir(located.value().path.c_str()) != 0) {
        return errno == ENOENT ? fileError(ErrorNumber::pathNotFound) : fileErrorOfSystem(errno);
    }
    // The folder may be on another disk that is mounted below the drive that `path` names. The
    // result of toLogic() then begins with the other disk's letter, so the letter is taken from
    // this result and not from `path`.
    const std::string here = paths_.toLogic(located.value().path);
    currentLetter_ = here.front();
    currentFolders_[currentLetter_] = here;
    return {};
}

Status LinuxFileSystem::makeFolder(const std::string& name) {
    const Result<Located> located = locate(name, PathCase::asGiven);
    if (!located.ok()) {
        return located.error();
    }
    constexpr mode_t defaultMode = 0777; // minus the umask
    if (located.value().found) {
        return fileError(ErrorNumber::pathFileAccess);
    }
    if (::mkdir(located.value().path.c_str(), defaultMode) == 0) {
        paths_.rememberChosen(located.value().path);
        return {};
    }
    if (errno == EEXIST) {
        return fileError(ErrorNumber::pathFileAccess);
    }
    return errno == ENOENT ? fileError(ErrorNumber::pathNotFound) : fileErrorOfSystem(errno);
}

} // namespace sonarith
