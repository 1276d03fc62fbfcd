// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/file_error.h"

#include <cerrno>
#include <string>
#include <system_error>

namespace sonarith::files {

namespace {

namespace fs = std::filesystem;

struct Meaning {
    ErrorNumber number;
    const char* words; ///< follow the path
};

Meaning meaningOf(int error) {
    switch (error) {
    case ENOENT:
        return {ErrorNumber::pathNotFound, "does not exist"};
    case ENOTDIR:
        return {ErrorNumber::pathNotFound, "is not a folder"};
    case EISDIR:
        return {ErrorNumber::pathFileAccess, "is a folder"};
    case ENAMETOOLONG:
        return {ErrorNumber::badFileName, "is too long a name"};
    case EACCES:
    case EPERM:
        return {ErrorNumber::permissionDenied, "may not be written to"};
    case EROFS:
        return {ErrorNumber::permissionDenied, "is on a disk that can only be read"};
    case ENOSPC:
    case EDQUOT:
        return {ErrorNumber::diskFull, "does not fit: the disk is full"};
    case EFBIG:
        return {ErrorNumber::diskFull, "does not fit: the file would be too large"};
    default:
        return {ErrorNumber::deviceInputOutput, nullptr};
    }
}

} // namespace

Error systemError(int error, const fs::path& path) {
    const Meaning meaning = meaningOf(error);
    const std::string words = meaning.words != nullptr
                                  ? meaning.words
                                  : "failed: " + std::generic_category().message(error);
    return {meaning.number, "\"" + path.string() + "\" " + words};
}

} // namespace sonarith::files
