// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/hidden_name.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sonarith::files {

namespace {

constexpr std::size_t randomDigits = 16;

std::string hexadecimal(std::uint32_t value) {
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x", value);
    return digits.data();
}

/// The machine's ID, or its host name if it has no ID; empty if it has neither.
std::string machineIdentity() {
    std::string identity;
    std::getline(std::ifstream("/etc/machine-id"), identity);
    if (identity.empty()) {
        std::array<char, 65> name{}; // HOST_NAME_MAX plus the terminating NUL
        static_cast<void>(::gethostname(name.data(), name.size() - 1));
        identity = name.data();
    }
    return identity;
}

/// Prefix of this machine's hidden names. On some network file systems a lock is visible only to
/// the machine that holds it. So a machine cannot detect whether another machine's files are in
/// use, and deletes only its own files.
const std::string& machinePrefix() {
    static const std::string prefix = [] {
        // The ID is hashed (FNV-1a), because the file names are visible to other users, who must
        // not learn the ID.
        std::uint32_t hash = 2166136261;
        for (const char character : machineIdentity()) {
            hash = (hash ^ static_cast<unsigned char>(character)) * 16777619;
        }
        return ".sonarith-" + hexadecimal(hash) + "-";
    }();
    return prefix;
}

bool isHiddenName(std::string_view name) {
    const std::string& prefix = machinePrefix();
    return name.size() == prefix.size() + randomDigits && name.starts_with(prefix) &&
           name.find_first_not_of("0123456789abcdef", prefix.size()) == std::string_view::npos;
}

std::vector<std::string> hiddenNamesIn(const FileDescriptor& folder) {
    std::vector<std::string> names;
    struct Close {
        void operator()(DIR* opened) const { ::closedir(opened); }
    };
    const int listed = ::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, Close> listing(listed >= 0 ? ::fdopendir(listed) : nullptr);
    while (const dirent* entry = listing ? ::readdir(listing.get()) : nullptr) {
        if (isHiddenName(entry->d_name)) {
            names.emplace_back(entry->d_name);
        }
    }
    return names;
}

} // namespace

std::string newHiddenName() {
    std::random_device random;
    return machinePrefix() + hexadecimal(random()) + hexadecimal(random());
}

HiddenName::HiddenName(const FileDescriptor& folder, std::string name)
    : folder_(::fcntl(folder.get(), F_DUPFD_CLOEXEC, 0)), name_(std::move(name)) {}

HiddenName::~HiddenName() {
    if (!name_.empty()) {
        ::unlinkat(folder_.get(), name_.c_str(), 0);
    }
}

int HiddenName::renameTo(const FileDescriptor& folder, const std::string& name) {
    if (::renameat(folder_.get(), name_.c_str(), folder.get(), name.c_str()) != 0) {
        return errno;
    }
    name_.clear();
    // Synchronizes the folder of the hidden name, which may differ from `folder`: the hidden name
    // must not reappear after a power failure.
    static_cast<void>(::fsync(folder_.get()));
    return 0;
}

bool claim(const FileDescriptor& file) {
    return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

void unclaim(const FileDescriptor& file) {
    ::flock(file.get(), LOCK_UN);
}

void removeLeftovers(const FileDescriptor& folder) {
    for (const std::string& name : hiddenNamesIn(folder)) {
        // O_RDWR, because some network file systems lock only files that are open for writing.
        // O_NONBLOCK, because opening a device, or a file with a lease, could block.
        const FileDescriptor file(
            ::openat(folder.get(), name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        struct stat found {};
        if (file.valid() && ::fstat(file.get(), &found) == 0 && S_ISREG(found.st_mode) &&
            found.st_uid == ::geteuid() && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
            // The lock is held until the file is deleted. So a process that has just created the
            // file either fails to claim it, or claims it and detects the deletion. In both cases
            // the process creates another file.
            ::unlinkat(folder.get(), name.c_str(), 0);
        }
    }
}

} // namespace sonarith::files
