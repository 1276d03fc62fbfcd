// SPDX-License-Identifier: GPL-3.0-or-later
// Shows MenuItem models as Qt menus: their captions, ticks, separators, and whether entries are
// enabled and visible. Runs a menu's onOpen handler before the menu opens. popup_menus.h opens
// popup menus.
#pragma once

#include <unordered_map>
#include <vector>

#include <QMenu>
#include <QMenuBar>

#include "platform/controls/menu_item.h"

namespace sonarith {

/// Connects an entry or a heading to its action. The action owns this object.
class MenuItemView : public QObject {
  public:
    /// Whether the entry shows a tick box from the start. An entry without a tick box shows one
    /// after it has been ticked.
    enum class Ticks { no, yes };
    MenuItemView(MenuItem& model, QAction& action, Ticks ticks);

  private:
    void apply(Property which);
    void showTick();

    MenuItem& model_;
    QAction& action_;
    Connection changed_;
};

/// The menu that was made for each heading.
using MenusOfHeadings = std::unordered_map<const MenuItem*, QMenu*>;

/// Creates the menu of a heading and its submenus, and adds each of them to `made`. `parent` owns
/// the menu. The heading and its entries must outlive the menus.
QMenu& makeMenu(MenuItem& heading, QWidget& parent, MenusOfHeadings& made);

/// The menu bar at the top of a window. F10 moves the keyboard focus to the bar and opens its first
/// menu.
class MenuBarView : public QMenuBar {
  public:
    /// `parent` is the window that gets the menu bar.
    MenuBarView(const std::vector<MenuItem*>& headings, QWidget* parent);

    /// The menu or submenu that this bar created for `heading`; null if it created none.
    [[nodiscard]] QMenu* menuOf(const MenuItem& heading) const;

    /// The letters that open the bar's menus, in lower case.
    [[nodiscard]] QString letters() const { return letters_; }

  private:
    void takeKeyboard();

    MenusOfHeadings menus_;
    QString letters_;
};

} // namespace sonarith
