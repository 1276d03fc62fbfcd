// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/end_requests.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include <QGuiApplication>
#include <QSessionManager>

namespace sonarith {

namespace {

constexpr std::array endSignals = {SIGTERM, SIGINT, SIGHUP};

const QLatin1String notifierName("end request");

/// The write end of the pipe through which the signal handler notifies the event loop; -1 if there
/// is no pipe.
volatile std::sig_atomic_t writeEnd = -1;

void notifyEventLoop(int) {
    const int kept = errno;
    const char byte = 0;
    // If the pipe is full, the event loop is already notified.
    [[maybe_unused]] const ssize_t written = ::write(static_cast<int>(writeEnd), &byte, 1);
    errno = kept;
}

bool isIgnored(int signal) {
    struct sigaction present {};
    return ::sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

void setHandler(int signal, void (*handler)(int), int flags) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    ::sigaction(signal, &action, nullptr);
}

void swallow(int readEnd) {
    char bytes[16];
    while (::read(readEnd, bytes, sizeof bytes) > 0) {
    }
}

} // namespace

bool isEndRequest(const QObject& notifier) {
    return notifier.objectName() == notifierName;
}

EndRequests::EndRequests(std::function<void()> end, std::function<void()> save) {
    sessionEnds_ = QObject::connect(
        qGuiApp, &QGuiApplication::commitDataRequest, qGuiApp,
        [save = std::move(save)](QSessionManager&) { save(); }, Qt::DirectConnection);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // signals then end the process by default
    }
    readEnd_ = ends[0];
    writeEnd = ends[1];
    arrived_ = std::make_unique<QSocketNotifier>(readEnd_, QSocketNotifier::Read);
    arrived_->setObjectName(notifierName);
    QObject::connect(arrived_.get(), &QSocketNotifier::activated, arrived_.get(),
                     [readEnd = readEnd_, end = std::move(end)] {
                         swallow(readEnd);
                         end();
                     });
    for (const int signal : endSignals) {
        if (!isIgnored(signal)) {
            setHandler(signal, notifyEventLoop, SA_RESETHAND | SA_RESTART);
        }
    }
}

EndRequests::~EndRequests() {
    QObject::disconnect(sessionEnds_);
    if (readEnd_ < 0) {
        return;
    }
    for (const int signal : endSignals) {
        if (!isIgnored(signal)) {
            setHandler(signal, SIG_DFL, 0);
        }
    }
    arrived_.reset();
    ::close(static_cast<int>(writeEnd));
    writeEnd = -1;
    ::close(readEnd_);
}

} // namespace sonarith
