// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Slider, upright or lying. Code's moves are shown; the user's are the control's.
#pragma once

#include <QSlider>

#include "platform/controls/slider.h"
#include "ui/control_view.h"

namespace sonarith {

class SliderView : public QSlider {
  public:
    /// The end at which the greatest value is. The keys and the wheel move the handle: up is up on
    /// the screen, whichever value that is.
    enum class Greatest { topOrRight, bottomOrLeft };

    SliderView(Slider& slider, QString label, Qt::Orientation orientation, Greatest greatest,
               QWidget* parent);

  private:
    void showValue();

    Slider& slider_;
    ControlView view_;
};

} // namespace sonarith
