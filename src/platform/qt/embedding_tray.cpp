// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/embedding_tray.h"

#include <string>

#include <QGuiApplication>

#include "platform/qt/x11_requests.h"

namespace sonarith {
namespace {

xcb_atom_t traySelection(xcb_connection_t* connection) {
    const std::string name = "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber());
    return AtomRequest(connection, name).reply();
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
