// SPDX-License-Identifier: GPL-3.0-or-later
// A mouse pointer that records every shape that was set.
#pragma once

#include <vector>

#include "platform/mouse_pointer.h"

namespace sonarith::test {

class FakeMousePointer final : public MousePointer {
  public:
    /// Oldest first; the last one is the current shape.
    std::vector<Pointer> shapes;

    void set(Pointer pointer) override { shapes.push_back(pointer); }
};

} // namespace sonarith::test
