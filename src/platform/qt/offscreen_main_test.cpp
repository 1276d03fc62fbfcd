// SPDX-License-Identifier: GPL-3.0-or-later
// The main function of the test program: the tests need a QApplication, but no display.
#include <QApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    // Death tests start the program again, because a forked process would share the event sources
    // of this process.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
