// SPDX-License-Identifier: GPL-3.0-or-later
// Releases an object on another thread. Used for objects whose destructors may block (a file on a
// dead server, a busy drive).
#pragma once

#include <memory>

#include "platform/thread_start.h"

namespace sonarith::waiting {

/// Releases `object` on a separate thread, or on the calling thread if the system cannot create a
/// thread. May be called on any thread; returns at once if a thread was created.
void releaseElsewhere(std::shared_ptr<const void> object,
                      const ThreadStarter& starter = startThread);

/// Returns a new pointer to the object that `object` points to. When the last copy of the new
/// pointer is destroyed, `object` is passed to releaseElsewhere().
template <typename Object>
[[nodiscard]] std::shared_ptr<Object> releasedElsewhere(std::shared_ptr<Object> object) {
    Object* const raw = object.get();
    return std::shared_ptr<Object>(
        raw, [owned = std::move(object)](Object*) mutable { releaseElsewhere(std::move(owned)); });
}

} // namespace sonarith::waiting
