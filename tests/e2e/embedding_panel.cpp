// SPDX-License-Identifier: GPL-3.0-or-later
// A test panel, which embeds tray icons (freedesktop.org, System Tray Protocol 0.4). The icons are
// side by side from the screen's upper left corner to the right, each 24 pixels wide. After an icon
// has left, a new icon may cover another one. The panel prints "ready" when it has started. It
// prints "docked ID" when it has embedded the icon with the window number ID, and "left ID" when
// this window was destroyed. The panel runs until it is killed.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <xcb/xcb.h>

namespace {

constexpr std::uint16_t iconSide = 24;

struct Panel {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    xcb_window_t window = xcb_generate_id(connection);
    std::int16_t icons = 0;

    xcb_atom_t atom(const std::string& name) const {
        auto* reply = xcb_intern_atom_reply(
            connection,
            xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
            nullptr);
        const xcb_atom_t found = reply->atom;
        std::free(reply);
        return found;
    }

    void send(xcb_window_t to, xcb_atom_t type, std::uint32_t mask, std::uint32_t a,
              std::uint32_t b, std::uint32_t c, std::uint32_t d) const {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = to;
        event.type = type;
        const std::uint32_t data[] = {XCB_CURRENT_TIME, a, b, c, d};
        std::memcpy(event.data.data32, data, sizeof data);
        xcb_send_event(connection, 0, to, mask, reinterpret_cast<const char*>(&event));
        xcb_flush(connection);
    }

    void becomeTrayHost() {
        const std::uint32_t values[] = {screen->white_pixel, 1, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
                          4 * iconSide, iconSide, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          screen->root_visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(connection, window);
        const xcb_atom_t selection = atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(connection, window, selection, XCB_CURRENT_TIME);
        send(screen->root, atom("MANAGER"), XCB_EVENT_MASK_STRUCTURE_NOTIFY, selection, window, 0,
             0);
        std::puts("ready");
    }

    void dock(xcb_window_t icon) {
        const auto x = static_cast<std::int16_t>(icons++ * iconSide);
        xcb_reparent_window(connection, icon, window, x, 0);
        const std::uint32_t size[] = {iconSide, iconSide};
        xcb_configure_window(connection, icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             size);
        xcb_map_window(connection, icon);
        constexpr std::uint32_t embeddedNotify = 0;
        send(icon, atom("_XEMBED"), XCB_EVENT_MASK_NO_EVENT, embeddedNotify, 0, window, 0);
        std::printf("docked %u\n", icon);
    }

    void run() {
        const xcb_atom_t opcode = atom("_NET_SYSTEM_TRAY_OPCODE");
        while (auto* event = xcb_wait_for_event(connection)) {
            const int type = event->response_type & 0x7f;
            if (type == XCB_CLIENT_MESSAGE) {
                const auto& message = *reinterpret_cast<xcb_client_message_event_t*>(event);
                constexpr std::uint32_t requestDock = 0;
                if (message.type == opcode && message.data.data32[1] == requestDock) {
                    dock(message.data.data32[2]);
                }
            } else if (type == XCB_DESTROY_NOTIFY) {
                --icons;
                std::printf("left %u\n",
                            reinterpret_cast<xcb_destroy_notify_event_t*>(event)->window);
            }
            std::free(event);
        }
    }
};

} // namespace

int main() {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    Panel panel;
    panel.becomeTrayHost();
    panel.run();
}
