// SPDX-License-Identifier: GPL-3.0-or-later
// A picture, or a bar that holds other controls. Lines that are drawn on it stay until it is
// cleared. Colours are the view's.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls/control.h"
#include "platform/controls/mouse_buttons.h"

namespace sonarith {

/// A place on a picture, in twips from its upper left corner. It may lie outside: what is drawn
/// there is cut off.
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

    /// A press on the picture.
    Handler<MouseButtons> onMouseDown;
    /// The pointer moves over the picture, with these buttons down.
    Handler<MouseButtons> onMouseMove;

    /// Draws a line. Allocates only beyond the room that reserveLines() has made.
    void line(PicturePoint from, PicturePoint to) {
        lines_.push_back({from, to});
        lineDrawn.emit(lines_.back());
    }
    /// Takes all lines off.
    void clear() {
        lines_.clear();
        cleared.emit();
    }
    [[nodiscard]] const std::vector<PictureLine>& lines() const { return lines_; }
    /// Makes room for that many lines, once.
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
