// SPDX-License-Identifier: GPL-3.0-or-later
// Shows in a widget the properties that all controls have: name, visibility, enabled state and tool
// tip. With Placement::byControl, also shows position and size. Sets the accessible name of the
// widget. The view class of each kind of control shows the other properties.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <QPointer>
#include <QWidget>

#include "platform/controls/control.h"
#include "ui/limited_pace.h"

namespace sonarith {

/// Whether `changed` is one of the properties `shown`, or Property::all.
template <typename... Properties>
[[nodiscard]] constexpr bool concerns(Property changed, Properties... shown) {
    return changed == Property::all || ((changed == shown) || ...);
}

/// What determines the position and the size of the widget: a layout or the window (`elsewhere`),
/// or the control (`byControl`).
enum class Placement { elsewhere, byControl };

/// Which changes are shown at a limited pace. `atOnce`: none. `captions`: changes of the caption,
/// at most ten times a second. `positions`: changes of the position, at most 20 times a second. All
/// other changes are shown at once. The limit saves time, because each caption that is shown is
/// laid out, painted and sent to screen readers.
enum class Pace { atOnce, captions, positions };

/// Updates a widget when its control changes. This object must be destroyed before the widget.
/// That is the case if this object is a member of the widget's class.
class ControlView {
  public:
    /// `caption` returns the control's caption; the function is empty for a control without a
    /// caption. `label` names a control that has neither a caption nor a tool tip. `showMore` shows
    /// further properties of the control; its argument Property::all means every property.
    ControlView(Control& control, QWidget& widget, std::function<std::string()> caption,
                QString label, std::function<void(Property)> showMore = {},
                Placement placement = Placement::elsewhere, Pace pace = Pace::atOnce);

  private:
    void follow(Property which);
    void apply(Property which);
    void showName();
    void showEnabled();
    void showPlace();

    Control& control_;
    QWidget& widget_;
    std::function<std::string()> caption_;
    QString label_;
    std::function<void(Property)> showMore_;
    Placement placement_;
    std::optional<LimitedPace> captions_;  ///< for Pace::captions
    std::optional<LimitedPace> positions_; ///< for Pace::positions
    /// The widget to which Qt moved the focus when widget_ was disabled.
    QPointer<QWidget> focusMovedTo_;
    Connection changed_;
};

/// The caption; if that is blank, the tool tip; if that is empty, too, the label.
[[nodiscard]] QString accessibleNameOf(const std::string& caption, const std::string& toolTip,
                                       const QString& label);

} // namespace sonarith
