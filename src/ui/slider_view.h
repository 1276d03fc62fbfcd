// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Slider, vertically or horizontally. A new value of the control moves the handle; a move
// of the handle by the user changes the control's value.
#pragma once

#include <QSlider>

#include "platform/controls/slider.h"
#include "ui/control_view.h"

namespace sonarith {

/// The widget's value always increases upwards or to the right, because it determines the filled
/// part of the groove, the direction in which a key moves the handle, and the number that a screen
/// reader reads. If the control's highest value is at the bottom or at the left, the widget's value
/// is the mirrored value of the control.
class SliderView : public QSlider {
  public:
    /// The end of the slider at which the control has its highest value.
    enum class Greatest { topOrRight, bottomOrLeft };

    /// `shownTop` is the number that the user sees for the top or right end; the number for the
    /// other end is 0. Screen readers read a number on this scale.
    SliderView(Slider& slider, QString label, Qt::Orientation orientation, Greatest greatest,
               int shownTop, QWidget* parent);

    /// The number that the user sees for the top or right end.
    [[nodiscard]] int shownTop() const { return shownTop_; }

  private:
    void showValue();
    /// Converts a control's value to the widget's value, or back.
    [[nodiscard]] int mirrored(int value) const;

    /// Installs the factory for the accessible interface of each SliderView.
    struct SpokenByScale {
        SpokenByScale();
    };

    /// Declared before view_, because view_ creates the interface when it sets the widget's name.
    SpokenByScale spoken_;
    Slider& slider_;
    const Greatest greatest_;
    const int shownTop_;
    ControlView view_;
};

} // namespace sonarith
