// SPDX-License-Identifier: GPL-3.0-or-later
// Sets the shape of the mouse pointer over the program's windows. Interface only; it does not
// report the pointer's position.
#pragma once

namespace sonarith {

/// The two shapes that the logic uses.
enum class Pointer { normal, hourglass };

class MousePointer {
  public:
    virtual ~MousePointer() = default;
    virtual void set(Pointer pointer) = 0;
};

} // namespace sonarith
