// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the lines of a PictureBox. The lines are painted from the model, so they are sharp at every
// scale. A new line repaints only its own rectangle.
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
