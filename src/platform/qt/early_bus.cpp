// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_bus.h"

#include <utility>

#include <QDBusConnection>

namespace sonarith {

EarlyBus::EarlyBus(const ThreadStarter& starter) {
    Result<std::thread> connecting = starter([] {
        // A failure is ignored here: all code that uses the bus checks whether it is connected.
        static_cast<void>(QDBusConnection::sessionBus());
    });
    if (connecting.ok()) {
        connecting_ = std::move(connecting.value());
    }
}

EarlyBus::~EarlyBus() {
    if (connecting_.joinable()) {
        connecting_.join();
    }
}

} // namespace sonarith
