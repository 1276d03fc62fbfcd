// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/patient_file_system.h"

#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/files/file_error.h"
#include "platform/linux/paths/machine_names.h"
#include "platform/linux/paths/path_names.h"
#include "platform/linux/paths/patient_binary_file.h"
#include "platform/text/unicode.h"

namespace sonarith {

namespace {

template <typename Answer>
Answer answered(std::optional<Answer> answer) {
    return answer ? std::move(*answer) : Answer(fileError(ErrorNumber::deviceUnavailable));
}

} // namespace

PatientFileSystem::PatientFileSystem(PatientPaths& paths) : paths_(paths) {
    const auto folders = paths_.ask({}, [](MachineFiles& machine) {
        return std::pair(machine.files().currentFolder(), machine.files().programFolder());
    });
    currentFolder_ = folders ? folders->first : "C:\\";
    programFolder_ = folders ? folders->second : "C:";
    currentFolders_[currentFolder_.front()] = currentFolder_;
}

std::string PatientFileSystem::whole(const std::string& path) const {
    return absolutePath(path, currentFolder_);
}

Result<std::int64_t> PatientFileSystem::fileLength(const std::string& path) const {
    return answered(paths_.ask({whole(path)}, [path = whole(path)](MachineFiles& machine) {
        return machine.files().fileLength(path);
    }));
}

bool PatientFileSystem::fileExists(const std::string& path) const {
    return fileLength(path).ok();
}

Result<FileTime> PatientFileSystem::fileDate(const std::string& path) const {
    return answered(paths_.ask({whole(path)}, [path = whole(path)](MachineFiles& machine) {
        return machine.files().fileDate(path);
    }));
}

Result<std::unique_ptr<BinaryFile>> PatientFileSystem::openBinary(const std::string& path,
                                                                  FileAccess access) {
    auto opened =
        answered(paths_.ask({whole(path)}, [path = whole(path), access](MachineFiles& machine) {
            return machine.files().openBinary(path, access);
        }));
    if (!opened.ok()) {
        return opened;
    }
    const waiting::Services& services = paths_.services();
    return std::unique_ptr<BinaryFile>(std::make_unique<PatientBinaryFile>(
        std::move(opened.value()), services.threads, services.waiting, paths_.bound()));
}

Status PatientFileSystem::rename(const std::string& from, const std::string& to) {
    return answered(paths_.ask({whole(from), whole(to)},
                               [from = whole(from), to = whole(to)](MachineFiles& machine) {
                                   return machine.files().rename(from, to);
                               }));
}

Status PatientFileSystem::touchForWriting(const std::string& path) {
    return answered(paths_.ask({whole(path)}, [path = whole(path)](MachineFiles& machine) {
        return machine.files().touchForWriting(path);
    }));
}

Status PatientFileSystem::removeFile(const std::string& path) {
    return answered(paths_.ask({whole(path)}, [path = whole(path)](MachineFiles& machine) {
        return machine.files().removeFile(path);
    }));
}

Status PatientFileSystem::makeFolder(const std::string& name) {
    return answered(paths_.ask({whole(name)}, [name = whole(name)](MachineFiles& machine) {
        return machine.files().makeFolder(name);
    }));
}

Status PatientFileSystem::take(std::optional<Change> change) {
    if (!change) {
        return fileError(ErrorNumber::deviceUnavailable);
    }
    if (change->status.ok()) {
        currentFolder_ = change->folder;
        currentFolders_[currentFolder_.front()] = currentFolder_;
    }
    return change->status;
}

Status PatientFileSystem::changeDrive(const std::string& path) {
    std::vector<std::string> asked{path.substr(0, 2) + "\\"};
    for (const auto& [letter, folder] : currentFolders_) {
        if (lowerCase(path.substr(0, 1)) == lowerCase(std::string(1, letter))) {
            // The function that is passed to ask() below may also enter this folder, which was last
            // current on the drive. The folder can be on another mount than the drive's root, so
            // ask() needs its path, too.
            asked.push_back(folder);
        }
    }
    return take(paths_.ask(asked, [path, left = currentFolders_](MachineFiles& machine) {
        FileSystem& files = machine.files();
        const Status changed = files.changeDrive(path);
        const auto folder = left.find(files.currentFolder().front());
        if (changed.ok() && folder != left.end() && folder->second != files.currentFolder()) {
            files.changeFolder(folder->second).passOver();
        }
        return Change{changed, files.currentFolder()};
    }));
}

Status PatientFileSystem::changeFolder(const std::string& path) {
    return take(paths_.ask({whole(path)}, [path = whole(path)](MachineFiles& machine) {
        const Status changed = machine.files().changeFolder(path);
        return Change{changed, machine.files().currentFolder()};
    }));
}

std::string PatientFileSystem::machinePath(const std::string& path) const {
    return machinePathWithin(paths_.bound(), path);
}

std::string PatientFileSystem::machinePathWithin(Waiting::Duration bound,
                                                 const std::string& path) const {
    const auto located = answered(
        paths_.askWithin(bound, {whole(path)}, [path = whole(path)](MachineFiles& machine) {
            return machine.locate(path);
        }));
    return located.ok() ? located.value().path : std::string();
}

std::string PatientFileSystem::toLogic(const std::string& machinePath) const {
    std::string below = "C:"; // the root of the machine
    for (const std::string& name : namesOf(machinePath, "/")) {
        below += "\\" + logicName(name);
    }
    return paths_
        .ask({below}, [machinePath](MachineFiles& machine) { return machine.toLogic(machinePath); })
        .value_or(std::string());
}

} // namespace sonarith
