// SPDX-License-Identifier: GPL-3.0-or-later
// Starts threads, and reports by its result that the system cannot create one. All threads of the
// program start here; their owners decide what they run and how they end.
#pragma once

#include <functional>
#include <thread>

#include "platform/result.h"

namespace sonarith {

/// Thread-safe. Fails with deviceUnavailable if the system cannot create a thread: `body` is not
/// run then, and what it owns is destroyed before this returns. The caller joins or detaches the
/// thread.
[[nodiscard]] Result<std::thread> startThread(std::function<void()> body);

/// Starts a thread as `startThread` does; tests pass one that fails.
using ThreadStarter = std::function<Result<std::thread>(std::function<void()>)>;

} // namespace sonarith
