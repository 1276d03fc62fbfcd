// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/mount_info.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace sonarith {

namespace {

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

/// The kernel writes space, tab, line feed and backslash as a backslash and three octal digits.
std::string unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) &&
            isOctal(text[i + 2]) && isOctal(text[i + 3])) {
            plain += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 +
                                       (text[i + 3] - '0'));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

/// The parts of `text` between the separators, without empty parts.
std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) {
            parts.push_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::optional<MountPoint> parseLine(std::string_view line) {
    // id, parent, device, root, mount point, options, optional fields, "-", type, source, options
    constexpr std::size_t device = 2, root = 3, point = 4;
    const std::vector<std::string_view> fields = split(line, ' ');
    const auto dash = std::find(fields.begin(), fields.end(), "-");
    const auto afterDash = static_cast<std::size_t>(fields.end() - dash);
    const bool hasType = afterDash > 1;
    const bool hasSource = afterDash > 2; // the line may end after the type
    if (!hasType || dash - fields.begin() <= static_cast<std::ptrdiff_t>(point) ||
        fields[point].front() != '/') {
        return std::nullopt;
    }
    return MountPoint{unescaped(fields[point]), std::string(dash[1]), fields[root] != "/",
                      std::string(fields[device]), hasSource ? unescaped(dash[2]) : std::string()};
}

/// Whether the file system may be on a remote server: it is a network file system, or a user-space
/// program (FUSE) implements it. An access may then hang.
bool mayBeRemote(const MountPoint& mount) {
    static constexpr std::array remoteTypes = {"9p",    "afs", "ceph", "cifs", "lustre",
                                               "ncpfs", "nfs", "nfs4", "smb3", "smbfs"};
    return mount.fileSystemType.starts_with("fuse") ||
           std::find(remoteTypes.begin(), remoteTypes.end(), mount.fileSystemType) !=
               remoteTypes.end();
}

bool isBelow(const std::string& path, const std::string& folder) {
    return path == folder || path.compare(0, folder.size() + 1, folder + "/") == 0;
}

} // namespace

std::vector<MountPoint> parseMountInfo(std::string_view text) {
    std::vector<MountPoint> mounts;
    for (const std::string_view line : split(text, '\n')) {
        auto mount = parseLine(line);
        if (!mount) {
            continue;
        }
        const auto covered = std::find_if(mounts.begin(), mounts.end(), [&](const MountPoint& m) {
            return m.path == mount->path;
        });
        if (covered != mounts.end()) {
            *covered = std::move(*mount);
        } else {
            mounts.push_back(std::move(*mount));
        }
    }
    return mounts;
}

bool holdsUserFiles(const MountPoint& mount) {
    // Most of these types are interfaces of the kernel. In ramfs the system keeps its own files.
    // These file systems usually contain no files of a user.
    static constexpr std::array kernelTypes = {
        "autofs",     "binfmt_misc", "bpf",      "cgroup",   "cgroup2", "configfs",
        "debugfs",    "devpts",      "devtmpfs", "efivarfs", "fusectl", "hugetlbfs",
        "mqueue",     "nsfs",        "proc",     "pstore",   "ramfs",   "rpc_pipefs",
        "securityfs", "selinuxfs",   "sysfs",    "tracefs"};
    // These file systems belong to packages and containers. They are numerous, and either read-only
    // or internal to a program.
    static constexpr std::array packageTypes = {"fuse.portal", "overlay", "squashfs"};
    const auto isOf = [&](const auto& types) {
        return std::find(types.begin(), types.end(), mount.fileSystemType) != types.end();
    };
    // A tmpfs may contain the user's files (/tmp), but not if it is in a folder for the run-time
    // state of the system.
    const bool systemState = mount.fileSystemType == "tmpfs" &&
                             (isBelow(mount.path, "/run") || isBelow(mount.path, "/dev") ||
                              isBelow(mount.path, "/sys") || isBelow(mount.path, "/proc"));
    return !isOf(kernelTypes) && !isOf(packageTypes) && !systemState;
}

MountInfo::MountInfo(const std::string& path)
    : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}

MountInfo::~MountInfo() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

std::optional<std::vector<MountPoint>> MountInfo::allChanged() {
    if (readBefore_) {
        // The kernel reports an error condition on this file after a mount or unmount; see proc(5).
        pollfd change{descriptor_, POLLPRI, 0};
        if (descriptor_ < 0 || ::poll(&change, 1, 0) <= 0) {
            return std::nullopt;
        }
    }
    readBefore_ = true;
    std::string text;
    std::array<char, 4096> block{};
    off_t position = 0;
    // The list usually has at most a few hundred lines of a few hundred bytes each. The limit ends
    // the loop even if the list grows as fast as it is read.
    constexpr off_t longestList = 16 * 1024 * 1024;
    while (descriptor_ >= 0 && position < longestList) {
        const ssize_t count = ::pread(descriptor_, block.data(), block.size(), position);
        if (count <= 0) {
            break;
        }
        text.append(block.data(), static_cast<std::size_t>(count));
        position += count;
    }
    return parseMountInfo(text);
}

std::optional<std::vector<MountPoint>> MountInfo::changed() {
    auto mounts = allChanged();
    if (!mounts) {
        return std::nullopt;
    }
    std::erase_if(*mounts, [](const MountPoint& mount) {
        // A partial mount (see MountPoint::partial) of a single file is omitted. A partial mount
        // that may be remote is kept without a check: the check would hang if the server did not
        // respond.
        std::error_code unknown;
        return !holdsUserFiles(mount) || (mount.partial && !mayBeRemote(mount) &&
                                          !std::filesystem::is_directory(mount.path, unknown));
    });
    return mounts;
}

} // namespace sonarith
