// SPDX-License-Identifier: GPL-3.0-or-later
// Destroys an object whose end may block (a file on a server that is gone, a drive that is busy)
// on another thread.
#pragma once

#include <memory>

namespace sonarith::waiting {

/// Releases `object` on a thread of its own. For any thread; returns at once.
void releaseElsewhere(std::shared_ptr<const void> object);

/// The same object, whose last owner has it released elsewhere.
template <typename Object>
[[nodiscard]] std::shared_ptr<Object> releasedElsewhere(std::shared_ptr<Object> object) {
    Object* const raw = object.get();
    return std::shared_ptr<Object>(
        raw, [owned = std::move(object)](Object*) mutable { releaseElsewhere(std::move(owned)); });
}

} // namespace sonarith::waiting
