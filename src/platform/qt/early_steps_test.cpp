// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_steps.h"

#include <cstdlib>

#include <fontconfig/fontconfig.h>
#include <gmock/gmock.h>

#include "platform/background_work.h"
#include "support/private_bus.h"

namespace sonarith {
namespace {

using testing::ExitedWithCode;

TEST(ReadFontConfiguration, ReadsTheConfigurationThatFontconfigThenUses) {
    { const BackgroundWork reading(readFontConfiguration); }
    FcConfig* const read = FcConfigGetCurrent();
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(FcInit());
    EXPECT_EQ(FcConfigGetCurrent(), read);
}

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

TEST(ConnectToSessionBus, OpensOneConnectionAndQtThenOpensNoOther) {
    EXPECT_EXIT(exitWithNewConnections([] { const BackgroundWork bus(connectToSessionBus); }),
                ExitedWithCode(1), "");
    EXPECT_EXIT(exitWithNewConnections([] {
                    { const BackgroundWork bus(connectToSessionBus); }
                    static_cast<void>(QDBusConnection::sessionBus());
                }),
                ExitedWithCode(1), "");
}

} // namespace
} // namespace sonarith
