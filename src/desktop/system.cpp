// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/system.h"

#include <array>
#include <cstddef>

#include "desktop/drive_roots.h"
#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// In characters, including the NUL. For a longer text, fromBuffer() returns an empty text (see
/// system.h).
constexpr std::size_t bufferLength = 50;

std::int64_t kilobytesRounded(std::int64_t bytes) {
    constexpr std::int64_t kilobyte = 1024;
    const std::int64_t whole = bytes / kilobyte;
    const std::int64_t rest = bytes % kilobyte;
    // Halves are rounded to even, as in platform/text/numbers.h.
    const bool up = rest > kilobyte / 2 || (rest == kilobyte / 2 && whole % 2 != 0);
    return up ? whole + 1 : whole;
}

} // namespace

void System::DriveInfo(const std::string& root, std::int64_t& totalBytes,
                       std::int64_t& freeBytes) const {
    const DiskSpace space = machine_.diskSpace(root).value_or(DiskSpace{});
    totalBytes = space.totalBytes;
    freeBytes = space.freeBytes;
}

void System::Drives(DriveCounts& counts) const {
    for (const std::string& root : driveRoots(machine_)) {
        const std::string type = DriveType(root);
        if (type == "Removable drive") {
            ++counts.removable;
        } else if (type == "Fixed drive") {
            ++counts.fixed;
        } else if (type == "Network drive") {
            ++counts.network;
        } else if (type == "CD-ROM drive") {
            ++counts.cdRom;
        } else if (type == "RAM-disk") {
            ++counts.ramDisks;
        }
    }
}

std::string System::DriveType(const std::string& root) const {
    switch (machine_.driveKind(root)) {
    case DriveKind::removable:
        return "Removable drive";
    case DriveKind::fixed:
        return "Fixed drive";
    case DriveKind::network:
        return "Network drive";
    case DriveKind::cdRom:
        return "CD-ROM drive";
    case DriveKind::ramDisk:
        return "RAM-disk";
    case DriveKind::unknown:
    case DriveKind::noRoot:
        break;
    }
    return {};
}

std::string System::PutPoints(std::int32_t number) {
    constexpr std::size_t group = 3;
    std::string text = std::to_string(number);
    const std::size_t firstDigit = number < 0 ? 1 : 0;
    for (std::size_t place = text.size(); place > firstDigit + group;) {
        place -= group;
        text.insert(place, 1, '.');
    }
    return text;
}

std::int64_t System::FastDiskSpace(const std::string& drive) const {
    const std::string saved = files_.currentFolder();
    if (!files_.changeDrive(drive).ok()) {
        return 0;
    }
    constexpr std::size_t rootLength = 3;
    const auto space = machine_.diskSpace(files_.currentFolder().substr(0, rootLength));
    if (files_.changeDrive(saved).ok()) {
        files_.changeFolder(saved).passOver();
    }
    return space ? space->freeBytes : 0;
}

void System::FreeMemory(Memory& memory) const {
    const MemoryStatus status = machine_.memoryStatus();
    memory.load = static_cast<std::uint8_t>(status.loadPercent);
    memory.totalKb = kilobytesRounded(status.totalBytes);
    memory.availableKb = kilobytesRounded(status.availableBytes);
}

std::uint8_t System::FunctionKeys() const {
    return static_cast<std::uint8_t>(machine_.functionKeys());
}

std::string System::KeyboardType() const {
    static constexpr std::array names = {"IBM PC/XT or compatible (83 key)",
                                         "Olivetti \"ico\" (102 key)",
                                         "IBM PC/AT or compatible (84 key)",
                                         "IBM enhanced (101 or 102 key)",
                                         "Nokia 1050 or compatible",
                                         "Nokia 9140 or compatible",
                                         "Japanese"};
    const int type = machine_.keyboardType();
    const bool known = type >= 1 && type <= static_cast<int>(names.size());
    return known ? names[static_cast<std::size_t>(type - 1)] : std::string();
}

void System::SystemInfo(Processors& processors) const {
    const ProcessorInformation now = machine_.processor();
    switch (now.type) {
    case 386:
        processors.type = "80386";
        break;
    case 486:
        processors.type = "80486";
        break;
    case 586:
        processors.type = "Intel Pentium";
        break;
    default:
        break;
    }
    processors.count = now.count;
    processors.activeMask = now.activeMask;
}

std::string System::TempDir() const {
    return folderFrom(machine_.tempFolder());
}

std::string System::SystemDir() const {
    return folderFrom(machine_.systemFolder());
}

std::string System::WinDir() const {
    return folderFrom(machine_.windowsFolder());
}

std::string System::ComputerName() const {
    return fromBuffer(machine_.computerName());
}

std::string System::UserName() const {
    return fromBuffer(machine_.userName());
}

std::string System::SerialNumber(const std::string& root) const {
    static constexpr char digits[] = "0123456789ABCDEF";
    constexpr unsigned bitsPerDigit = 4;
    const auto volume = machine_.volumeInformation(root);
    const std::uint32_t number = volume ? volume->serialNumber : 0;
    std::string text;
    for (unsigned shift = 32; shift > 0; shift -= bitsPerDigit) {
        text += digits[(number >> (shift - bitsPerDigit)) & 0xFU];
    }
    return text.insert(4, 1, '-');
}

std::string System::VolumeLabel(const std::string& root) const {
    const auto volume = machine_.volumeInformation(root);
    if (!volume) {
        return {};
    }
    const std::string label = StripNul(volume->label);
    return label.empty() ? "NoName" : label;
}

void System::WinVer(Version& version) const {
    version = {};
    const auto now = machine_.version();
    if (!now) {
        return;
    }
    version.major = static_cast<std::int16_t>(now->major);
    version.minor = static_cast<std::int16_t>(now->minor);
    switch (now->platform) {
    case 0:
        version.text =
            "Windows " + std::to_string(version.major) + "." + std::to_string(version.minor);
        break;
    case 1:
        version.text = "Windows 95";
        break;
    case 2:
        version.text = "Windows NT";
        break;
    default:
        break;
    }
}

std::string System::StripNul(const std::string& text) {
    return text.substr(0, text.find('\0'));
}

std::string System::fromBuffer(const std::optional<std::string>& text) {
    if (!text) {
        return {};
    }
    // Removes the trailing blanks first, and then the NUL and all that follows it. In this order,
    // blanks directly before the NUL are kept: they are part of the text.
    const std::size_t last = text->find_last_not_of(' ');
    const std::string stripped =
        StripNul(text->substr(0, last == std::string::npos ? 0 : last + 1));
    return characterCount(stripped) < bufferLength ? stripped : std::string();
}

std::string System::folderFrom(const std::optional<std::string>& text) {
    const std::string folder = fromBuffer(text);
    return folder.empty() || folder.ends_with('\\') ? folder : folder + "\\";
}

} // namespace sonarith
