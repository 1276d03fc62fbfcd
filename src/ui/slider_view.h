// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Slider, vertical or horizontal. Moves by code are shown; moves by the user set the
// control.
#pragma once

#include <QSlider>

#include "platform/controls/slider.h"
#include "ui/control_view.h"

namespace sonarith {

/// The widget's own value grows upwards or to the right, as do its groove's fill, the keys, and
/// what a screen reader reads; where the control's highest value is at the other end, it is
/// mirrored.
class SliderView : public QSlider {
  public:
    /// The end with the control's highest value.
    enum class Greatest { topOrRight, bottomOrLeft };

    /// `shownTop`: the number that stands for the top or right end where the user reads one, with 0
    /// for the other end; it is the scale for screen readers.
    SliderView(Slider& slider, QString label, Qt::Orientation orientation, Greatest greatest,
               int shownTop, QWidget* parent);

    /// The user's scale.
    [[nodiscard]] int shownTop() const { return shownTop_; }

  private:
    void showValue();
    /// The widget's value of a control's value, and the other way round.
    [[nodiscard]] int mirrored(int value) const;

    /// Makes Qt ask this file for the interface of each SliderView.
    struct SpokenByScale {
        SpokenByScale();
    };

    SpokenByScale spoken_; ///< before view_, which names the widget: its interface is made then
    Slider& slider_;
    const Greatest greatest_;
    const int shownTop_;
    ControlView view_;
};

} // namespace sonarith
