// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/end_requests.h"

#include <csignal>

#include <QGuiApplication>
#include <QSessionManager>
#include <gmock/gmock.h>

#include "platform/qt/qt_event_loop.h"

namespace sonarith {
namespace {

using testing::KilledBySignal;

class EndRequestsTest : public testing::TestWithParam<int> {
  protected:
    QtEventLoop loop;
    int ends = 0;
    int saves = 0;
    std::function<void()> end = [this] {
        ++ends;
    };
    std::function<void()> save = [this] {
        ++saves;
    };
};

TEST_P(EndRequestsTest, RunTheEndFunctionWithinTheEventLoop) {
    const EndRequests requests(end, save);
    ::raise(GetParam());
    EXPECT_EQ(ends, 0);
    loop.waitWhile([&] { return ends == 0; });
    loop.yield();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(saves, 0);
}

TEST_P(EndRequestsTest, LetTheSameSignalEndTheProcessTheSecondTime) {
    const EndRequests requests(end, save);
    EXPECT_EXIT(
        {
            ::raise(GetParam());
            ::raise(GetParam());
        },
        KilledBySignal(GetParam()), "");
}

TEST_P(EndRequestsTest, RestoreTheDefaultActionOfTheSignalsWhenDestroyed) {
    { const EndRequests requests(end, save); }
    EXPECT_EXIT(::raise(GetParam()), KilledBySignal(GetParam()), "");
}

INSTANTIATE_TEST_SUITE_P(Signals, EndRequestsTest, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(EndRequestsTest, LeaveAnIgnoredSignalIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    {
        const EndRequests requests(end, save);
        ::raise(SIGHUP);
        loop.yield();
        EXPECT_EQ(ends, 0);
    }
    std::signal(SIGHUP, SIG_DFL);
}

TEST_F(EndRequestsTest, RunOnlyTheSaveFunctionWhenTheSessionManagerAsksToSave) {
    const EndRequests requests(end, save);
    // No session manager runs here. The handler of Qt's signal ignores its argument, so the
    // argument need not be a real object.
    alignas(QSessionManager) char memory[sizeof(QSessionManager)];
    Q_EMIT qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(memory));
    EXPECT_EQ(saves, 1);
    EXPECT_EQ(ends, 0);
}

} // namespace
} // namespace sonarith
