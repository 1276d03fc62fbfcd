// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/x11_requests.h"

namespace sonarith {

AtomRequest::AtomRequest(xcb_connection_t* connection, std::string_view name)
    : connection_(connection),
      sent_(xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data())) {}

xcb_atom_t AtomRequest::reply() const {
    const ReplyPointer<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection_, sent_, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

int screenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    const bool known = xcb_parse_display(nullptr, &host, &display, &screen) != 0;
    std::free(host);
    return known ? screen : 0;
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int before = screenNumber(); before > 0 && screens.rem > 0; --before) {
        xcb_screen_next(&screens);
    }
    return screens.rem > 0 ? screens.data->root : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

std::vector<std::uint32_t> propertyOf(xcb_connection_t* connection, xcb_window_t window,
                                      xcb_atom_t name, std::uint32_t most) {
    const auto request =
        xcb_get_property(connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, most);
    const ReplyPointer<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, request, nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

} // namespace sonarith
