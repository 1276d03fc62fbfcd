// SPDX-License-Identifier: GPL-3.0-or-later
// Protects the program's start from a session bus that hangs. Until the bus has accepted Qt's
// connection, Qt waits without a limit and shows no window.
#pragma once

#include <chrono>

namespace sonarith {

/// Whether the session bus is silent: it exists, but does not accept a connection within `limit`.
/// False if there is no bus, or if the bus refuses the connection: Qt's attempt then fails, too. On
/// a bus that replies, the call takes about 0.5 ms. Removes an empty address of the bus from the
/// environment. Call it before another thread runs.
[[nodiscard]] bool sessionBusIsSilent(std::chrono::milliseconds limit);

/// Makes this process and its children do without a session bus. Call it before Qt connects to the
/// bus, and before another thread runs, since it changes the environment.
void doWithoutSessionBus();

} // namespace sonarith
