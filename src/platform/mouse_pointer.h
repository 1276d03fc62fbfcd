// SPDX-License-Identifier: GPL-3.0-or-later
// The shape of the mouse pointer over the program's windows. Interface only; it does not say where
// the pointer is.
#pragma once

namespace sonarith {

/// The two shapes that the logic asks for (the classic pointer numbers 0 and 11).
enum class Pointer { normal, hourglass };

class MousePointer {
  public:
    virtual ~MousePointer() = default;
    virtual void set(Pointer pointer) = 0;
};

} // namespace sonarith
