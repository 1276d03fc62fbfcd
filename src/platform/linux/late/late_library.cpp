// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/late/late_library.h"

#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

namespace sonarith {

namespace {

/// The exit status of the dynamic linker if a library is missing.
constexpr int linkerFailed = 127;

[[noreturn]] void endBecauseMissing(const char* name) {
    const char* reason = ::dlerror();
    std::fprintf(stderr, "sonarith: %s\n", reason != nullptr ? reason : name);
    std::_Exit(linkerFailed);
}

} // namespace

void LateLibrary::load() const {
    if (handle_.load(std::memory_order_acquire) != nullptr) {
        return;
    }
    // If two threads open the library at the same time, both get the same handle. The library is
    // never closed.
    void* const opened = ::dlopen(name_, RTLD_LAZY | RTLD_LOCAL);
    if (opened == nullptr) {
        endBecauseMissing(name_);
    }
    handle_.store(opened, std::memory_order_release);
}

void* LateLibrary::symbol(const char* name) const {
    load();
    void* const found = ::dlsym(handle_.load(std::memory_order_acquire), name);
    if (found == nullptr) {
        endBecauseMissing(name);
    }
    return found;
}

} // namespace sonarith
