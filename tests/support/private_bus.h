// SPDX-License-Identifier: GPL-3.0-or-later
// Starts a D-Bus message bus that only the test uses, and simulates on it the
// StatusNotifierWatcher, which the desktop's panel provides on the user's bus. The user's bus is
// not used. A host is a program that shows tray icons and is registered with the watcher.
//
//     PrivateBus bus;
//     NotifierWatcher watcher(bus);     // no host yet
//     watcher.setHost(true);
//     watcher.leave();
//     bus.freeze();
//     bus.thaw();
//     bus.kill();
//
// If there are two watchers, the second one is queued for the bus name and owns it as soon as the
// first watcher leaves.
#pragma once

#include <csignal>
#include <stdexcept>
#include <utility>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>
#include <sys/types.h>

namespace sonarith::test {

class PrivateBus {
  public:
    PrivateBus() {
        daemon_.setProcessChannelMode(QProcess::SeparateChannels);
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"),
                       QStringLiteral("--print-address=1")});
        while (daemon_.state() != QProcess::NotRunning && !daemon_.canReadLine()) {
            daemon_.waitForReadyRead(1000);
        }
        address_ = QString::fromLatin1(daemon_.readLine().trimmed());
        if (address_.isEmpty()) {
            throw std::runtime_error("no message bus");
        }
    }
    ~PrivateBus() {
        kill();
        for (const QString& name : names_) {
            QDBusConnection::disconnectFromBus(name);
        }
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] const QString& address() const { return address_; }
    /// Opens a new connection, which is not shared.
    [[nodiscard]] QDBusConnection connect() {
        static int count = 0;
        names_ += QStringLiteral("private-bus-%1").arg(++count);
        return QDBusConnection::connectToBus(address_, names_.back());
    }
    /// Suspends the bus: it accepts connections, but does not reply until thaw().
    void freeze() { signal(SIGSTOP); }
    void thaw() { signal(SIGCONT); }
    void kill() {
        daemon_.kill();
        daemon_.waitForFinished();
    }

  private:
    void signal(int number) {
        if (::kill(static_cast<pid_t>(daemon_.processId()), number) != 0) {
            throw std::runtime_error("the message bus is not running");
        }
    }

    QProcess daemon_;
    QString address_;
    QStringList names_;
};

class NotifierWatcher final : public QDBusVirtualObject {
  public:
    inline static const QString name = QStringLiteral("org.kde.StatusNotifierWatcher");
    inline static const QString path = QStringLiteral("/StatusNotifierWatcher");

    enum class Manner { answers, hangs };

    explicit NotifierWatcher(PrivateBus& bus, Manner manner = Manner::answers)
        : bus_(bus.connect()), manner_(manner) {
        bus_.registerVirtualObject(path, this);
        comeBack();
    }
    ~NotifierWatcher() override {
        leave();
        bus_.unregisterObject(path);
    }

    void setHost(bool present) {
        host_ = present;
        bus_.send(
            QDBusMessage::createSignal(path, name,
                                       present ? QStringLiteral("StatusNotifierHostRegistered")
                                               : QStringLiteral("StatusNotifierHostUnregistered")));
    }
    /// Simulates that the watcher's process has ended.
    void leave() { bus_.unregisterService(name); }
    void comeBack() {
        bus_.interface()->registerService(name, QDBusConnectionInterface::QueueService);
    }
    /// Ends a hang. Each query that arrived during the hang gets an error as its reply, as if the
    /// bus's time limit had passed.
    void wakeUpTooLate() {
        manner_ = Manner::answers;
        for (const QDBusMessage& question : std::exchange(unanswered_, {})) {
            bus_.send(question.createErrorReply(QDBusError::NoReply, QString()));
        }
    }
    /// Simulates that one of several hosts leaves.
    void loseOneOfSeveralHosts() {
        bus_.send(QDBusMessage::createSignal(path, name,
                                             QStringLiteral("StatusNotifierHostUnregistered")));
    }
    /// Ends a hang, and replies to the queries that arrived during the hang.
    void wakeUp() {
        manner_ = Manner::answers;
        for (const QDBusMessage& question : std::exchange(unanswered_, {})) {
            answer(question);
        }
    }
    [[nodiscard]] int questions() const { return questions_; }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override {
        if (message.member() != QLatin1String("Get")) {
            return false;
        }
        ++questions_;
        if (manner_ == Manner::hangs) {
            message.setDelayedReply(true);
            unanswered_ += message;
        } else {
            answer(message);
        }
        return true;
    }

  private:
    void answer(const QDBusMessage& question) {
        bus_.send(question.createReply(QVariant::fromValue(QDBusVariant(host_))));
    }

    QDBusConnection bus_;
    Manner manner_;
    QList<QDBusMessage> unanswered_;
    int questions_ = 0;
    bool host_ = false;
};

} // namespace sonarith::test
