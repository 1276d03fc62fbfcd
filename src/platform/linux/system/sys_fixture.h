// SPDX-License-Identifier: GPL-3.0-or-later
// For tests: simulates the trees /sys and /dev/disk in a temporary folder. Also queries the space
// of a drive, and repeats the query if a busy machine did not reply in time.
//
//     FakeSys sys;
//     sys.addDisk("sda", "8:0", RemovableFlag::set);
//     sys.addPartition("sda", "sda1", "8:1");
//     sys.addLink("by-label", "MY\\x20STICK", "sda1");
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

#include "platform/system_information.h"
#include "support/temp_folder.h"

namespace sonarith::system_information {

enum class RemovableFlag { clear, set };

class FakeSys {
  public:
    [[nodiscard]] std::string sys() const { return (folder_ / "sys").string(); }
    [[nodiscard]] std::string disks() const { return (folder_ / "disk").string(); }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const {
        return folder_ / name;
    }

    void addDisk(const std::string& name, const std::string& number,
                 RemovableFlag removable = RemovableFlag::clear) {
        addDevice("devices/" + name, name, number);
        std::ofstream(sys() + "/devices/" + name + "/removable")
            << (removable == RemovableFlag::set ? "1\n" : "0\n");
    }
    void addPartition(const std::string& disk, const std::string& name, const std::string& number) {
        addDevice("devices/" + disk + "/" + name, name, number);
        std::ofstream(sys() + "/devices/" + disk + "/" + name + "/partition") << "1\n";
    }
    /// `part` is one of the block devices that the mapped device `name` consists of.
    void addSlave(const std::string& name, const std::string& part) {
        const std::string slaves = sys() + "/devices/" + name + "/slaves";
        std::filesystem::create_directories(slaves);
        std::filesystem::create_directory_symlink(sys() + "/class/block/" + part,
                                                  slaves + "/" + part);
    }
    void addLink(const std::string& folder, const std::string& text, const std::string& device) {
        std::filesystem::create_directories(disks() + "/" + folder);
        std::filesystem::create_symlink("../../" + device, disks() + "/" + folder + "/" + text);
    }

  private:
    void addDevice(const std::string& place, const std::string& name, const std::string& number) {
        namespace fs = std::filesystem;
        fs::create_directories(sys() + "/" + place);
        for (const char* folder : {"/dev/block", "/class/block"}) {
            fs::create_directories(sys() + folder);
        }
        fs::create_directory_symlink("../../" + place, sys() + "/dev/block/" + number);
        fs::create_directory_symlink("../../" + place, sys() + "/class/block/" + name);
    }

    fakes::TempFolder folder_;
};

/// The space of a drive that responds. Retries, since on a busy machine the query may exceed its
/// time limit and return nothing.
[[nodiscard]] inline std::optional<DiskSpace> spaceAtLast(const SystemInformation& information,
                                                          const std::string& root) {
    constexpr int mostTries = 300;
    constexpr std::chrono::milliseconds pause{10};
    std::optional<DiskSpace> space;
    for (int tries = 0; tries < mostTries && !space; ++tries) {
        space = information.diskSpace(root);
        if (!space) {
            std::this_thread::sleep_for(pause);
        }
    }
    return space;
}

} // namespace sonarith::system_information
