// SPDX-License-Identifier: GPL-3.0-or-later
// Returns information about a Linux machine, its drives and its user. It neither assigns letters to
// mounts nor creates texts for the user.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/paths/drive_table.h"
#include "platform/linux/system/block_devices.h"
#include "platform/linux/system/mount_table.h"
#include "platform/linux/system/patient_calls.h"
#include "platform/linux/waiting/worker_threads.h"
#include "platform/system_information.h"
#include "platform/waiting.h"

namespace sonarith {

/// The files of the kernel and the device manager; tests use other paths.
struct InformationPlaces {
    std::string mountList = "/proc/self/mountinfo";
    std::string memory = "/proc/meminfo";
    std::string inputDevices = "/proc/bus/input/devices";
    std::string sys = "/sys";
    std::string disks = "/dev/disk";
};

/// The sizes of the file system that contains a machine path; empty if they cannot be determined.
/// The call may never return.
[[nodiscard]] std::optional<DiskSpace> spaceOf(const std::string& machinePath);

/// Queries that may hang run on a separate thread: the sizes of a mount, and the user's name, which
/// may come from a server.
class LinuxSystemInformation final : public SystemInformation {
  public:
    /// Returns the current drives. The result is used until the kernel's list of mounts changes;
    /// after an empty result, the next query calls the function again.
    using Drives = std::function<std::vector<Drive>()>;
    /// Translates an absolute machine path to a path of the logic.
    using ToLogic = std::function<std::string(const std::string&)>;
    /// As spaceOf(). Called on another thread, which may outlive this object.
    using SpaceReader = std::function<std::optional<DiskSpace>(const std::string&)>;

    /// Queries that may hang use `threads` and `waiting`, which must outlive this object.
    LinuxSystemInformation(waiting::WorkerThreads& threads, Waiting& waiting, Drives drives,
                           ToLogic toLogic, const InformationPlaces& places = {},
                           SpaceReader readSpace = spaceOf);

    [[nodiscard]] std::size_t logicalDriveStrings(std::string& buffer,
                                                  std::size_t size) const override;
    [[nodiscard]] std::optional<DiskSpace> diskSpace(const std::string& root) const override;
    [[nodiscard]] DriveKind driveKind(const std::string& root) const override;
    /// The serial number is the last eight hexadecimal digits of the file system's UUID. Some file
    /// systems have a UUID of only sixteen such digits. For these file systems, other operating
    /// systems show the same serial number.
    [[nodiscard]] std::optional<VolumeInformation>
    volumeInformation(const std::string& root) const override;
    [[nodiscard]] MemoryStatus memoryStatus() const override;
    [[nodiscard]] ProcessorInformation processor() const override;
    [[nodiscard]] std::optional<SystemVersion> version() const override;
    [[nodiscard]] int keyboardType() const override;
    [[nodiscard]] int functionKeys() const override;
    [[nodiscard]] std::optional<std::string> tempFolder() const override;
    [[nodiscard]] std::optional<std::string> systemFolder() const override;
    [[nodiscard]] std::optional<std::string> windowsFolder() const override;
    [[nodiscard]] std::optional<std::string> computerName() const override;
    [[nodiscard]] std::optional<std::string> userName() const override;

    /// The number of queries that have not returned yet: at most one for each mount, and one for
    /// the user's name. Each of them occupies one thread.
    [[nodiscard]] std::size_t unanswered() const { return calls_.unanswered(); }

  private:
    [[nodiscard]] const std::vector<Drive>& drivesNow() const;
    [[nodiscard]] std::optional<Drive> driveOf(const std::string& root) const;
    [[nodiscard]] std::string folderText(const std::string& machinePath) const;

    Drives drives_;
    ToLogic toLogic_;
    InformationPlaces places_;
    SpaceReader readSpace_;
    system_information::BlockDevices devices_;
    mutable system_information::MountTable mounts_;
    mutable std::vector<Drive> drivesKnown_;
    mutable system_information::PatientCalls calls_;
};

/// The last eight hexadecimal digits of `uuid` as a number; all digits if there are fewer.
[[nodiscard]] std::uint32_t serialNumberIn(const std::string& uuid);

} // namespace sonarith
