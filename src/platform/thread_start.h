// SPDX-License-Identifier: GPL-3.0-or-later
// Starts a thread, or returns an error if the system cannot create one. The program starts all of
// its threads through this function.
#pragma once

#include <functional>
#include <thread>

#include "platform/result.h"

namespace sonarith {

/// Thread-safe. The caller joins or detaches the thread. Fails with deviceUnavailable if the system
/// cannot create a thread. In this case `body` is not called, and the objects that it owns are
/// destroyed before this function returns.
[[nodiscard]] Result<std::thread> startThread(std::function<void()> body);

/// A function with the contract of startThread(). Tests pass a function that fails.
using ThreadStarter = std::function<Result<std::thread>(std::function<void()>)>;

} // namespace sonarith
