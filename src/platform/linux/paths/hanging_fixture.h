// SPDX-License-Identifier: GPL-3.0-or-later
// Simulates a machine whose mounts can hang. The mounts are the root and two temporary folders.
// Each mount has a gate; a closed gate blocks all calls to its mount. For tests only.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/paths/patient_directories.h"
#include "platform/linux/paths/patient_file_system.h"
#include "support/fake_notices.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"

namespace sonarith::test {

/// The mounts and their gates. C: is the root, D: and E: are temporary folders. Thread-safe.
class HangingMounts {
  public:
    HangingMounts() {
        std::ofstream list(mountList());
        list << "1 0 8:1 / / rw - ext4 /dev/a rw\n";
        for (const char* name : {"d", "e"}) {
            std::filesystem::create_directory(path(name));
            list << "2 1 8:2 / " << path(name) << " rw - ext4 /dev/b rw\n";
        }
        for (const std::string& mount : points()) {
            gates_[mount];
        }
    }

    [[nodiscard]] std::string path(const std::string& name) const {
        return (folder_ / name).string();
    }
    [[nodiscard]] std::string mountList() const { return path("mounts"); }
    [[nodiscard]] std::vector<std::string> points() const { return {"/", path("d"), path("e")}; }

    void write(const std::string& name) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        std::ofstream(path(name)) << "sound";
    }

    void hang(const std::string& mount) {
        const std::lock_guard lock(mutex_);
        gates_.at(mount).closed = true;
    }
    /// Opens the gate; returns when all calls that hung have continued.
    void answer(const std::string& mount) {
        std::unique_lock lock(mutex_);
        gates_.at(mount).closed = false;
        changed_.notify_all();
        changed_.wait(lock, [&] { return gates_.at(mount).blocked == 0; });
    }
    /// The number of calls that hang now.
    [[nodiscard]] int blocked() const {
        const std::lock_guard lock(mutex_);
        int all = 0;
        for (const auto& [mount, gate] : gates_) {
            all += gate.blocked;
        }
        return all;
    }
    /// How many calls have been made to a mount.
    [[nodiscard]] int calls(const std::string& mount) const {
        const std::lock_guard lock(mutex_);
        return gates_.at(mount).calls;
    }

    /// Simulates a call to the mount of a machine path; links in the path are followed.
    void touch(const std::string& machinePath) {
        std::error_code none;
        const std::string real = std::filesystem::weakly_canonical(machinePath, none).string();
        std::string mount = "/";
        for (const std::string& point : points()) {
            mount = isWithin(real, point) && point.size() > mount.size() ? point : mount;
        }
        std::unique_lock lock(mutex_);
        Gate& gate = gates_.at(mount);
        ++gate.calls;
        ++gate.blocked;
        changed_.wait(lock, [&] { return !gate.closed; });
        --gate.blocked;
        changed_.notify_all();
    }
    /// Like touch(), but if the last name of the path is a link, the link is not followed.
    void touchLink(const std::string& machinePath) {
        const std::filesystem::path whole(machinePath);
        std::error_code none;
        if (std::filesystem::is_symlink(whole, none)) {
            touch(whole.parent_path().string());
        } else {
            touch(machinePath);
        }
    }

  private:
    static bool isWithin(const std::string& path, const std::string& folder) {
        return folder == "/" || path == folder || path.starts_with(folder + "/");
    }

    struct Gate {
        bool closed = false;
        int calls = 0;
        int blocked = 0;
    };

    fakes::TempFolder folder_;
    mutable std::mutex mutex_; ///< protects all members below
    std::condition_variable changed_;
    std::map<std::string, Gate> gates_; ///< by mount point
};

/// If the event happens, wait() returns Outcome::done. As soon as a call hangs at a gate, wait()
/// returns Outcome::late, so no test waits for a long timeout. Each hanging call makes only one
/// wait() late. If neither happens, wait() returns Outcome::late at a time limit. For a bound up to
/// plainMoment, the limit is plainMoment. For a longer bound, the limit is the bound, but at least
/// 30 s.
class GateWaiting final : public Waiting {
  public:
    explicit GateWaiting(const HangingMounts& mounts) : mounts_(mounts) {}

    [[nodiscard]] Outcome wait(const Completion& completion, Duration bound) override {
        late_ = std::min(late_, mounts_.blocked());
        const auto limit = std::chrono::steady_clock::now() + std::max(bound, Duration(30000));
        const auto moment = std::chrono::steady_clock::now() + plainMoment;
        while (!completion.restFor(std::chrono::milliseconds(1))) {
            const auto now = std::chrono::steady_clock::now();
            const bool hangs = mounts_.blocked() > late_;
            if (hangs || now > limit || (bound <= plainMoment && now > moment)) {
                late_ = mounts_.blocked();
                return Outcome::late;
            }
        }
        return Outcome::done;
    }

  private:
    const HangingMounts& mounts_;
    int late_ = 0; ///< number of hanging calls that were already reported as late
};

/// The machine's files. A call that accesses a mount passes the gate of that mount. rename() passes
/// only the gate of the old path. Closing a file or a walk's handle passes no gate.
class HangingMachine final : public MachineFiles {
  public:
    HangingMachine(const SharedPaths& shared, std::shared_ptr<HangingMounts> mounts)
        : machine_(std::make_shared<LinuxMachineFiles>(shared)),
          mounts_(std::move(mounts)),
          files_(*this),
          directories_(*this) {}

    [[nodiscard]] FileSystem& files() override { return files_; }
    [[nodiscard]] Directories& directories() override { return directories_; }
    [[nodiscard]] std::unique_ptr<DirectoryWalk>
    continueWalk(std::shared_ptr<WalkedFolders> walked) override {
        return std::make_unique<Walk>(*this, machine_->continueWalk(std::move(walked)));
    }
    [[nodiscard]] Result<Located> locate(const std::string& path) override {
        Result<Located> located = machine_->locate(path);
        if (located.ok() && !located.value().givenName.empty()) { // a drive's root needs no access
            mounts_->touchLink(located.value().path);
        }
        return located;
    }
    [[nodiscard]] std::string toLogic(const std::string& machinePath) override {
        mounts_->touch(machinePath);
        return machine_->toLogic(machinePath);
    }

  private:
    void touch(const std::string& path) {
        const Result<Located> located = machine_->locate(path);
        if (located.ok()) {
            mounts_->touch(located.value().path);
        }
    }

    class Files final : public FileSystem {
      public:
        explicit Files(HangingMachine& owner) : owner_(owner) {}

        [[nodiscard]] Result<std::int64_t> fileLength(const std::string& path) const override {
            return at(path).fileLength(path);
        }
        [[nodiscard]] bool fileExists(const std::string& path) const override {
            return at(path).fileExists(path);
        }
        [[nodiscard]] Result<FileTime> fileDate(const std::string& path) const override {
            return at(path).fileDate(path);
        }
        [[nodiscard]] Result<std::unique_ptr<BinaryFile>> openBinary(const std::string& path,
                                                                     FileAccess access) override {
            auto opened = at(path).openBinary(path, access);
            return opened.ok() ? Result<std::unique_ptr<BinaryFile>>(std::make_unique<OpenedFile>(
                                     owner_.mounts_, owner_.locate(path).value().path,
                                     std::move(opened.value())))
                               : std::move(opened);
        }
        Status rename(const std::string& from, const std::string& to) override {
            return at(from).rename(from, to);
        }
        Status touchForWriting(const std::string& path) override {
            return at(path).touchForWriting(path);
        }
        Status removeFile(const std::string& path) override { return at(path).removeFile(path); }
        Status changeDrive(const std::string& path) override {
            return at(path.substr(0, 2) + "\\").changeDrive(path);
        }
        Status changeFolder(const std::string& path) override {
            return at(path).changeFolder(path);
        }
        [[nodiscard]] std::string currentFolder() const override {
            return owner_.machine_->files().currentFolder();
        }
        Status makeFolder(const std::string& name) override { return at(name).makeFolder(name); }
        [[nodiscard]] std::string programFolder() const override {
            return owner_.machine_->files().programFolder();
        }

      private:
        [[nodiscard]] FileSystem& at(const std::string& path) const {
            owner_.touch(path);
            return owner_.machine_->files();
        }
        HangingMachine& owner_;
    };

    class OpenedFile final : public BinaryFile {
      public:
        OpenedFile(std::shared_ptr<HangingMounts> mounts, std::string path,
                   std::unique_ptr<BinaryFile> file)
            : mounts_(std::move(mounts)), path_(std::move(path)), file_(std::move(file)) {}

        [[nodiscard]] Result<std::int64_t> length() const override {
            mounts_->touch(path_);
            return file_->length();
        }
        [[nodiscard]] Result<std::size_t> read(std::int64_t offset,
                                               std::span<std::byte> into) override {
            mounts_->touch(path_);
            return file_->read(offset, into);
        }
        Status write(std::int64_t offset, std::span<const std::byte> bytes) override {
            mounts_->touch(path_);
            return file_->write(offset, bytes);
        }

      private:
        const std::shared_ptr<HangingMounts> mounts_;
        const std::string path_;
        const std::unique_ptr<BinaryFile> file_;
    };

    class Walk final : public DirectoryWalk {
      public:
        Walk(HangingMachine& owner, std::unique_ptr<DirectoryWalk> walk)
            : owner_(owner), walk_(std::move(walk)) {}
        FindHandle FindFirst(const std::string& pattern, FindRecord& record) override {
            const std::string folder = pattern.substr(0, pattern.rfind('\\') + 1);
            owner_.touch(folder);
            const FindHandle handle = walk_->FindFirst(pattern, record);
            folders_[handle] = folder;
            return handle;
        }
        bool FindNext(FindHandle handle, FindRecord& record) override {
            owner_.touch(folders_.at(handle));
            return walk_->FindNext(handle, record);
        }
        void FindClose(FindHandle handle) override { walk_->FindClose(handle); }

      private:
        HangingMachine& owner_;
        std::unique_ptr<DirectoryWalk> walk_;
        std::map<FindHandle, std::string> folders_;
    };

    class Folders final : public Directories {
      public:
        explicit Folders(HangingMachine& owner) : owner_(owner) {}
        [[nodiscard]] std::unique_ptr<DirectoryWalk> startWalk() override {
            return owner_.continueWalk(std::make_shared<WalkedFolders>());
        }
        [[nodiscard]] Result<std::string> folder(const std::string& path) const override {
            owner_.touch(path);
            return owner_.machine_->directories().folder(path);
        }
        [[nodiscard]] std::vector<std::string> drives() const override {
            return owner_.machine_->directories().drives();
        }

      private:
        HangingMachine& owner_;
    };

    const std::shared_ptr<LinuxMachineFiles> machine_;
    const std::shared_ptr<HangingMounts> mounts_;
    Files files_;
    Folders directories_;
};

/// PatientPaths, PatientFileSystem and PatientDirectories on a HangingMachine. The destructor opens
/// all gates, so that no thread hangs afterwards.
class HangingWorld {
  public:
    HangingWorld() = default;
    ~HangingWorld() {
        for (const std::string& mount : mounts->points()) {
            mounts->answer(mount);
        }
        std::filesystem::current_path("/"); // the temporary folders are about to be deleted
    }
    HangingWorld(const HangingWorld&) = delete;
    HangingWorld& operator=(const HangingWorld&) = delete;

    const std::shared_ptr<HangingMounts> mounts = std::make_shared<HangingMounts>();
    const std::string c = "/";
    const std::string d = mounts->path("d");
    const std::string e = mounts->path("e");
    FakeNotices notices;
    FakeSettingsStore store;

  private:
    const SharedPaths shared_{.letters = std::make_shared<LetterStore>(store),
                              .home = {},
                              .programFolder = mounts->path("d"),
                              .mountList = mounts->mountList()};
    waiting::WorkerThreads threads_;
    GateWaiting waiting_{*mounts};

    [[nodiscard]] PathAccess access() {
        PlaceAccess places = placesOfThisMachine();
        places.mountPoints = [points = mounts->points()] {
            return points;
        };
        places.linkTarget = [mounts = mounts, read = places.linkTarget](const std::string& path) {
            mounts->touchLink(path);
            return read(path);
        };
        return {[shared = shared_, mounts = mounts] {
                    return std::make_shared<HangingMachine>(shared, mounts);
                },
                [this] { shared_.letters->writeTo(store); }, places};
    }

  public:
    PatientPaths paths{access(), {threads_, waiting_, notices}};
    PatientFileSystem files{paths};
    PatientDirectories directories{paths, files};
};

} // namespace sonarith::test
