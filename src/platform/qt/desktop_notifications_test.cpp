// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/desktop_notifications.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

TEST(DesktopNotifications, TryAgainWithTheNextTextIfNoThreadCanBeCreated) {
    bool hasThreads = false;
    int asked = 0;
    // Uses no bus: the bodies of the threads are not run.
    DesktopNotifications notifications(
        QStringLiteral("Sonarith"), [&](const std::function<void()>&) -> Result<std::thread> {
            ++asked;
            if (!hasThreads) {
                return Error{ErrorNumber::deviceUnavailable, "no thread is left"};
            }
            return std::thread([] {});
        });
    EXPECT_EQ(asked, 0) << "no thread is needed before the first text";
    notifications.send(QStringLiteral("first"));
    notifications.send(QStringLiteral("second"));
    EXPECT_EQ(asked, 2);
    hasThreads = true;
    notifications.send(QStringLiteral("third"));
    notifications.send(QStringLiteral("fourth"));
    EXPECT_EQ(asked, 3) << "one thread sends all texts";
}

} // namespace
} // namespace sonarith
