// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/slider_view.h"

#include <algorithm>

#include <QSignalBlocker>

namespace sonarith {
namespace {

/// Percentages of the range: a key's step is 2 %, a page 10 %. One notch of the wheel is three
/// steps.
constexpr int stepsInRange = 50;
constexpr int pagesInRange = 10;

} // namespace

SliderView::SliderView(Slider& slider, QString label, Qt::Orientation orientation,
                       Greatest greatest, QWidget* parent)
    : QSlider(orientation, parent),
      slider_(slider),
      view_(slider, *this, {}, std::move(label), [this](Property which) {
          if (concerns(which, Property::value)) {
              showValue();
          }
      }) {
    const bool upsideDown = greatest == Greatest::bottomOrLeft;
    setInvertedAppearance(upsideDown);
    setInvertedControls(upsideDown);
    const int range = slider_.maximum() - slider_.minimum();
    setSingleStep(std::max(1, range / stepsInRange));
    setPageStep(std::max(1, range / pagesInRange));
    connect(this, &QSlider::valueChanged, this, [this](int value) {
        slider_.moveTo(value);
        // The handler may have set another value.
        showValue();
    });
}

void SliderView::showValue() {
    // Signals are for actions of the user only.
    const QSignalBlocker quiet(this);
    setRange(slider_.minimum(), slider_.maximum());
    setValue(slider_.value());
}

} // namespace sonarith
