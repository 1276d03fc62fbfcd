// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/desktop_notifications.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

namespace sonarith {

struct DesktopNotifications::Mailbox {
    std::mutex mutex;
    std::condition_variable changed;
    std::optional<QString> text;
    bool ended = false;
    bool threadRuns = false;
    QString title;

    void deliver();
};

namespace {

void notify(const QDBusConnection& bus, const QString& title, const QString& text) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    constexpr uint replacesNone = 0;
    constexpr int desktopsOwnTime = -1;
    // The notification service may interpret the body as markup, so the text, which may contain
    // file names, is escaped.
    call << title << replacesNone << QStringLiteral("sonarith") << title << text.toHtmlEscaped()
         << QStringList() << QVariantMap() << desktopsOwnTime;
    bus.call(call);
}

} // namespace

void DesktopNotifications::Mailbox::deliver() {
    const QString name = QStringLiteral("sonarith-notifications");
    const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    std::unique_lock lock(mutex);
    while (!ended) {
        if (!text) {
            changed.wait(lock);
            continue;
        }
        const QString next = *std::exchange(text, std::nullopt);
        lock.unlock();
        notify(bus, title, next);
        lock.lock();
    }
    lock.unlock();
    QDBusConnection::disconnectFromBus(name);
}

DesktopNotifications::DesktopNotifications(QString title, ThreadStarter starter)
    : starter_(std::move(starter)), mailbox_(std::make_shared<Mailbox>()) {
    mailbox_->title = std::move(title);
}

DesktopNotifications::~DesktopNotifications() {
    const std::lock_guard lock(mailbox_->mutex);
    mailbox_->ended = true;
    mailbox_->changed.notify_all();
}

void DesktopNotifications::send(const QString& text) {
    const std::lock_guard lock(mailbox_->mutex);
    mailbox_->text = text;
    mailbox_->changed.notify_all();
    if (mailbox_->threadRuns) {
        return;
    }
    Result<std::thread> thread = starter_([mailbox = mailbox_] { mailbox->deliver(); });
    if (thread.ok()) {
        thread.value().detach();
        mailbox_->threadRuns = true;
    }
}

} // namespace sonarith
