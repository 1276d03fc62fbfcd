// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/drive_status.h"

#include <algorithm>
#include <cerrno>
#include <climits> // needed by CDSL_CURRENT, whose header does not include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <linux/cdrom.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace sonarith::disc {

namespace {

// At most this many bytes of the kernel's list of drives are read. The kernel writes at most 1000
// bytes (CDROM_STR_SIZE in drivers/cdrom/cdrom.c).
constexpr std::size_t maxInformationBytes = 1024;

std::string headOf(const char* path) {
    std::ifstream file(path, std::ios::binary);
    std::string text(maxInformationBytes, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

} // namespace

DriveStatus statusOfReply(int reply, int error) {
    switch (reply) {
    case CDS_DISC_OK:
        return {DriveState::loaded};
    case CDS_NO_DISC:
        return {DriveState::empty};
    case CDS_TRAY_OPEN:
        return {DriveState::trayOpen};
    case CDS_DRIVE_NOT_READY:
        return {DriveState::notReady};
    case CDS_NO_INFO:
        return {DriveState::unknown};
    default:
        // ENOSYS is the error of a real drive that does not support CDROM_DRIVE_STATUS.
        return error == ENOSYS ? DriveStatus{DriveState::unknown}
                               : DriveStatus{DriveState::unreachable, error};
    }
}

DriveStatus statusOf(const std::string& device) {
    // Without O_NONBLOCK the kernel would close an open tray and wait for a disc.
    const int descriptor = open(device.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return {DriveState::unreachable, errno};
    }
    errno = 0;
    const int reply = ioctl(descriptor, CDROM_DRIVE_STATUS, CDSL_CURRENT);
    const DriveStatus status = statusOfReply(reply, errno);
    close(descriptor);
    return status;
}

DriveReport problemOf(const std::string& device, int error) {
    switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return {DeviceProblem::missing, "The drive " + device + " does not exist."};
    case EACCES:
    case EPERM:
        return {DeviceProblem::noPermission,
                "You have no permission to use the drive " + device +
                    "; on most systems the members of the group \"cdrom\" have this permission."};
    case EBUSY:
        return {DeviceProblem::busy, "The drive " + device + " is used by another program."};
    case ENOTTY:
    case EINVAL:
    case EISDIR:
        return {DeviceProblem::missing, device + " is not an optical drive."};
    default:
        return {DeviceProblem::unreadable, "The drive " + device + " cannot be used: " +
                                               std::generic_category().message(error) + "."};
    }
}

std::vector<std::string> driveNames(std::string_view information) {
    constexpr std::string_view label = "drive name:";
    const std::size_t at = information.find(label);
    if (at == std::string_view::npos) {
        return {};
    }
    const std::string_view line = information.substr(at + label.size());
    std::istringstream words{std::string(line.substr(0, line.find('\n')))};
    std::vector<std::string> names{std::istream_iterator<std::string>(words), {}};
    // Shorter names first, so that sr2 precedes sr10.
    std::ranges::sort(names, [](const std::string& a, const std::string& b) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    return names;
}

std::vector<std::string>
driveDevices(std::string_view information,
             const std::function<bool(const std::string& device)>& exists) {
    std::vector<std::string> devices;
    for (const std::string& name : driveNames(information)) {
        std::string device = "/dev/" + name;
        if (exists(device)) {
            devices.push_back(std::move(device));
        }
    }
    return devices;
}

std::vector<std::string> opticalDrives() {
    return driveDevices(headOf("/proc/sys/dev/cdrom/info"), [](const std::string& device) {
        std::error_code ignored;
        return std::filesystem::is_block_file(device, ignored);
    });
}

} // namespace sonarith::disc
