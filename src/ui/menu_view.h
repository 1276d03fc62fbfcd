// SPDX-License-Identifier: GPL-3.0-or-later
// Shows MenuItem models as the desktop's menus: captions (which are fixed), ticks, open or closed
// entries, and the step that runs before a menu opens.
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
    /// `ticks`: whether the entry shows a tick box.
    enum class Ticks { no, yes };
    MenuItemView(MenuItem& model, QAction& action, Ticks ticks);

  private:
    void reflect();

    MenuItem& model_;
    QAction& action_;
    Ticks ticks_;
    Connection changed_;
};

class MenuBarView : public QMenuBar {
  public:
    MenuBarView(const std::vector<MenuItem*>& headings, QWidget* parent);

    /// Opens the menu of a heading, of the bar or below it, at a place on the screen. Nothing for
    /// a heading that is closed, or that is not in this bar.
    void popUp(const MenuItem& heading, const QPoint& global);

    /// The letters that open the bar's menus, in lower case.
    [[nodiscard]] QString letters() const { return letters_; }

  private:
    void fill(QMenu& menu, const MenuItem& heading);
    QMenu& addHeading(QWidget& parent, MenuItem& heading);

    std::unordered_map<const MenuItem*, QMenu*> menus_;
    QString letters_;
};

} // namespace sonarith
