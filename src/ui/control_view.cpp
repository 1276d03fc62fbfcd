// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/control_view.h"

#include "platform/qt/text.h"
#include "platform/qt/twips.h"
#include "ui/tool_tip.h"

namespace sonarith {

QString accessibleNameOf(const std::string& caption, const std::string& toolTip,
                         const QString& label) {
    const QString name = toQString(caption).trimmed();
    if (!name.isEmpty()) {
        return toQString(caption);
    }
    return toolTip.empty() ? label : toQString(toolTip);
}

ControlView::ControlView(Control& control, QWidget& widget, std::function<std::string()> caption,
                         QString label, std::function<void(Property)> showMore, Placement placement)
    : control_(control),
      widget_(widget),
      caption_(std::move(caption)),
      label_(std::move(label)),
      showMore_(std::move(showMore)),
      placement_(placement),
      changed_(control.changed.connect([this](Property which) { apply(which); })) {
    widget_.setObjectName(toQString(control_.name()));
    apply(Property::all);
}

void ControlView::apply(Property which) {
    if (concerns(which, Property::caption, Property::toolTip)) {
        showName();
    }
    if (concerns(which, Property::toolTip)) {
        widget_.setToolTip(plainToolTip(toQString(control_.toolTip())));
    }
    if (concerns(which, Property::enabled)) {
        widget_.setEnabled(control_.enabled());
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

void ControlView::showPlace() {
    if (placement_ == Placement::byControl) {
        widget_.setGeometry(toPixels(control_.left()), toPixels(control_.top()),
                            toPixels(control_.width()), toPixels(control_.height()));
    }
}

} // namespace sonarith
