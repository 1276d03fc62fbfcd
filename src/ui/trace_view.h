// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the lines that were drawn in a PictureBox. The lines are painted from their coordinates and
// not from a bitmap, so they are sharp at every scale. New lines repaint only the rectangle that
// encloses them, or the whole view if lines were drawn while the window was not on the screen.
#pragma once

#include <QColor>
#include <QRect>

#include "ui/limited_pace.h"
#include "ui/picture_view.h"

namespace sonarith {

class TraceView : public PictureView {
  public:
    struct Colors {
        QColor background;
        QColor line;
    };
    TraceView(PictureBox& model, QString label, const Colors& colors, QWidget* parent);

    /// The size of the control, plus the width of a line at the right and at the bottom.
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void showLine(const PictureLine& line);
    void repaintDrawn();

    PictureBox& model_;
    bool behind_ = false; ///< lines were drawn while the window was not on the screen
    Colors colors_;
    QRect drawn_; ///< encloses the lines that were drawn since the last repaint
    LimitedPace pace_;
    Connection lineDrawn_;
    Connection cleared_;
};

} // namespace sonarith
