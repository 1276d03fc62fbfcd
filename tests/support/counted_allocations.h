// SPDX-License-Identifier: GPL-3.0-or-later
// Counts the allocations of a test program. This file replaces the global operators new and delete,
// so only one source file of a test program may include it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace sonarith::test {

inline std::atomic<long> allocationCount = 0;

/// Number of allocations while `step` runs, on all threads.
template <typename Step>
[[nodiscard]] long allocationsOf(Step step) {
    const long before = allocationCount;
    step();
    return allocationCount - before;
}

} // namespace sonarith::test

void* operator new(std::size_t size) {
    ++sonarith::test::allocationCount;
    if (void* const memory = std::malloc(size > 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}
// This operator is replaced, too, because operator delete below calls free(): the memory from a
// sanitizer's version of this operator would not come from malloc().
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++sonarith::test::allocationCount;
    return std::malloc(size > 0 ? size : 1);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
