// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/desktop_notifications.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(DesktopNotifications, TryToStartTheirThreadAtEachTextUntilTheThreadRuns) {
    bool hasThreads = false;
    int starts = 0;
    // The starter does not run the function that it receives, so nothing is sent to a bus.
    DesktopNotifications notifications(
        QStringLiteral("Sonarith"), [&](const std::function<void()>&) -> Result<std::thread> {
            ++starts;
            if (!hasThreads) {
                return Error{ErrorNumber::deviceUnavailable, "no more threads can be started"};
            }
            return std::thread([] {});
        });
    EXPECT_EQ(starts, 0) << "no thread may be started before the first text";
    notifications.send(QStringLiteral("first"));
    notifications.send(QStringLiteral("second"));
    EXPECT_EQ(starts, 2);
    hasThreads = true;
    notifications.send(QStringLiteral("third"));
    notifications.send(QStringLiteral("fourth"));
    EXPECT_EQ(starts, 3) << "no second thread may be started: one thread sends all texts";
}

} // namespace
} // namespace sonarith
