// SPDX-License-Identifier: GPL-3.0-or-later
// The properties that every widget shows of its control: name, visibility, enabled state, tool tip
// and accessible name. The view of each kind of control shows its other properties.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "platform/controls/control.h"

namespace sonarith {

/// Whether `changed` is one of the properties `shown`, or means all of them.
template <typename... Properties>
[[nodiscard]] constexpr bool concerns(Property changed, Properties... shown) {
    return changed == Property::all || ((changed == shown) || ...);
}

/// What places the widget: a layout or the window (`elsewhere`), or the control's own position.
enum class Placement { elsewhere, byControl };

/// How soon a new caption is shown. With a limited pace, a caption is shown at once if none was
/// shown for 100 ms, otherwise up to 100 ms late: a caption that changes a thousand times a second
/// is laid out, painted and sent to screen readers ten times a second.
enum class Pace { atOnce, limited };

/// Updates a widget when its control changes. It must be destroyed before the widget, for example
/// as a member of the widget's class.
class ControlView {
  public:
    /// `caption` returns the control's caption (empty: it has none). `label` names a control that
    /// has neither caption nor tool tip. `showMore` shows further properties; its argument
    /// Property::all means every property.
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
    std::unique_ptr<QTimer> pause_; ///< limited pace only: runs after each shown caption
    bool captionWaits_ = false;
    /// The widget to which Qt moved the focus when this one was disabled.
    QPointer<QWidget> focusMovedTo_;
    Connection changed_;
};

/// The caption, else the tool tip, else the label.
[[nodiscard]] QString accessibleNameOf(const std::string& caption, const std::string& toolTip,
                                       const QString& label);

} // namespace sonarith
