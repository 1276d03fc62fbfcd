// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the smart pointer that owns a reply of the X server, and a function that requests an
// atom. Other requests are sent by the files that need them.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace sonarith {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
/// Null after a failed request.
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

/// The atom with this name. Sends a request to the X server and waits for the reply. Returns
/// XCB_ATOM_NONE on failure.
[[nodiscard]] inline xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name) {
    const auto request =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, request, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace sonarith
