// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/linux_system_information.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>
#include <utility>

#include <pwd.h>
#include <sys/statvfs.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "platform/linux/system/drive_kind.h"
#include "platform/linux/system/machine_facts.h"

namespace sonarith {

namespace {

using namespace system_information;

/// The longest time that a call may take, as SystemInformation requires.
constexpr Waiting::Duration patience{100};

std::string textOfFile(const std::string& path) {
    std::ifstream file(path);
    return (std::stringstream() << file.rdbuf()).str();
}

/// Appends the NUL that SystemInformation requires after names, folders and the list of drives.
std::string withNul(std::string text) {
    text.push_back('\0');
    return text;
}

/// The product, limited to the largest number: some FUSE file systems report sizes that overflow.
std::int64_t product(std::uint64_t blocks, std::uint64_t blockBytes) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool fits = blockBytes == 0 || blocks <= most / blockBytes;
    return static_cast<std::int64_t>(fits ? blocks * blockBytes : most);
}

std::optional<std::string> accountName() {
    // The size of the buffer for getpwuid_r(). No known system recommends a larger buffer
    // (_SC_GETPW_R_SIZE_MAX).
    constexpr std::size_t entryBytes = 16384;
    std::string buffer(entryBytes, '\0');
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 ||
        found == nullptr) {
        return std::nullopt;
    }
    return withNul(entry.pw_name);
}

} // namespace

std::optional<DiskSpace> spaceOf(const std::string& machinePath) {
    struct statvfs sizes {};
    if (::statvfs(machinePath.c_str(), &sizes) != 0) {
        return std::nullopt;
    }
    // "bavail" excludes the space reserved for the superuser.
    return DiskSpace{product(sizes.f_blocks, sizes.f_frsize),
                     product(sizes.f_bavail, sizes.f_frsize)};
}

std::uint32_t serialNumberIn(const std::string& uuid) {
    constexpr unsigned bitsPerDigit = 4;
    std::uint32_t number = 0;
    for (const char c : uuid) {
        const auto digit = static_cast<unsigned char>(c);
        if (std::isxdigit(digit) != 0) {
            const int value =
                std::isdigit(digit) != 0 ? digit - '0' : std::tolower(digit) - 'a' + 10;
            number = (number << bitsPerDigit) | static_cast<std::uint32_t>(value);
        }
    }
    return number;
}

LinuxSystemInformation::LinuxSystemInformation(waiting::WorkerThreads& threads, Waiting& waiting,
                                               Drives drives, ToLogic toLogic,
                                               const InformationPlaces& places,
                                               SpaceReader readSpace)
    : drives_(std::move(drives)),
      toLogic_(std::move(toLogic)),
      places_(places),
      readSpace_(std::move(readSpace)),
      devices_(places.sys, places.disks),
      mounts_(places.mountList),
      calls_(threads, waiting, patience) {}

const std::vector<Drive>& LinuxSystemInformation::drivesNow() const {
    if (mounts_.update() || drivesKnown_.empty()) {
        drivesKnown_ = drives_();
    }
    return drivesKnown_;
}

std::optional<Drive> LinuxSystemInformation::driveOf(const std::string& root) const {
    const std::vector<Drive>& drives = drivesNow();
    const auto found = std::find_if(drives.begin(), drives.end(), [&](const Drive& drive) {
        return !root.empty() &&
               drive.letter == std::toupper(static_cast<unsigned char>(root.front()));
    });
    return found == drives.end() ? std::nullopt : std::optional(*found);
}

// --- drives --------------------------------------------------------------------------------------

std::size_t LinuxSystemInformation::logicalDriveStrings(std::string& buffer,
                                                        std::size_t size) const {
    std::string list;
    for (const Drive& drive : drivesNow()) {
        list.append(1, drive.letter).append(":\\").push_back('\0');
    }
    if (list.size() + 1 > size) {
        return list.size() + 1;
    }
    buffer.replace(0, list.size() + 1, withNul(list));
    return list.size();
}

std::optional<DiskSpace> LinuxSystemInformation::diskSpace(const std::string& root) const {
    const auto drive = driveOf(root);
    if (!drive) {
        return std::nullopt;
    }
    // `calls_` identifies each object that may hang by a name, and makes one call at a time to
    // each. Here the object is the mount and not the drive: if a mount hangs, all drives on the
    // mount hang. The name contains the device number. So if another device is mounted later at the
    // same mount point, this mount is another object.
    const auto mount = mounts_.holding(drive->mountPoint);
    const std::string object = mount ? mount->device + " " + mount->path : drive->mountPoint;
    return calls_.ask(object, [read = readSpace_, path = drive->mountPoint] { return read(path); });
}

DriveKind LinuxSystemInformation::driveKind(const std::string& root) const {
    const auto drive = driveOf(root);
    if (!drive) {
        return DriveKind::noRoot;
    }
    const auto mount = mounts_.holding(drive->mountPoint);
    return mount ? driveKindOf(*mount, devices_) : DriveKind::unknown;
}

std::optional<VolumeInformation>
LinuxSystemInformation::volumeInformation(const std::string& root) const {
    const auto drive = driveOf(root);
    const auto mount = drive ? mounts_.holding(drive->mountPoint) : std::nullopt;
    if (!mount) {
        return std::nullopt;
    }
    const auto device = devices_.nameOf(*mount);
    return device
               ? VolumeInformation{devices_.label(*device), serialNumberIn(devices_.uuid(*device))}
               : VolumeInformation{};
}

// --- the machine ---------------------------------------------------------------------------------

MemoryStatus LinuxSystemInformation::memoryStatus() const {
    return memoryIn(textOfFile(places_.memory));
}

ProcessorInformation LinuxSystemInformation::processor() const {
    // The newest processor type that the program can name; all x86 processors in use are compatible
    // with this type.
#if defined(__x86_64__) || defined(__i386__)
    constexpr int type = 586;
#else
    constexpr int type = 0;
#endif
    const OnlineProcessors online =
        processorsIn(textOfFile(places_.sys + "/devices/system/cpu/online"));
    return {type, online.count, online.mask};
}

std::optional<SystemVersion> LinuxSystemInformation::version() const {
    utsname names{};
    return ::uname(&names) == 0 ? versionIn(names.release) : std::nullopt;
}

int LinuxSystemInformation::keyboardType() const {
    // "Enhanced": all current keyboards are of this type. The kernel does not report the type.
    constexpr int enhanced = 4;
    return keyboardIn(textOfFile(places_.inputDevices)).present ? enhanced : 0;
}

int LinuxSystemInformation::functionKeys() const {
    return keyboardIn(textOfFile(places_.inputDevices)).functionKeys;
}

// --- folders and names ---------------------------------------------------------------------------

std::string LinuxSystemInformation::folderText(const std::string& machinePath) const {
    return withNul(toLogic_(machinePath));
}

std::optional<std::string> LinuxSystemInformation::tempFolder() const {
    // TMPDIR is the system's variable for this folder; a relative path is ignored.
    const char* named = std::getenv("TMPDIR");
    return folderText(named != nullptr && *named == '/' ? named : "/tmp");
}

std::optional<std::string> LinuxSystemInformation::systemFolder() const {
    return folderText("/usr/lib"); // the system's shared libraries
}

std::optional<std::string> LinuxSystemInformation::windowsFolder() const {
    return folderText("/usr"); // contains everything that the system itself has installed
}

std::optional<std::string> LinuxSystemInformation::computerName() const {
    constexpr std::size_t longestName = 256;
    std::array<char, longestName> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? std::optional(withNul(name.data()))
                                                            : std::nullopt;
}

std::optional<std::string> LinuxSystemInformation::userName() const {
    return calls_.ask("account", accountName);
}

} // namespace sonarith
