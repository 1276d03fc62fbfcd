// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/file_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <system_error>

namespace sonarith {

namespace {

struct Meaning {
    int error; ///< an errno value
    ErrorNumber number;
    /// The text after the path in the message of systemError(). If it is nullptr, systemError()
    /// uses the system's message.
    const char* words;
};

constexpr std::array meanings{
    Meaning{ENOENT, ErrorNumber::fileNotFound, "does not exist"},
    Meaning{ENOTDIR, ErrorNumber::pathNotFound, "is not a folder"},
    Meaning{ELOOP, ErrorNumber::pathNotFound, "is a symbolic link that refers to itself"},
    Meaning{EISDIR, ErrorNumber::pathFileAccess, "is a folder"},
    Meaning{EEXIST, ErrorNumber::fileAlreadyExists, "already exists"},
    Meaning{ENAMETOOLONG, ErrorNumber::badFileName, "is too long a name for this disk"},
    Meaning{EILSEQ, ErrorNumber::badFileName, "is not a valid name on this disk"},
    Meaning{EACCES, ErrorNumber::permissionDenied, "is not writable"},
    Meaning{EPERM, ErrorNumber::permissionDenied, "is not writable"},
    Meaning{EROFS, ErrorNumber::permissionDenied, "is on a read-only disk"},
    Meaning{EBUSY, ErrorNumber::permissionDenied, "is in use"},
    Meaning{ETXTBSY, ErrorNumber::permissionDenied, "is in use"},
    // Returned by a non-blocking open of a file on which another program has a lease.
    Meaning{EAGAIN, ErrorNumber::permissionDenied, "is in use"},
    Meaning{ENOSPC, ErrorNumber::diskFull, "is on a full disk"},
    Meaning{EDQUOT, ErrorNumber::diskFull, "is on a full disk"},
    Meaning{EFBIG, ErrorNumber::diskFull, "does not fit: the file would be too large"},
    Meaning{EIO, ErrorNumber::deviceInputOutput, nullptr},
    Meaning{ENODEV, ErrorNumber::deviceUnavailable, nullptr},
    Meaning{ENXIO, ErrorNumber::deviceUnavailable, nullptr},
};

Meaning meaningOf(int error) {
    const auto* const found = std::find_if(meanings.begin(), meanings.end(),
                                           [&](const Meaning& m) { return m.error == error; });
    // Errors that are not in the table become pathFileAccess. Examples are EXDEV (another disk) and
    // EMFILE (no more descriptors).
    return found != meanings.end() ? *found : Meaning{error, ErrorNumber::pathFileAccess, nullptr};
}

const char* textOf(ErrorNumber number) {
    switch (number) {
    case ErrorNumber::fileNotFound:
        return "File not found";
    case ErrorNumber::pathNotFound:
        return "Path not found";
    case ErrorNumber::permissionDenied:
        return "Permission denied";
    case ErrorNumber::badFileMode:
        return "Bad file mode";
    case ErrorNumber::fileAlreadyExists:
        return "File already exists";
    case ErrorNumber::badFileName:
        return "Bad file name or number";
    case ErrorNumber::diskFull:
        return "Disk full";
    case ErrorNumber::badRecordNumber:
        return "Bad record number";
    case ErrorNumber::deviceInputOutput:
        return "Device I/O error";
    case ErrorNumber::deviceUnavailable:
        return "Device unavailable";
    default:
        return "Path/File access error";
    }
}

} // namespace

Error fileError(ErrorNumber number) {
    return {number, textOf(number)};
}

Error fileErrorOfSystem(int systemErrorNumber) {
    return fileError(meaningOf(systemErrorNumber).number);
}

namespace files {

Error systemError(int error, const std::filesystem::path& path) {
    const Meaning meaning = meaningOf(error);
    const std::string words = meaning.words != nullptr
                                  ? meaning.words
                                  : "failed: " + std::generic_category().message(error);
    return {error == ENOENT ? ErrorNumber::pathNotFound : meaning.number,
            "\"" + path.string() + "\" " + words};
}

std::string reasonOf(int error) {
    switch (error) {
    case ENOSPC:
        return "no space is left";
    case EDQUOT:
        return "the quota of the disk is used up";
    case EFBIG:
        return "the file would be too large";
    default:
        return std::generic_category().message(error);
    }
}

} // namespace files

} // namespace sonarith
