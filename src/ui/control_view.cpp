// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/control_view.h"

#include <chrono>
#include <utility>

#include "platform/qt/text.h"
#include "platform/qt/twips.h"
#include "ui/tool_tip.h"

namespace sonarith {
namespace {

/// The same interval as for the lists beside such a caption (list_box_model.h).
constexpr std::chrono::milliseconds captionPause{100};

} // namespace

QString accessibleNameOf(const std::string& caption, const std::string& toolTip,
                         const QString& label) {
    const QString name = toQString(caption).trimmed();
    if (!name.isEmpty()) {
        return toQString(caption);
    }
    return toolTip.empty() ? label : toQString(toolTip);
}

ControlView::ControlView(Control& control, QWidget& widget, std::function<std::string()> caption,
                         QString label, std::function<void(Property)> showMore, Placement placement,
                         Pace pace)
    : control_(control),
      widget_(widget),
      caption_(std::move(caption)),
      label_(std::move(label)),
      showMore_(std::move(showMore)),
      placement_(placement),
      changed_(control.changed.connect([this](Property which) { follow(which); })) {
    widget_.setObjectName(toQString(control_.name()));
    if (pace == Pace::limited) {
        pause_ = std::make_unique<QTimer>();
        pause_->setSingleShot(true);
        pause_->setInterval(captionPause);
        QObject::connect(pause_.get(), &QTimer::timeout, pause_.get(), [this] {
            if (std::exchange(captionWaits_, false)) {
                follow(Property::caption);
            }
        });
    }
    apply(Property::all);
}

void ControlView::follow(Property which) {
    if (which == Property::caption && pause_) {
        if (pause_->isActive()) {
            captionWaits_ = true;
            return;
        }
        pause_->start();
    }
    apply(which);
}

void ControlView::apply(Property which) {
    if (concerns(which, Property::caption, Property::toolTip)) {
        showName();
    }
    if (concerns(which, Property::toolTip)) {
        widget_.setToolTip(plainToolTip(toQString(control_.toolTip())));
    }
    if (concerns(which, Property::enabled)) {
        showEnabled();
    }
    if (concerns(which, Property::left, Property::top, Property::width, Property::height)) {
        showPlace();
    }
    if (showMore_) {
        showMore_(which);
    }
    if (concerns(which, Property::visible)) {
        widget_.setVisible(control_.visible());
    }
}

void ControlView::showName() {
    const std::string caption = caption_ ? caption_() : std::string();
    widget_.setAccessibleName(accessibleNameOf(caption, control_.toolTip(), label_));
}

/// A widget that is disabled loses the focus. When the widget is enabled again, it takes the focus
/// back unless the user has moved the focus. So a button that its own click handler disables and
/// enables can be pressed again by key.
void ControlView::showEnabled() {
    QWidget* const window = widget_.window();
    const bool hadFocus = window->focusWidget() == &widget_;
    widget_.setEnabled(control_.enabled());
    if (!control_.enabled()) {
        if (hadFocus) {
            focusMovedTo_ = window->focusWidget();
        }
        return;
    }
    if (focusMovedTo_ && focusMovedTo_ == window->focusWidget()) {
        widget_.setFocus();
    }
    focusMovedTo_.clear();
}

void ControlView::showPlace() {
    if (placement_ == Placement::byControl) {
        widget_.setGeometry(toPixels(control_.left()), toPixels(control_.top()),
                            toPixels(control_.width()), toPixels(control_.height()));
    }
}

} // namespace sonarith
