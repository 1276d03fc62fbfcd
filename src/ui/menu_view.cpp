// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menu_view.h"

#include <algorithm>

#include "platform/qt/text.h"
#include "ui/mnemonics.h"

namespace sonarith {
namespace {

QStringList captionsOf(const std::vector<MenuItem*>& items) {
    QStringList captions;
    for (const MenuItem* item : items) {
        captions += toQString(item->caption());
    }
    return captions;
}

} // namespace

MenuItemView::MenuItemView(MenuItem& model, QAction& action, Ticks ticks)
    : QObject(&action),
      model_(model),
      action_(action),
      ticks_(ticks),
      changed_(model.changed.connect([this](Property) { reflect(); })) {
    action_.setObjectName(toQString(model_.name()));
    if (!action_.menu()) {
        connect(&action_, &QAction::triggered, this, [this] {
            // A tick is the model's to set; the action has toggled its own.
            reflect();
            model_.click();
        });
    }
    reflect();
}

void MenuItemView::reflect() {
    action_.setCheckable(ticks_ == Ticks::yes);
    action_.setChecked(model_.checked());
    action_.setEnabled(model_.enabled());
    action_.setVisible(model_.visible());
    action_.setToolTip(toQString(model_.caption()));
}

MenuBarView::MenuBarView(const std::vector<MenuItem*>& headings, QWidget* parent)
    : QMenuBar(parent) {
    setObjectName(QStringLiteral("menuBar"));
    setAccessibleName(tr("Menu"));
    // In the window on every desktop: it is part of the narrow window's face.
    setNativeMenuBar(false);
    const QStringList marked = withMnemonics(captionsOf(headings));
    for (std::size_t i = 0; i < headings.size(); ++i) {
        QMenu& menu = addHeading(*this, *headings[i]);
        const QString& caption = marked[static_cast<qsizetype>(i)];
        menu.menuAction()->setText(caption);
        if (const qsizetype at = caption.indexOf(QLatin1Char('&')); at >= 0) {
            letters_ += caption.mid(at + 1, 1).toLower();
        }
        addMenu(&menu);
    }
}

QMenu& MenuBarView::addHeading(QWidget& parent, MenuItem& heading) {
    auto* menu = new QMenu(&parent);
    menu->setObjectName(toQString(heading.name()));
    menu->setAccessibleName(toQString(heading.caption()));
    menus_.emplace(&heading, menu);
    fill(*menu, heading);
    new MenuItemView(heading, *menu->menuAction(), MenuItemView::Ticks::no);
    connect(menu, &QMenu::aboutToShow, this, [&heading] { run(heading.onOpen); });
    return *menu;
}

void MenuBarView::fill(QMenu& menu, const MenuItem& heading) {
    // A menu with a tick is one of ticks: its other entries show that they have none.
    const bool anyTick = std::any_of(heading.entries().begin(), heading.entries().end(),
                                     [](const MenuItem* entry) { return entry->checked(); });
    const auto ticks = anyTick ? MenuItemView::Ticks::yes : MenuItemView::Ticks::no;
    const QStringList marked = withMnemonics(captionsOf(heading.entries()));
    qsizetype i = 0;
    for (MenuItem* entry : heading.entries()) {
        const QString& caption = marked[i++];
        if (entry->entries().empty()) {
            auto* action = new QAction(caption, &menu);
            new MenuItemView(*entry, *action, ticks);
            menu.addAction(action);
        } else {
            QMenu& below = addHeading(menu, *entry);
            below.menuAction()->setText(caption);
            menu.addMenu(&below);
        }
    }
}

void MenuBarView::popUp(const MenuItem& heading, const QPoint& global) {
    const auto found = menus_.find(&heading);
    if (found != menus_.end() && heading.enabled()) {
        found->second->popup(global);
    }
}

} // namespace sonarith
