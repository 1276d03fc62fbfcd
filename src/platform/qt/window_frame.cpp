// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/window_frame.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <thread>

#include <QGuiApplication>
#include <QWindow>

#include "platform/qt/x11_reply.h"

namespace sonarith {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds longestWait{200};
constexpr std::chrono::milliseconds pause{1};
/// The widths of the frame's edges: left, right, top and bottom, in this order.
using Extents = std::array<std::uint32_t, 4>;

class FrameRequest {
  public:
    FrameRequest(xcb_connection_t* connection, xcb_window_t window)
        : connection_(connection),
          window_(window),
          request_(atomOf(connection, "_NET_REQUEST_FRAME_EXTENTS")),
          extents_(atomOf(connection, "_NET_FRAME_EXTENTS")) {}

    /// Whether the window manager lists the request among the supported ones.
    [[nodiscard]] bool supported() const {
        // In units of 32 bits: more than the number of atoms that the standard defines.
        constexpr std::uint32_t most = 1024;
        const auto reply = property(root(), atomOf(connection_, "_NET_SUPPORTED"), most);
        if (!reply || reply->format != 32) {
            return false;
        }
        const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
        const auto* last = first + reply->value_len;
        return std::find(first, last, request_) != last;
    }
    void send() const {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window_;
        message.type = request_;
        xcb_send_event(connection_, 0, root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(connection_);
    }
    [[nodiscard]] std::optional<Extents> reply() const {
        Extents found{};
        const auto reply = property(window_, extents_, found.size());
        if (!reply || reply->format != 32 || reply->value_len != found.size()) {
            return std::nullopt;
        }
        const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        std::copy_n(first, found.size(), found.begin());
        return found;
    }

  private:
    [[nodiscard]] xcb_window_t root() const {
        const ReplyPointer<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window_), nullptr));
        return tree ? tree->root : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    }
    [[nodiscard]] ReplyPointer<xcb_get_property_reply_t>
    property(xcb_window_t window, xcb_atom_t name, std::uint32_t most) const {
        const auto request =
            xcb_get_property(connection_, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, most);
        return ReplyPointer<xcb_get_property_reply_t>(
            xcb_get_property_reply(connection_, request, nullptr));
    }

    xcb_connection_t* connection_;
    xcb_window_t window_;
    xcb_atom_t request_;
    xcb_atom_t extents_;
};

} // namespace

QSize expectedFrame() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection()) {
        return {0, 0};
    }
    // This window is never shown. The window manager replies with the frame of a normal window.
    QWindow window;
    window.create();
    const FrameRequest request(x11->connection(), static_cast<xcb_window_t>(window.winId()));
    if (!request.supported()) {
        return {0, 0};
    }
    request.send();
    std::optional<Extents> extents = request.reply();
    for (const auto end = steady_clock::now() + longestWait; !extents && steady_clock::now() < end;
         extents = request.reply()) {
        std::this_thread::sleep_for(pause);
    }
    if (!extents) {
        return {0, 0};
    }
    const auto [left, right, top, bottom] = *extents;
    return (QSizeF(left + right, top + bottom) / window.devicePixelRatio()).toSize();
}

} // namespace sonarith
