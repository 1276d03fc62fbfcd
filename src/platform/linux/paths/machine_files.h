// SPDX-License-Identifier: GPL-3.0-or-later
// Accesses the machine's files. Each object owns, alone or jointly, all state that its calls need.
// A call that hangs is left behind together with its object, and later calls use a new object.
// patient_paths.h runs each call on another thread and limits the wait.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/letter_store.h"
#include "platform/linux/paths/linux_directory_walk.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/path_map.h"

namespace sonarith {

/// For one thread at a time.
class MachineFiles : public std::enable_shared_from_this<MachineFiles> {
  public:
    virtual ~MachineFiles() = default;
    [[nodiscard]] virtual FileSystem& files() = 0;
    [[nodiscard]] virtual Directories& directories() = 0;
    /// As LinuxDirectories::continueWalk; the walk must not outlive this object.
    [[nodiscard]] virtual std::unique_ptr<DirectoryWalk>
    continueWalk(std::shared_ptr<WalkedFolders> walked) = 0;
    /// As LinuxFileSystem::locate.
    [[nodiscard]] virtual Result<Located> locate(const std::string& path) = 0;
    /// As PathMap::toLogic.
    [[nodiscard]] virtual std::string toLogic(const std::string& machinePath) = 0;
};

/// State that all LinuxMachineFiles objects share. The objects are used on different threads.
struct SharedPaths {
    std::shared_ptr<LetterStore> letters;
    std::shared_ptr<Spellings> spellings = std::make_shared<Spellings>();
    std::string home;                               ///< as for DriveTable
    std::string programFolder;                      ///< as for LinuxFileSystem
    std::string mountList = "/proc/self/mountinfo"; ///< as for MountInfo
};

class LinuxMachineFiles final : public MachineFiles {
  public:
    explicit LinuxMachineFiles(SharedPaths shared);

    [[nodiscard]] FileSystem& files() override { return files_; }
    [[nodiscard]] Directories& directories() override { return directories_; }
    [[nodiscard]] std::unique_ptr<DirectoryWalk>
    continueWalk(std::shared_ptr<WalkedFolders> walked) override {
        return directories_.continueWalk(std::move(walked));
    }
    [[nodiscard]] Result<Located> locate(const std::string& path) override {
        return files_.locate(path);
    }
    [[nodiscard]] std::string toLogic(const std::string& machinePath) override {
        return paths_.toLogic(machinePath);
    }

  private:
    const SharedPaths shared_;
    MountInfo mounts_;
    DriveTable drives_;
    PathMap paths_;
    LinuxFileSystem files_;
    LinuxDirectories directories_;
};

} // namespace sonarith
