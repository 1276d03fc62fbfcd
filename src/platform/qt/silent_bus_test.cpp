// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/silent_bus.h"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

#include <QByteArray>
#include <QDBusConnection>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include "support/private_bus.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;

/// No test waits so long: the bus replies or fails at once.
constexpr auto longLimit = 60s;
constexpr auto shortLimit = 100ms;

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

/// The socket of a simulated bus. It accepts a connection only in refuse().
class BusSocket {
  public:
    BusSocket() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const sockaddr_un place = this->place();
        constexpr int oneWaiting = 0; // the kernel adds one to this number
        if (::bind(socket_, reinterpret_cast<const sockaddr*>(&place), sizeof(place)) != 0 ||
            ::listen(socket_, oneWaiting) != 0) {
            throw std::runtime_error("no socket");
        }
        const timeval patience{.tv_sec = 60, .tv_usec = 0}; // refuse() must not wait for ever
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
    }
    ~BusSocket() {
        ::close(client_);
        ::close(socket_);
    }
    BusSocket(const BusSocket&) = delete;
    BusSocket& operator=(const BusSocket&) = delete;

    [[nodiscard]] QString address() const { return "unix:path=" + path(); }
    [[nodiscard]] QString folder() const { return folder_.path(); }
    /// Takes the only place for a waiting connection.
    void fill() {
        client_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_un place = this->place();
        if (::connect(client_, reinterpret_cast<const sockaddr*>(&place), sizeof(place)) != 0) {
            throw std::runtime_error("no connection");
        }
    }
    /// Waits for a connection and closes it.
    void refuse() { ::close(::accept(socket_, nullptr, nullptr)); }

  private:
    [[nodiscard]] QString path() const { return folder_.filePath("bus"); }
    [[nodiscard]] sockaddr_un place() const {
        sockaddr_un place{};
        place.sun_family = AF_UNIX;
        path().toStdString().copy(place.sun_path, sizeof(place.sun_path) - 1);
        return place;
    }

    QTemporaryDir folder_;
    int socket_;
    int client_ = -1;
};

/// Restores the address of the session bus after each test.
class SessionBusTest : public testing::Test {
  protected:
    ~SessionBusTest() override {
        if (former_.isNull()) {
            qunsetenv(addressVariable);
        } else {
            qputenv(addressVariable, former_);
        }
    }

    static void setAddress(const QString& address) {
        qputenv(addressVariable, address.toLocal8Bit());
    }

  private:
    QByteArray former_ = qgetenv(addressVariable);
};

TEST_F(SessionBusTest, ABusThatRepliesIsNotSilent) {
    const test::PrivateBus bus;
    setAddress(bus.address());
    EXPECT_FALSE(sessionBusIsSilent(longLimit));
}

TEST_F(SessionBusTest, ABusThatHangsIsSilentAfterTheLimit) {
    test::PrivateBus bus;
    setAddress(bus.address());
    bus.freeze();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(sessionBusIsSilent(shortLimit));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, shortLimit);
    bus.thaw();
    EXPECT_FALSE(sessionBusIsSilent(longLimit));
}

TEST_F(SessionBusTest, ABusWhoseSocketIsFullIsSilent) {
    BusSocket socket;
    setAddress(socket.address());
    socket.fill();
    EXPECT_TRUE(sessionBusIsSilent(longLimit));
}

TEST_F(SessionBusTest, ABusThatClosesTheConnectionIsNotSilent) {
    BusSocket socket;
    setAddress(socket.address());
    const std::jthread bus([&] { socket.refuse(); });
    EXPECT_FALSE(sessionBusIsSilent(longLimit));
}

TEST_F(SessionBusTest, AMissingBusIsNotSilent) {
    for (const char* address : {"unix:path=/missing/bus", "disabled:", "invalid"}) {
        setAddress(address);
        EXPECT_FALSE(sessionBusIsSilent(longLimit)) << address;
    }
}

TEST_F(SessionBusTest, AnEmptyAddressMeansTheBusOfTheRuntimeFolder) {
    BusSocket socket;
    socket.fill();
    const QByteArray former = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", socket.folder().toLocal8Bit());
    setAddress("");
    const bool silent = sessionBusIsSilent(longLimit);
    if (former.isEmpty()) {
        qunsetenv("XDG_RUNTIME_DIR");
    } else {
        qputenv("XDG_RUNTIME_DIR", former);
    }
    EXPECT_TRUE(silent);
}

/// Ends the process. The exit code is 0 if Qt does not connect to the running session bus.
[[noreturn]] void exitAfterConnecting() {
    test::PrivateBus bus;
    qputenv(addressVariable, bus.address().toLocal8Bit());
    doWithoutSessionBus();
    const bool connected = QDBusConnection::sessionBus().isConnected();
    bus.kill();
    std::_Exit(connected ? 1 : 0);
}

TEST(DoWithoutSessionBus, MakesQtFindNoBus) {
    EXPECT_EXIT(exitAfterConnecting(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace sonarith
