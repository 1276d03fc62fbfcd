// SPDX-License-Identifier: GPL-3.0-or-later
// Sets the shape of the mouse pointer over all windows of the program.
#pragma once

#include "platform/mouse_pointer.h"

namespace sonarith {

class QtMousePointer : public MousePointer {
  public:
    ~QtMousePointer() override;
    /// Setting the current shape again changes nothing.
    void set(Pointer pointer) override;

  private:
    Pointer shown_ = Pointer::normal;
};

} // namespace sonarith
