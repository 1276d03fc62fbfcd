// SPDX-License-Identifier: GPL-3.0-or-later
// The properties that every widget shows of its control: name, visibility, enabled state, tool tip
// and accessible name. The view of each kind of control shows the others.
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

/// Whether a layout or the window places the widget, or the control's own position does.
enum class Placement { elsewhere, byControl };

/// How soon a new caption is shown. A limited one is shown at once after a pause, and then up to
/// 100 ms late, so that a caption that changes a thousand times a second is laid out, painted and
/// sent to screen readers a few times only.
enum class Pace { atOnce, limited };

/// Updates a widget when its control changes. A member of the widget's own class, or destroyed
/// before the widget.
class ControlView {
  public:
    /// `caption` returns the control's caption (empty: it has none). `label` names a control that
    /// has neither caption nor tool tip. `showMore` shows further properties; Property::all means
    /// every one.
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
    std::unique_ptr<QTimer> pause_; ///< of a limited pace: runs after each caption shown
    bool captionWaits_ = false;
    /// The widget to which Qt moved the focus when this one was disabled.
    QPointer<QWidget> focusMovedTo_;
    Connection changed_;
};

/// The caption, else the tool tip, else the label.
[[nodiscard]] QString accessibleNameOf(const std::string& caption, const std::string& toolTip,
                                       const QString& label);

} // namespace sonarith
