// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_steps.h"

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include <fontconfig/fontconfig.h>
#include <gmock/gmock.h>
#include <sys/resource.h>

#include "platform/background_work.h"
#include "support/private_bus.h"

namespace sonarith {
namespace {

using testing::AnyOf;
using testing::ExitedWithCode;
using testing::Gt;

TEST(ReadFontConfiguration, ReadsTheConfigurationThatFontconfigThenUses) {
    { const BackgroundWork reading(readFontConfiguration); }
    FcConfig* const read = FcConfigGetCurrent();
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(FcInit());
    EXPECT_EQ(FcConfigGetCurrent(), read);
}

TEST(ReadFontConfiguration, LowersThePriorityOfItsThreadAndNoOther) {
    const int usual = ::getpriority(PRIO_PROCESS, 0);
    int lowered = usual;
    {
        const BackgroundWork reading([&] {
            readFontConfiguration();
            lowered = ::getpriority(PRIO_PROCESS, 0);
        });
    }
    constexpr int lowest = 19; // a greater number is a lower priority
    EXPECT_THAT(lowered, AnyOf(Gt(usual), lowest));
    EXPECT_EQ(::getpriority(PRIO_PROCESS, 0), usual);
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

TEST(StartEarlySteps, ConnectsToTheSessionBusOnce) {
    EXPECT_EXIT(exitWithNewConnections([] {
                    { const BackgroundWork steps = startEarlySteps(); }
                    static_cast<void>(QDBusConnection::sessionBus());
                }),
                ExitedWithCode(1), "");
}

/// Ends the process; its exit code is 0 if there is more than one thread and all threads have the
/// same priority.
[[noreturn]] void exitAfterComparingPriorities() {
    { const BackgroundWork steps = startEarlySteps(); }
    std::set<int> priorities;
    int threads = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        const int id = std::stoi(task.path().filename().string());
        priorities.insert(::getpriority(PRIO_PROCESS, static_cast<id_t>(id)));
        ++threads;
    }
    std::_Exit(threads > 1 && priorities.size() == 1 ? 0 : 1);
}

TEST(StartEarlySteps, DoesNotLowerThePriorityOfTheThreadThatQtUsesForTheBus) {
    EXPECT_EXIT(exitAfterComparingPriorities(), ExitedWithCode(0), "");
}

} // namespace
} // namespace sonarith
