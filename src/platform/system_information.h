// SPDX-License-Identifier: GPL-3.0-or-later
// Reads information about the machine, its drives and its user. Interface only: the logic decides
// how this information is shown and used.
//
// All members are called on the logic thread and return within 100 ms. If a drive does not respond
// in that time, the result is the same as for a drive that reports an error. Until that drive has
// responded, no further query is sent to the drive.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sonarith {

/// Sizes in bytes. `freeBytes` is the space that this user can still write.
struct DiskSpace {
    std::int64_t totalBytes = 0;
    std::int64_t freeBytes = 0;
};

/// The numbers are those that the logic expects.
enum class DriveKind : int {
    unknown = 0,
    noRoot = 1, ///< no such drive
    removable = 2,
    fixed = 3,
    network = 4,
    cdRom = 5,
    ramDisk = 6,
};

struct VolumeInformation {
    std::string label; ///< empty: none
    std::uint32_t serialNumber = 0;
};

struct MemoryStatus {
    int loadPercent = 0; ///< used part of the memory
    std::int64_t totalBytes = 0;
    std::int64_t availableBytes = 0;
};

struct ProcessorInformation {
    int type = 0; ///< 386, 486, 586 or another number
    int count = 0;
    std::uint64_t activeMask = 0; ///< one bit for each processor in use
};

struct SystemVersion {
    int platform = 0; ///< 0, 1 or 2: a number for which the logic has a text
    int major = 0;
    int minor = 0;
};

class SystemInformation {
  public:
    virtual ~SystemInformation() = default;
    /// The root paths of all drives ("C:\"), each followed by a NUL, and one more NUL at the end.
    /// Writes at most `size` characters to `buffer`. Returns the length of the text without its
    /// last NUL. If the text does not fit, returns the required size, including the last NUL.
    [[nodiscard]] virtual std::size_t logicalDriveStrings(std::string& buffer,
                                                          std::size_t size) const = 0;
    /// Returns nothing for a drive that reports an error or does not respond.
    [[nodiscard]] virtual std::optional<DiskSpace> diskSpace(const std::string& root) const = 0;
    [[nodiscard]] virtual DriveKind driveKind(const std::string& root) const = 0;
    [[nodiscard]] virtual std::optional<VolumeInformation>
    volumeInformation(const std::string& root) const = 0;
    [[nodiscard]] virtual MemoryStatus memoryStatus() const = 0;
    [[nodiscard]] virtual ProcessorInformation processor() const = 0;
    [[nodiscard]] virtual std::optional<SystemVersion> version() const = 0;
    /// The number that the logic expects for the type of keyboard; 0 if the type is unknown.
    [[nodiscard]] virtual int keyboardType() const = 0;
    [[nodiscard]] virtual int functionKeys() const = 0;
    // Texts followed by a NUL, as in a fixed buffer; nothing on failure. Folders are paths of the
    // logic.
    [[nodiscard]] virtual std::optional<std::string> tempFolder() const = 0;
    [[nodiscard]] virtual std::optional<std::string> systemFolder() const = 0;
    [[nodiscard]] virtual std::optional<std::string> windowsFolder() const = 0;
    [[nodiscard]] virtual std::optional<std::string> computerName() const = 0;
    [[nodiscard]] virtual std::optional<std::string> userName() const = 0;
};

} // namespace sonarith
