// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_mouse_pointer.h"

#include <QCursor>
#include <QGuiApplication>
#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(QtMousePointer, ShowsTheHourglassUntilTheNormalPointerIsSet) {
    QtMousePointer pointer;
    pointer.set(Pointer::hourglass);
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    pointer.set(Pointer::normal);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(QtMousePointer, SettingTheNormalPointerOnceRemovesAnHourglassThatWasSetTwice) {
    QtMousePointer pointer;
    pointer.set(Pointer::hourglass);
    pointer.set(Pointer::hourglass);
    pointer.set(Pointer::normal);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(QtMousePointer, SettingTheNormalPointerWithoutAnHourglassKeepsACursorOfOtherCode) {
    QGuiApplication::setOverrideCursor(Qt::CrossCursor);
    QtMousePointer pointer;
    pointer.set(Pointer::normal);
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr)
        << "set() must not remove a cursor that other code has set";
    QGuiApplication::restoreOverrideCursor();
}

} // namespace
} // namespace sonarith
