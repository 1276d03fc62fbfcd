// SPDX-License-Identifier: GPL-3.0-or-later
// Shows MenuItem models as the desktop's menus: captions (which are constant), ticks, enabled or
// disabled entries, separators, and the step that runs before a menu opens. popup_menus.h opens
// menus at the pointer.
#pragma once

#include <unordered_map>
#include <vector>

#include <QMenu>
#include <QMenuBar>

#include "platform/controls/menu_item.h"

namespace sonarith {

/// One entry or heading, connected to its action; a child of the action.
class MenuItemView : public QObject {
  public:
    /// `ticks`: whether the entry shows a tick box. An entry that is ticked later shows it from
    /// then on.
    enum class Ticks { no, yes };
    MenuItemView(MenuItem& model, QAction& action, Ticks ticks);

  private:
    void apply(Property which);
    void showTick();

    MenuItem& model_;
    QAction& action_;
    Connection changed_;
};

/// The menus of headings.
using MenusOfHeadings = std::unordered_map<const MenuItem*, QMenu*>;

/// Creates the menu of a heading, a child of `parent`, and its submenus, and adds each to `made`.
/// The heading must outlive them.
QMenu& makeMenu(MenuItem& heading, QWidget& parent, MenusOfHeadings& made);

/// The menu bar at the top of a window; F10 moves the keyboard focus to it.
class MenuBarView : public QMenuBar {
  public:
    /// `parent` is the window that gets the menu bar.
    MenuBarView(const std::vector<MenuItem*>& headings, QWidget* parent);

    /// The menu of a heading of the bar or below it; null for any other.
    [[nodiscard]] QMenu* menuOf(const MenuItem& heading) const;

    /// The letters that open the bar's menus, in lower case.
    [[nodiscard]] QString letters() const { return letters_; }

  private:
    void takeKeyboard();

    MenusOfHeadings menus_;
    QString letters_;
};

} // namespace sonarith
