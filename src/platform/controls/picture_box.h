// SPDX-License-Identifier: GPL-3.0-or-later
// The model of a picture box: a picture, or a bar that contains other controls. Drawn lines stay
// until they are cleared. The view chooses the colours.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"
#include "platform/controls/mouse_buttons.h"

namespace sonarith {

/// A position on a picture, in twips from its upper left corner. The position may be outside the
/// picture, because lines are clipped at the edge of the picture.
struct PicturePoint {
    double x = 0;
    double y = 0;
    bool operator==(const PicturePoint&) const = default;
};

struct PictureLine {
    PicturePoint from;
    PicturePoint to;
    bool operator==(const PictureLine&) const = default;
};

class PictureBox : public Control {
  public:
    using Control::Control;

    /// A mouse button was pressed on the picture. The argument is that button.
    Handler<MouseButtons> onMouseDown;
    /// The pointer moves over the picture. The argument is the set of buttons that are down.
    Handler<MouseButtons> onMouseMove;

    /// Draws a line. Allocates only when the capacity set by reserveLines() is exceeded.
    void line(PicturePoint from, PicturePoint to) {
        lines_.push_back({from, to});
        lineDrawn.emit(lines_.back());
    }
    /// Removes all lines.
    void clear() {
        lines_.clear();
        cleared.emit();
    }
    [[nodiscard]] const std::vector<PictureLine>& lines() const { return lines_; }
    /// Reserves capacity for `count` lines.
    void reserveLines(std::size_t count) { lines_.reserve(count); }

    Signal<PictureLine> lineDrawn;
    Signal<> cleared;

  protected:
    void atLoad() override {
        clear();
        Control::atLoad();
    }

  private:
    std::vector<PictureLine> lines_;
};

} // namespace sonarith
