// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/system_error.h"

#include <cerrno>

namespace sonarith {

namespace {

ErrorNumber numberOfSystem(int systemErrorNumber) {
    switch (systemErrorNumber) {
    case ENOENT:
        return ErrorNumber::fileNotFound;
    case ENOTDIR:
    case ELOOP:
        return ErrorNumber::pathNotFound;
    case EACCES:
    case EPERM:
    case EBUSY:
    case ETXTBSY:
        return ErrorNumber::permissionDenied;
    case EEXIST:
        return ErrorNumber::fileAlreadyExists;
    case ENAMETOOLONG:
    case EILSEQ:
        return ErrorNumber::badFileName;
    case ENOSPC:
    case EDQUOT:
        return ErrorNumber::diskFull;
    case EIO:
        return ErrorNumber::deviceInputOutput;
    case ENODEV:
    case ENXIO:
        return ErrorNumber::deviceUnavailable;
    default: // a folder where a file is wanted, a read-only disk, another disk...
        return ErrorNumber::pathFileAccess;
    }
}

const char* textOf(ErrorNumber number) {
    switch (number) {
    case ErrorNumber::fileNotFound:
        return "File not found";
    case ErrorNumber::pathNotFound:
        return "Path not found";
    case ErrorNumber::permissionDenied:
        return "Permission denied";
    case ErrorNumber::fileAlreadyExists:
        return "File already exists";
    case ErrorNumber::badFileName:
        return "Bad file name or number";
    case ErrorNumber::diskFull:
        return "Disk full";
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
    return fileError(numberOfSystem(systemErrorNumber));
}

} // namespace sonarith
