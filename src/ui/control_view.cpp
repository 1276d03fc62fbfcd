// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/control_view.h"

#include <chrono>
#include <utility>

#include "platform/qt/text.h"
#include "platform/qt/twips.h"
#include "ui/tool_tip.h"

namespace sonarith {
namespace {

/// The interval of Pace::captions. Has the same value as `longWait` in list_box_model.cpp, the
/// interval of Gathered::changes.
constexpr std::chrono::milliseconds captionInterval{100};

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
    if (pace == Pace::captions) {
        captions_.emplace(captionInterval, [this] { apply(Property::caption); });
    }
    if (pace == Pace::positions) {
        positions_.emplace(pictureInterval, [this] { showPlace(); });
    }
    apply(Property::all);
}

void ControlView::follow(Property which) {
    if (which == Property::caption && captions_) {
        captions_->request();
    } else if ((which == Property::left || which == Property::top) && positions_) {
        positions_->request();
    } else {
        apply(which);
    }
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
    const QString name = accessibleNameOf(caption, control_.toolTip(), label_);
    if (name != widget_.accessibleName()) { // Qt would report an unchanged name as changed
        widget_.setAccessibleName(name);
    }
}

/// A widget that is disabled loses the focus. Usually Qt then moves the focus to another widget.
/// When the disabled widget is enabled again, it takes the focus back unless the user has moved the
/// focus in the meantime. So the user can press a button several times with the keyboard even if
/// the button's click handler disables and enables the button.
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
