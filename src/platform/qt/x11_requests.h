// SPDX-License-Identifier: GPL-3.0-or-later
// Requests to the X server for which Qt has no functions: atoms, properties and the root window. A
// request fails if the X server replies with an error or the connection is lost.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace sonarith {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
/// Null after a failed request.
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

/// Asks the X server for the atom of a name. The constructor makes the request, so that several
/// requests can be made before the first reply() waits for the server.
class AtomRequest {
  public:
    AtomRequest(xcb_connection_t* connection, std::string_view name);
    /// Waits for the reply. To be called once. Returns XCB_ATOM_NONE on failure.
    [[nodiscard]] xcb_atom_t reply() const;

  private:
    xcb_connection_t* connection_;
    xcb_intern_atom_cookie_t sent_;
};

/// The number of the screen that the environment variable DISPLAY names; 0 if it names none. Qt
/// uses no other screen.
[[nodiscard]] int screenNumber();

/// The root window of the screen with the number screenNumber(); XCB_WINDOW_NONE if the server has
/// no such screen.
[[nodiscard]] xcb_window_t rootWindow(xcb_connection_t* connection);

/// At most `most` values of a property, from its first value on. Empty if the request fails, the
/// window has no such property, or its values do not have 32 bits.
[[nodiscard]] std::vector<std::uint32_t>
propertyOf(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name, std::uint32_t most);

} // namespace sonarith
