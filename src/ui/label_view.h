// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the text of a Label. Shortens a text that does not fit, except with Cut::never.
#pragma once

#include <QLabel>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class LabelView : public QLabel {
  public:
    /// Where a text that is too long is shortened. With `never`, the view requests the full width
    /// of the text.
    enum class Cut { never, middle, end };

    /// `label` is the name of the view for screen readers while the control has neither a caption
    /// nor a tool tip.
    LabelView(Label& model, QString label, Cut cut, QWidget* parent, Pace pace = Pace::atOnce);

    /// Paints the text paler, so that it looks less important than other texts. Has no effect with
    /// Cut::never.
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
