// SPDX-License-Identifier: GPL-3.0-or-later
// The main function of the test program: the tests need a QApplication and no display. The desktop
// of the tests has two screens side by side. The top left corner of the desktop is not on the
// primary screen.
#include <QApplication>
#include <QTemporaryFile>
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    QTemporaryFile screens;
    if (!screens.open()) {
        return 1;
    }
    // The screen "main" becomes the primary screen: it is the first in this list and the first in
    // the order of the names.
    screens.write(R"({"screens": [
        {"name": "main", "x": 800, "y": 100, "width": 1000, "height": 700},
        {"name": "spare", "x": 0, "y": 0, "width": 800, "height": 800}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toUtf8());
    testing::InitGoogleMock(&argc, argv);
    // Death tests start the program again, because a forked process would share the event sources
    // of this process.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
