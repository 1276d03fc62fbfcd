// SPDX-License-Identifier: GPL-3.0-or-later
// Returns system information of the machine as texts and numbers. The class has no state. The rest
// of the program calls only DriveInfo() and DriveType().
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/file_system.h"
#include "platform/system_information.h"

namespace sonarith {

class System {
  public:
    struct DriveCounts {
        std::int16_t removable = 0;
        std::int16_t fixed = 0;
        std::int16_t network = 0;
        std::int16_t cdRom = 0;
        std::int16_t ramDisks = 0;
    };
    struct Memory {
        std::uint8_t load = 0; ///< percent in use
        std::int64_t totalKb = 0;
        std::int64_t availableKb = 0;
    };
    struct Processors {
        std::string type;
        std::int32_t count = 0;
        std::uint64_t activeMask = 0;
    };
    struct Version {
        std::int16_t major = 0;
        std::int16_t minor = 0;
        std::string text;
    };

    /// Both parameters must outlive this object.
    System(const SystemInformation& machine, FileSystem& files)
        : machine_(machine), files_(files) {}

    // `root` is a drive's letter, a colon and a backslash.

    /// Sizes in bytes; both are 0 if the drive cannot be queried. `freeBytes` is the space that
    /// this user may use.
    void DriveInfo(const std::string& root, std::int64_t& totalBytes,
                   std::int64_t& freeBytes) const;
    /// For each drive, adds 1 to the counter of the drive's type. Does not reset the counters.
    void Drives(DriveCounts& counts) const;
    /// "Removable drive", "Fixed drive", "Network drive", "CD-ROM drive" or "RAM-disk"; empty for
    /// all other kinds.
    [[nodiscard]] std::string DriveType(const std::string& root) const;
    /// The number with points between groups of three digits, counted from the right.
    [[nodiscard]] static std::string PutPoints(std::int32_t number);
    /// Free bytes of a drive. `drive` begins with the drive's letter and a colon; any text after
    /// the colon is ignored. Changes to that drive, reads its free bytes and changes back to the
    /// previous folder. 0 if the drive cannot be entered or queried.
    [[nodiscard]] std::int64_t FastDiskSpace(const std::string& drive) const;
    void FreeMemory(Memory& memory) const;
    [[nodiscard]] std::uint8_t FunctionKeys() const;
    /// Empty for an unknown keyboard.
    [[nodiscard]] std::string KeyboardType() const;
    /// For a processor type without a name, the previous text of `type` is kept.
    void SystemInfo(Processors& processors) const;

    // These five functions return an empty text on failure. A text of more than 49 characters from
    // the machine counts as a failure. The first three return folders with a trailing backslash.
    [[nodiscard]] std::string TempDir() const;
    [[nodiscard]] std::string SystemDir() const;
    [[nodiscard]] std::string WinDir() const;
    [[nodiscard]] std::string ComputerName() const;
    [[nodiscard]] std::string UserName() const;

    /// Eight hexadecimal digits, "XXXX-XXXX"; "0000-0000" on failure.
    [[nodiscard]] std::string SerialNumber(const std::string& root) const;
    /// "NoName" for a volume without a label; empty on failure.
    [[nodiscard]] std::string VolumeLabel(const std::string& root) const;
    /// On failure the numbers are 0 and the text is empty.
    void WinVer(Version& version) const;

  private:
    /// The text up to its first NUL; the whole text if it has none.
    [[nodiscard]] static std::string StripNul(const std::string& text);

    const SystemInformation& machine_;
    FileSystem& files_;

    [[nodiscard]] static std::string fromBuffer(const std::optional<std::string>& text);
    [[nodiscard]] static std::string folderFrom(const std::optional<std::string>& text);
};

} // namespace sonarith
