// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/control_view.h"

#include "platform/qt/text.h"
#include "platform/qt/twips.h"
#include "ui/tool_tip.h"

namespace sonarith {

QString accessibleNameOf(const std::string& caption, const std::string& toolTip,
                         const QString& label) {
    const QString spoken = toQString(caption).trimmed();
    if (!spoken.isEmpty()) {
        return toQString(caption);
    }
    return toolTip.empty() ? label : toQString(toolTip);
}

ControlView::ControlView(Control& control, QWidget& widget, std::function<std::string()> caption,
                         QString label, std::function<void()> showMore, Placement placement)
    : control_(control),
      widget_(widget),
      caption_(std::move(caption)),
      label_(std::move(label)),
      showMore_(std::move(showMore)),
      placement_(placement),
      changed_(control.changed.connect([this] { reflect(); })) {
    widget_.setObjectName(toQString(control_.name()));
    reflect();
}

void ControlView::reflect() {
    const std::string caption = caption_ ? caption_() : std::string();
    widget_.setAccessibleName(accessibleNameOf(caption, control_.toolTip(), label_));
    widget_.setToolTip(plainToolTip(toQString(control_.toolTip())));
    widget_.setEnabled(control_.enabled());
    if (placement_ == Placement::byControl) {
        widget_.setGeometry(toPixels(control_.left()), toPixels(control_.top()),
                            toPixels(control_.width()), toPixels(control_.height()));
    }
    if (showMore_) {
        showMore_();
    }
    widget_.setVisible(control_.visible());
}

} // namespace sonarith
