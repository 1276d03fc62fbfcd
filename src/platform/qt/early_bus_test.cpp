// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_bus.h"

#include <cstdlib>

#include <gmock/gmock.h>

#include "support/limited_threads.h"
#include "support/private_bus.h"

namespace sonarith {
namespace {

using testing::ExitedWithCode;

/// Ends the process; its exit code is the number of connections to the session bus that `steps`
/// added. Each count needs a new process, because Qt connects only once per process.
template <typename Steps>
[[noreturn]] void exitWithNewConnections(Steps steps) {
    qsizetype added = 0;
    {
        test::PrivateBus users;
        qputenv("DBUS_SESSION_BUS_ADDRESS", users.address().toLatin1());
        const QDBusConnection watching = users.connect();
        const auto connections = [&] {
            return watching.interface()->registeredServiceNames().value().size();
        };
        const qsizetype before = connections();
        steps();
        added = connections() - before;
    }
    std::_Exit(static_cast<int>(added));
}

TEST(EarlyBus, OpensTheOnlyConnectionThatTheProgramUses) {
    EXPECT_EXIT(exitWithNewConnections([] { const EarlyBus bus; }), ExitedWithCode(1), "");
    EXPECT_EXIT(exitWithNewConnections([] {
                    { const EarlyBus bus; }
                    static_cast<void>(QDBusConnection::sessionBus());
                }),
                ExitedWithCode(1), "");
}

TEST(EarlyBus, LeavesConnectingToTheFirstUseOfTheBusIfNoThreadCanBeCreated) {
    const auto withoutThreads = [] {
        const fakes::LimitedThreads none(0);
        const EarlyBus bus(none.starter());
    };
    EXPECT_EXIT(exitWithNewConnections(withoutThreads), ExitedWithCode(0), "");
    EXPECT_EXIT(exitWithNewConnections([&] {
                    withoutThreads();
                    static_cast<void>(QDBusConnection::sessionBus());
                }),
                ExitedWithCode(1), "");
}

} // namespace
} // namespace sonarith
