// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/tray_hosts.h"

#include <utility>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "platform/qt/embedding_tray.h"
#include "platform/qt/run_later.h"

namespace sonarith {
namespace {

// The watcher is the registry of status notifiers (StatusNotifierItem of freedesktop.org). The name
// below is the one that every desktop uses, and not the one that freedesktop.org defines.
constexpr QLatin1String watcherName("org.kde.StatusNotifierWatcher");
constexpr QLatin1String watcherPath("/StatusNotifierWatcher");

constexpr int pollMilliseconds = 1000;

/// How long a bus or a watcher may take to reply. On a busy machine a reply takes some 10 ms.
constexpr int patienceMilliseconds = 1000;

} // namespace

TrayHosts::Sources TrayHosts::desktop() {
    return {[] { return QDBusConnection::sessionBus(); }, embeddingTrayPresent};
}

TrayHosts::TrayHosts(Sources sources) : sources_(std::move(sources)) {
    recheck_.setSingleShot(true);
    recheck_.setInterval(0);
    connect(&recheck_, &QTimer::timeout, this, [this] { ask(); });
    poll_.setInterval(pollMilliseconds);
    connect(&poll_, &QTimer::timeout, this, [this] { checkEmbedding(); });
    patience_.setSingleShot(true);
    patience_.setInterval(patienceMilliseconds);
    connect(&patience_, &QTimer::timeout, this, [this] {
        if (!std::exchange(hangs_, true)) {
            changed.emit();
        }
    });
}

void TrayHosts::watchBus() {
    if (bus_) {
        return;
    }
    bus_ = sources_.bus();
    owner_ = std::make_unique<QDBusServiceWatcher>(watcherName, *bus_,
                                                   QDBusServiceWatcher::WatchForOwnerChange);
    connect(owner_.get(), &QDBusServiceWatcher::serviceOwnerChanged, &recheck_,
            [this](const QString& /*name*/, const QString& former, const QString& present) {
                followOwner(former, present);
            });
    // The signals are accepted from any sender: to select one sender, a query that waits for its
    // reply would be necessary.
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus_->connect(QString(), watcherPath, watcherName, QLatin1String(signal), &recheck_,
                      SLOT(start()));
    }
    // Qt sends this signal when the connection to the bus was closed.
    bus_->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                  QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                  &recheck_, SLOT(start()));
    ask();
}

void TrayHosts::followOwner(const QString& former, const QString& present) {
    recheck_.start();
    if (!former.isEmpty() && !present.isEmpty()) {
        runLater(*this, [this] { watcherReplaced.emit(); });
    }
}

void TrayHosts::requestReply() {
    if (!bus_) {
        watchBus();
    } else if (!replyPending_) {
        ask();
    }
}

void TrayHosts::ask() {
    const unsigned question = ++lastQuestion_;
    if (!bus_->isConnected()) {
        acceptReply(false);
        return;
    }
    replyPending_ = true;
    if (!patience_.isActive()) {
        patience_.start();
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    call << QString(watcherName) << QStringLiteral("IsStatusNotifierHostRegistered");
    call.setAutoStartService(false);
    auto* reply = new QDBusPendingCallWatcher(bus_->asyncCall(call), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, question] {
        reply->deleteLater();
        if (question != lastQuestion_) {
            return;
        }
        patience_.stop();
        const QDBusPendingReply<QDBusVariant> answer = *reply;
        const bool lost = answer.isError() && answer.error().type() == QDBusError::NoReply;
        const bool present = answer.isValid() && answer.value().variant().toBool();
        runLater(*this, [this, question, lost, present] {
            if (question != lastQuestion_) {
                return;
            }
            if (lost) {
                ask(); // a later reply to the lost query would be ignored
            } else {
                acceptReply(present);
            }
        });
    });
}

void TrayHosts::acceptReply(bool present) {
    replyPending_ = false;
    patience_.stop();
    const bool presenceChanged = std::exchange(statusNotifier_, present) != present;
    const bool hangEnded = std::exchange(hangs_, false);
    replied.emit();
    if (presenceChanged || hangEnded) {
        changed.emit();
    }
}

void TrayHosts::pollEmbedding(bool poll) {
    if (!poll) {
        poll_.stop();
    } else if (!poll_.isActive()) {
        embeddingSeen_ = embedding();
        poll_.start();
    }
}

void TrayHosts::checkEmbedding() {
    const bool present = embedding();
    if (std::exchange(embeddingSeen_, present) != present) {
        changed.emit();
    }
}

} // namespace sonarith
