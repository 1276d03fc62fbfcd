// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/slider_view.h"

#include <algorithm>
#include <cmath>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QSignalBlocker>

namespace sonarith {
namespace {

/// A step of a cursor key is 2 % of the range, a page is 10 %. Qt moves three steps for one notch
/// of the wheel.
constexpr int stepsInRange = 50;
constexpr int pagesInRange = 10;

/// The accessible interface of a slider. It returns the slider's value on the user's scale.
/// Qt's own interface would return the widget's value, a large number that the user never sees.
class AccessibleSlider : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit AccessibleSlider(SliderView& view)
        : QAccessibleWidget(&view, QAccessible::Slider), view_(view) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QVariant currentValue() const override { return shown(view_.value()); }
    void setCurrentValue(const QVariant& value) override {
        const double part = value.toDouble() / view_.shownTop();
        view_.setValue(view_.minimum() + static_cast<int>(std::lround(part * range())));
    }
    [[nodiscard]] QVariant maximumValue() const override { return double(view_.shownTop()); }
    [[nodiscard]] QVariant minimumValue() const override { return 0.0; }
    [[nodiscard]] QVariant minimumStepSize() const override {
        return shown(view_.minimum() + view_.singleStep());
    }
    [[nodiscard]] QString text(QAccessible::Text which) const override {
        return which == QAccessible::Value ? QString::number(shown(view_.value()), 'f', 1)
                                           : QAccessibleWidget::text(which);
    }

  private:
    [[nodiscard]] double range() const { return view_.maximum() - view_.minimum(); }
    [[nodiscard]] double shown(int value) const {
        return range() > 0 ? (value - view_.minimum()) / range() * view_.shownTop() : 0;
    }

    SliderView& view_;
};

QAccessibleInterface* makeAccessibleSlider(const QString&, QObject* object) {
    auto* view = dynamic_cast<SliderView*>(object);
    return view ? new AccessibleSlider(*view) : nullptr;
}

} // namespace

SliderView::SpokenByScale::SpokenByScale() {
    QAccessible::installFactory(makeAccessibleSlider); // Qt ignores repeated calls
}

SliderView::SliderView(Slider& slider, QString label, Qt::Orientation orientation,
                       Greatest greatest, int shownTop, QWidget* parent)
    : QSlider(orientation, parent),
      slider_(slider),
      greatest_(greatest),
      shownTop_(shownTop),
      view_(slider, *this, {}, std::move(label), [this](Property which) {
          if (concerns(which, Property::value)) {
              showValue();
          }
      }) {
    const int range = slider_.maximum() - slider_.minimum();
    setSingleStep(std::max(1, range / stepsInRange));
    setPageStep(std::max(1, range / pagesInRange));
    connect(this, &QSlider::valueChanged, this, [this](int value) {
        slider_.moveTo(mirrored(value));
        // The handler may have set another value.
        showValue();
    });
}

int SliderView::mirrored(int value) const {
    return greatest_ == Greatest::topOrRight ? value
                                             : slider_.minimum() + slider_.maximum() - value;
}

void SliderView::showValue() {
    // Changes made here must emit no signal: the receivers take a signal for an action of the user.
    const QSignalBlocker quiet(this);
    setRange(slider_.minimum(), slider_.maximum());
    setValue(mirrored(slider_.value()));
}

} // namespace sonarith
