// SPDX-License-Identifier: GPL-3.0-or-later
// A mouse pointer that remembers every shape it was given.
#pragma once

#include <vector>

#include "platform/mouse_pointer.h"

namespace sonarith::test {

class FakeMousePointer final : public MousePointer {
  public:
    /// Oldest first; the last one is what stands now.
    std::vector<Pointer> shapes;

    void set(Pointer pointer) override { shapes.push_back(pointer); }
};

} // namespace sonarith::test
