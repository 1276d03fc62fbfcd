// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Label as one line of text, cut where it does not fit.
#pragma once

#include <QLabel>

#include "platform/controls/basic_controls.h"
#include "ui/control_view.h"

namespace sonarith {

class LabelView : public QLabel {
  public:
    /// Where a text that is too long loses letters. One that is never cut asks for its full width.
    enum class Cut { never, middle, end };

    /// `label` names it for screen readers while its caption is empty.
    LabelView(Label& model, QString label, Cut cut, QWidget* parent);

    /// Paints its text paler, as what is second to the text beside it. Not for one that is never
    /// cut.
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
