// SPDX-License-Identifier: GPL-3.0-or-later
// Shows MenuItem models as the desktop's menus: captions (which are fixed), ticks, open or closed
// entries, lines between them, and the step that runs before a menu opens. Menus that open at the
// pointer are in popup_menus.h.
#pragma once

#include <unordered_map>
#include <vector>

#include <QMenu>
#include <QMenuBar>

#include "platform/controls/menu_item.h"

namespace sonarith {

/// One entry or heading, tied to its action; a child of the action.
class MenuItemView : public QObject {
  public:
    /// `ticks`: whether the entry shows a tick box. One that gets a tick shows it from then on.
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

/// Makes the menu of a heading, a child of `parent`, and the menus below it; each is noted in
/// `made`. The heading outlives them.
QMenu& makeMenu(MenuItem& heading, QWidget& parent, MenusOfHeadings& made);

/// Opens at the top of any window; F10 takes the keyboard there.
class MenuBarView : public QMenuBar {
  public:
    /// `parent` is the window whose bar this becomes.
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
