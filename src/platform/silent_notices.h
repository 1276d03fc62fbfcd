// SPDX-License-Identifier: GPL-3.0-or-later
// An implementation of Notices that ignores all notices, for programs that show none.
#pragma once

#include "platform/notices.h"

namespace sonarith {

class SilentNotices final : public Notices {
  public:
    void report(Notice) override {}
    void settled(const std::string&, const std::string&) override {}
};

/// An instance that exists until the program ends.
inline SilentNotices& silentNotices() {
    static SilentNotices notices;
    return notices;
}

} // namespace sonarith
