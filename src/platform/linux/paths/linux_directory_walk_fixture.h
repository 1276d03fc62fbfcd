// SPDX-License-Identifier: GPL-3.0-or-later
// The fixture of the tests of LinuxDirectories. Each test runs twice: it accesses the machine
// directly in one run, and through the patient classes (patient_paths.h) in the other. For tests
// only.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/paths/linux_directory_walk.h"
#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/patient_fixture.h"
#include "platform/text/unicode.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"

namespace sonarith::test {

namespace fs = std::filesystem;

/// D: is a temporary folder; C: is the machine's root.
class LinuxDirectoryWalkTest : public testing::TestWithParam<test::Reach> {
  protected:
    // The process must not remain in a folder that is about to be deleted.
    ~LinuxDirectoryWalkTest() override { fs::current_path("/"); }

    void write(const std::string& name) {
        fs::create_directories(fs::path(disk_ + "/" + name).parent_path());
        std::ofstream(disk_ + "/" + name) << "sound";
    }
    void makeFolder(const std::string& name) { fs::create_directories(disk_ + "/" + name); }
    void link(const std::string& target, const std::string& name) {
        fs::create_directory_symlink(target, disk_ + "/" + name);
    }

    /// The names that match `pattern`, in the order of the listing.
    static std::vector<std::string> names(DirectoryWalk& walk, const std::string& pattern) {
        std::vector<std::string> all;
        FindRecord entry;
        const FindHandle handle = walk.FindFirst(pattern, entry);
        for (bool found = handle != invalidFindHandle; found;
             found = walk.FindNext(handle, entry)) {
            all.push_back(entry.name);
        }
        walk.FindClose(handle);
        return all;
    }
    /// All files below a folder, found as the file search finds them: paths are in lower case,
    /// hidden folders are skipped, and of the folders that are still to be listed, the one found
    /// last is listed next.
    std::vector<std::string> filesBelow(const std::string& start) {
        return filesBelow(start, directories_);
    }
    std::vector<std::string> filesBelow(const std::string& start, Directories& directories) {
        const auto walk = directories.startWalk();
        std::vector<std::string> waiting{start + "\\"};
        std::vector<std::string> files;
        while (!waiting.empty() && ++foldersVisited_ < 1000) {
            const std::string folder = waiting.back();
            waiting.pop_back();
            FindRecord entry;
            const FindHandle handle = walk->FindFirst(folder + "*.*", entry);
            while (walk->FindNext(handle, entry)) {
                const std::string path = lowerCase(folder + entry.name);
                if ((entry.attributes & file_attribute::directory) == 0) {
                    files.push_back(path);
                } else if (!entry.name.starts_with('.')) {
                    waiting.push_back(path + "\\");
                }
            }
            walk->FindClose(handle);
        }
        EXPECT_TRUE(waiting.empty()) << "the walk must end within 1000 folders";
        return files;
    }
    std::uint32_t attributesOf(const std::string& name) {
        const auto walk = directories_.startWalk();
        FindRecord entry;
        const FindHandle handle = walk->FindFirst("d:\\*.*", entry);
        while (walk->FindNext(handle, entry)) {
            if (entry.name == name) {
                return entry.attributes;
            }
        }
        ADD_FAILURE() << name << " is not listed";
        return 0;
    }

    /// Creates the disk's folder and the list of mounts for this test; returns the list's path.
    std::string mountList() {
        fs::create_directories(disk_);
        std::ofstream list(folder_ / "mounts");
        list << "1 0 8:1 / / rw - ext4 /dev/a rw\n"
             << "2 1 8:2 / " << disk_ << " rw - ext4 /dev/b rw\n";
        return (folder_ / "mounts").string();
    }

    /// Creates objects of the patient classes; returns null if the test accesses the machine
    /// directly. A forked process calls this function again, since it does not inherit its parent's
    /// threads.
    std::unique_ptr<test::PatientMachine> reach() {
        return GetParam() == test::Reach::patiently
                   ? std::make_unique<test::PatientMachine>(store_, (folder_ / "mounts").string(),
                                                            disk_)
                   : nullptr;
    }

    fakes::TempFolder folder_;
    std::string disk_ = (folder_ / "disk").string();
    test::FakeSettingsStore store_;
    DriveTable drives_{store_};
    MountInfo mounts_{mountList()};
    PathMap paths_{drives_, mounts_};
    LinuxFileSystem directFiles_{paths_, disk_};
    LinuxDirectories direct_{paths_, directFiles_};
    std::unique_ptr<test::PatientMachine> patient_ = reach();
    FileSystem& files_ = patient_ ? static_cast<FileSystem&>(patient_->files) : directFiles_;
    Directories& directories_ =
        patient_ ? static_cast<Directories&>(patient_->directories) : direct_;
    int foldersVisited_ = 0;
};

} // namespace sonarith::test
