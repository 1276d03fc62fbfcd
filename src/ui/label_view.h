// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Label as one line of text, shortened where it does not fit.
#pragma once

#include <QLabel>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class LabelView : public QLabel {
  public:
    /// Where a text that is too long is shortened. A text that is never shortened requests its full
    /// width.
    enum class Cut { never, middle, end };

    /// `label` is its name for screen readers while the caption is empty.
    LabelView(Label& model, QString label, Cut cut, QWidget* parent, Pace pace = Pace::atOnce);

    /// Paints the text paler, as secondary to the text beside it. Not for a text that is never
    /// shortened.
    void setSecondary();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void showCaption();
    void showToolTip();

    Label& model_;
    Cut cut_;
    bool secondary_ = false;
    ControlView view_;
};

} // namespace sonarith
