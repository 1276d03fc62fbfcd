// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_steps.h"

#include <QDBusConnection>
#include <QThread>
#include <fontconfig/fontconfig.h>
#include <sys/resource.h>

namespace sonarith {
namespace {

/// Added to the nice value of the thread that reads the font configuration. With the usual
/// priority, the main thread or the X server often waits for the core of this thread. The wait
/// takes a time slice of 3 ms, while another core is idle. Measured on two cores: with 5, the
/// program's start takes 1 ms less than with 0; with 8 to 19, it takes 2 ms less. But on a busy
/// machine the main window waits for the fonts. With two busy processes, 8 hardly delays the start,
/// 12 delays it by 5 ms, 19 by 150 ms.
constexpr int niceIncrement = 8;

void carryOutSteps() {
    // A separate thread reads the font configuration, because a thread cannot raise its priority
    // again. Qt's thread for the bus, and a bus that Qt starts, would inherit the low priority.
    { const BackgroundWork fonts(readFontConfiguration); }
    connectToSessionBus();
}

} // namespace

BackgroundWork startEarlySteps() {
    // Qt treats the first thread that uses an object of Qt as the main thread. So the calling
    // thread must use an object of Qt before the thread of carryOutSteps() starts.
    static_cast<void>(QThread::currentThread());
    return BackgroundWork(carryOutSteps);
}

void readFontConfiguration() {
    // On Linux each thread has its own nice value. If the call fails, the program merely starts
    // later.
    const int now = ::getpriority(PRIO_PROCESS, 0);
    static_cast<void>(::setpriority(PRIO_PROCESS, 0, now + niceIncrement));
    // A failure is ignored here: Qt calls FcInit() again when it looks for fonts.
    static_cast<void>(FcInit());
}

void connectToSessionBus() {
    // A failure is ignored here: code that uses this connection checks it.
    static_cast<void>(QDBusConnection::sessionBus());
}

} // namespace sonarith
