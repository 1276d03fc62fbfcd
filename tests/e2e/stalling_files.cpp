// SPDX-License-Identifier: GPL-3.0-or-later
// A library that a test preloads into the program to simulate a disk that spins up or a server that
// does not respond. The environment variables STALLED_FOLDER and STALLED_WHILE are paths. While the
// file STALLED_WHILE exists, the functions defined here do not return if they are called for a path
// that begins with STALLED_FOLDER. linkat() checks only the path of the new link. All other calls
// reach the system unchanged.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr useconds_t microsecondsBetweenPolls = 20'000;

bool stalled() {
    const char* file = std::getenv("STALLED_WHILE");
    return file != nullptr && ::syscall(SYS_access, file, F_OK) == 0;
}

bool beginsWithFolder(const char* path) {
    const char* folder = std::getenv("STALLED_FOLDER");
    return folder != nullptr && path != nullptr &&
           std::strncmp(path, folder, std::strlen(folder)) == 0;
}

void waitFor(const char* path) {
    while (beginsWithFolder(path) && stalled()) {
        ::usleep(microsecondsBetweenPolls);
    }
}

void waitFor(int file) {
    char link[64];
    char path[4096];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const long length = ::syscall(SYS_readlink, link, path, sizeof path - 1);
    if (length > 0) {
        path[length] = '\0';
        waitFor(path);
    }
}

template <typename Function>
Function next(Function, const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

mode_t modeIn(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE
               ? static_cast<mode_t>(va_arg(arguments, int))
               : 0;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    waitFor(path);
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    waitFor(path);
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags | O_LARGEFILE, mode));
}

DIR* opendir(const char* path) {
    waitFor(path);
    return next(&opendir, "opendir")(path);
}

FILE* fopen64(const char* path, const char* mode) {
    waitFor(path);
    return next(&fopen64, "fopen64")(path, mode);
}

FILE* fopen(const char* path, const char* mode) {
    waitFor(path);
    return next(&fopen, "fopen")(path, mode);
}

ssize_t read(int file, void* data, size_t size) {
    waitFor(file);
    return ::syscall(SYS_read, file, data, size);
}

ssize_t write(int file, const void* data, size_t size) {
    waitFor(file);
    return ::syscall(SYS_write, file, data, size);
}

ssize_t pread64(int file, void* data, size_t size, off64_t at) {
    waitFor(file);
    return ::syscall(SYS_pread64, file, data, size, at);
}

ssize_t pwrite64(int file, const void* data, size_t size, off64_t at) {
    waitFor(file);
    return ::syscall(SYS_pwrite64, file, data, size, at);
}

ssize_t pread(int file, void* data, size_t size, off_t at) {
    return pread64(file, data, size, at);
}

ssize_t pwrite(int file, const void* data, size_t size, off_t at) {
    return pwrite64(file, data, size, at);
}

int fsync(int file) {
    waitFor(file);
    return static_cast<int>(::syscall(SYS_fsync, file));
}

int fdatasync(int file) {
    waitFor(file);
    return static_cast<int>(::syscall(SYS_fdatasync, file));
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    waitFor(to);
    return static_cast<int>(::syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

} // extern "C"
