// SPDX-License-Identifier: GPL-3.0-or-later
// What every widget shows of its control: name, visibility, whether it is open, tool tip and
// accessible name. What a kind of control shows beyond that is its own view's.
#pragma once

#include <functional>
#include <string>

#include <QWidget>

#include "platform/controls/control.h"

namespace sonarith {

/// Whether `changed` is one of the properties `shown`, or stands for all of them.
template <typename... Properties>
[[nodiscard]] constexpr bool concerns(Property changed, Properties... shown) {
    return changed == Property::all || ((changed == shown) || ...);
}

/// Whether a widget is placed by a layout or the window, or stands where its control says.
enum class Placement { elsewhere, byControl };

/// Keeps a widget in step with its control. A member of the widget's own class, or destroyed
/// before the widget.
class ControlView {
  public:
    /// `caption` returns the control's caption (empty: it has none). `label` is the name of a
    /// control that has neither caption nor tool tip. `showMore` shows what else the property that
    /// has changed stands for; Property::all stands for every one.
    ControlView(Control& control, QWidget& widget, std::function<std::string()> caption,
                QString label, std::function<void(Property)> showMore = {},
                Placement placement = Placement::elsewhere);

  private:
    void apply(Property which);
    void showName();
    void showPlace();

    Control& control_;
    QWidget& widget_;
    std::function<std::string()> caption_;
    QString label_;
    std::function<void(Property)> showMore_;
    Placement placement_;
    Connection changed_;
};

/// Its caption, or its tool tip where it has none, or its label.
[[nodiscard]] QString accessibleNameOf(const std::string& caption, const std::string& toolTip,
                                       const QString& label);

} // namespace sonarith
