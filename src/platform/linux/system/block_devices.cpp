// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/block_devices.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace sonarith::system_information {

namespace {

namespace fs = std::filesystem;

/// The most levels of devices below a device. Below an encrypted device on a logical volume there
/// are two: the volume and its disk. More than 8 levels must be a cycle.
constexpr int deepestStack = 8;

bool holdsOne(const fs::path& file) {
    std::ifstream stream(file);
    char digit = '0';
    return stream.get(digit) && digit == '1';
}

} // namespace

std::optional<std::string> BlockDevices::nameOf(const MountPoint& mount) const {
    std::error_code failed;
    const fs::path device = fs::read_symlink(sys_ + "/dev/block/" + mount.device, failed);
    if (!failed) {
        return device.filename().string();
    }
    // Some device numbers have no link. For example, a file system on several devices has a device
    // number of its own; the mount's source is then one of these devices.
    constexpr std::string_view devices = "/dev/";
    if (!mount.source.starts_with(devices)) {
        return std::nullopt;
    }
    const fs::path source = fs::weakly_canonical(mount.source, failed);
    const std::string name = failed ? std::string() : source.filename().string();
    return fs::exists(sys_ + "/class/block/" + name, failed) && !name.empty() ? std::optional(name)
                                                                              : std::nullopt;
}

bool BlockDevices::isRemovable(const std::string& name) const {
    return isRemovable(name, 0);
}

bool BlockDevices::isRemovable(const std::string& name, int depth) const {
    if (depth > deepestStack) {
        return false;
    }
    std::error_code failed;
    fs::path device = sys_ + "/class/block/" + name; // a link to the device's folder
    if (fs::exists(device / "partition", failed)) {
        // Only the whole disk has the file "removable". The kernel resolves ".." from the folder
        // to which the link leads.
        device /= "..";
    }
    if (holdsOne(device / "removable")) {
        return true;
    }
    // For a mapped device, "slaves" contains the devices below it.
    for (fs::directory_iterator part(device / "slaves", failed), end; !failed && part != end;
         part.increment(failed)) {
        if (isRemovable(part->path().filename().string(), depth + 1)) {
            return true;
        }
    }
    return false;
}

std::string BlockDevices::linkTo(const std::string& name, const std::string& folder) const {
    std::error_code failed;
    for (fs::directory_iterator link(disks_ + "/" + folder, failed), end; !failed && link != end;
         link.increment(failed)) {
        std::error_code noLink;
        if (fs::read_symlink(link->path(), noLink).filename() == name) {
            return plainDiskName(link->path().filename().string());
        }
    }
    return {};
}

std::string BlockDevices::label(const std::string& name) const {
    return linkTo(name, "by-label");
}

std::string BlockDevices::uuid(const std::string& name) const {
    return linkTo(name, "by-uuid");
}

std::string plainDiskName(const std::string& text) {
    constexpr std::size_t escapeLength = 4;
    constexpr int hexadecimal = 16;
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const char* digits = text.data() + i + 2;
        const bool escaped =
            text.compare(i, 2, "\\x") == 0 && i + escapeLength <= text.size() &&
            std::from_chars(digits, digits + 2, byte, hexadecimal).ptr == digits + 2;
        if (escaped) {
            plain += static_cast<char>(byte);
            i += escapeLength - 1;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

} // namespace sonarith::system_information
