// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Slider, vertical or horizontal. Moves by code are shown; moves by the user set the
// control.
#pragma once

#include <QSlider>

#include "platform/controls/slider.h"
#include "ui/control_view.h"

namespace sonarith {

class SliderView : public QSlider {
  public:
    /// The end with the highest value. Keys and wheel move the handle: up means up on the screen,
    /// whichever value that is.
    enum class Greatest { topOrRight, bottomOrLeft };

    SliderView(Slider& slider, QString label, Qt::Orientation orientation, Greatest greatest,
               QWidget* parent);

  private:
    void showValue();

    Slider& slider_;
    ControlView view_;
};

} // namespace sonarith
