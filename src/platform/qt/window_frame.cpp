// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/window_frame.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <thread>
#include <vector>

#include <QGuiApplication>
#include <QWindow>

#include "platform/qt/x11_requests.h"

namespace sonarith {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds longestWait{200};
constexpr std::chrono::milliseconds pause{1};

struct Atoms {
    xcb_atom_t supported;
    xcb_atom_t request;
    xcb_atom_t extents;
};

/// All requests are sent before the first reply is read: one wait instead of three.
Atoms readAtoms(xcb_connection_t* connection) {
    const AtomRequest supported(connection, "_NET_SUPPORTED");
    const AtomRequest request(connection, "_NET_REQUEST_FRAME_EXTENTS");
    const AtomRequest extents(connection, "_NET_FRAME_EXTENTS");
    return {supported.reply(), request.reply(), extents.reply()};
}

/// Whether the window manager supports _NET_REQUEST_FRAME_EXTENTS, according to its _NET_SUPPORTED.
bool isSupported(xcb_connection_t* connection, xcb_window_t root, const Atoms& atoms) {
    // More than the number of atoms that the standard (see window_frame.h) defines for this list.
    constexpr std::uint32_t most = 1024;
    const std::vector<std::uint32_t> supported =
        propertyOf(connection, root, atoms.supported, most);
    return std::find(supported.begin(), supported.end(), atoms.request) != supported.end();
}

void sendRequest(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window,
                 const Atoms& atoms) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atoms.request;
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

/// The widths of the frame's edges: left, right, top and bottom, in this order; empty if the window
/// manager does not reply in time.
std::vector<std::uint32_t> waitForExtents(xcb_connection_t* connection, xcb_window_t window,
                                          const Atoms& atoms) {
    constexpr std::uint32_t edges = 4;
    const auto end = steady_clock::now() + longestWait;
    while (steady_clock::now() < end) {
        std::vector<std::uint32_t> extents = propertyOf(connection, window, atoms.extents, edges);
        if (extents.size() == edges) {
            return extents;
        }
        std::this_thread::sleep_for(pause);
    }
    return {};
}

} // namespace

QSize expectedFrame() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection()) {
        return {0, 0};
    }
    xcb_connection_t* connection = x11->connection();
    const xcb_window_t root = rootWindow(connection);
    const Atoms atoms = readAtoms(connection);
    if (!isSupported(connection, root, atoms)) {
        return {0, 0};
    }
    // This window is never shown. The window manager replies with the frame that it would add.
    QWindow window;
    window.create();
    const auto id = static_cast<xcb_window_t>(window.winId());
    sendRequest(connection, root, id, atoms);
    const std::vector<std::uint32_t> extents = waitForExtents(connection, id, atoms);
    if (extents.empty()) {
        return {0, 0};
    }
    const auto width = extents[0] + extents[1];
    const auto height = extents[2] + extents[3];
    return (QSizeF(width, height) / window.devicePixelRatio()).toSize();
}

} // namespace sonarith
