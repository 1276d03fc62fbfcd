// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a Slider, vertical or horizontal. Moves by code are shown; moves by the user set the
// control.
#pragma once

#include <QSlider>

#include "platform/controls/slider.h"
#include "ui/control_view.h"

namespace sonarith {

/// The widget's own value increases upwards or to the right, and so do the filled part of its
/// groove, the effect of the keys, and the number that a screen reader reads. If the control's
/// highest value is at the other end, the value is mirrored.
class SliderView : public QSlider {
  public:
    /// The end with the control's highest value.
    enum class Greatest { topOrRight, bottomOrLeft };

    /// `shownTop`: the number that the user sees for the top or right end; the other end is 0.
    /// Screen readers use this scale.
    SliderView(Slider& slider, QString label, Qt::Orientation orientation, Greatest greatest,
               int shownTop, QWidget* parent);

    /// The user's scale.
    [[nodiscard]] int shownTop() const { return shownTop_; }

  private:
    void showValue();
    /// Converts a control's value to the widget's value, or back.
    [[nodiscard]] int mirrored(int value) const;

    /// Installs the factory for the accessible interface of each SliderView.
    struct SpokenByScale {
        SpokenByScale();
    };

    SpokenByScale spoken_; ///< before view_: setting the widget's name creates its interface
    Slider& slider_;
    const Greatest greatest_;
    const int shownTop_;
    ControlView view_;
};

} // namespace sonarith
