// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/silent_bus.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <systemd/sd-bus.h>

namespace sonarith {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

struct CloseBus {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;

} // namespace

bool sessionBusIsSilent(std::chrono::milliseconds limit) {
    // Qt ignores an empty address and uses the bus of the run-time folder. So must this function.
    if (const char* address = std::getenv(addressVariable); address && *address == '\0') {
        static_cast<void>(::unsetenv(addressVariable));
    }
    const Clock::time_point end = Clock::now() + limit;
    sd_bus* opened = nullptr;
    // This call does not wait. It fails with EAGAIN if the socket's queue of connections is full:
    // then the bus is silent.
    if (const int error = sd_bus_open_user(&opened); error < 0) {
        return error == -EAGAIN;
    }
    const Bus bus(opened);
    while (sd_bus_is_ready(bus.get()) == 0) {
        const int progress = sd_bus_process(bus.get(), nullptr);
        if (progress < 0) {
            return false;
        }
        if (progress > 0) {
            continue;
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()).count();
        if (left <= 0) {
            return true;
        }
        static_cast<void>(sd_bus_wait(bus.get(), static_cast<std::uint64_t>(left)));
    }
    return false;
}

void doWithoutSessionBus() {
    // The libraries for D-Bus know no transport named "disabled", so each connection fails at once.
    // With an empty address, they would look for a bus in other places.
    static_cast<void>(::setenv(addressVariable, "disabled:", 1));
}

} // namespace sonarith
