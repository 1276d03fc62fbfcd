// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/embedding_tray.h"

#include <cstdlib>
#include <string>

#include <QGuiApplication>

#include "platform/qt/x11_reply.h"

namespace sonarith {
namespace {

/// The number of the screen in DISPLAY, the only screen that Qt uses.
int screenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    const bool known = xcb_parse_display(nullptr, &host, &display, &screen) != 0;
    std::free(host);
    return known ? screen : 0;
}

xcb_atom_t traySelection(xcb_connection_t* connection) {
    const std::string name = "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber());
    return atomOf(connection, name);
}

} // namespace

bool embeddingTrayPresent() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection()) {
        return false;
    }
    static const xcb_atom_t selection = traySelection(x11->connection());
    const ReplyPointer<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        x11->connection(), xcb_get_selection_owner(x11->connection(), selection), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace sonarith
