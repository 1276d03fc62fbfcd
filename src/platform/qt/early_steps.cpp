// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/early_steps.h"

#include <QDBusConnection>
#include <QThread>
#include <fontconfig/fontconfig.h>
#include <sys/resource.h>

namespace sonarith {
namespace {

/// Added to the nice value of the thread that reads the font configuration. While this thread runs,
/// the main thread and the X server work in turn, mostly on another core. With the usual priority,
/// one of them often waits on the core of this thread for a whole time slice of 3 ms, while the
/// other core is idle. Measured on two cores: the program's start takes 1 ms less with 5 than with
/// 0, and 2 ms less with 8 to 19. But on a busy machine the main window waits for the fonts: with
/// two busy processes, 8 hardly delays the start, 12 delays it by 5 ms, 19 by 150 ms.
constexpr int niceIncrement = 8;

void carryOutSteps() {
    // A separate thread reads the font configuration, because a thread that has lowered its
    // priority cannot raise it again: Qt's thread for the bus, and a bus that Qt starts, would
    // inherit the low priority.
    { const BackgroundWork fonts(readFontConfiguration); }
    connectToSessionBus();
}

} // namespace

BackgroundWork startEarlySteps() {
    // Qt treats the first thread that uses an object of Qt as the main thread. So the calling
    // thread must use one before the thread of carryOutSteps() does.
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
