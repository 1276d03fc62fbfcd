// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menu_view.h"

#include <algorithm>

#include <QCoreApplication>
#include <QShortcut>

#include "platform/qt/text.h"
#include "ui/control_view.h"
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

/// Puts the menu bars of the program inside their windows on every desktop, because a menu bar is
/// part of the layout of its window. Returns `window`, so that the constructor of MenuBarView can
/// call this function before the constructor of QMenuBar. Without AA_DontUseNativeMenuBar, QMenuBar
/// would ask the session bus whether the desktop shows menu bars, and wait for the reply.
QWidget* withBarsInside(QWidget* window) {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
    return window;
}

void fill(QMenu& menu, const MenuItem& heading, MenusOfHeadings& made) {
    // In a menu with a ticked entry, the other entries without a submenu show empty tick boxes.
    const bool anyTick = std::any_of(heading.entries().begin(), heading.entries().end(),
                                     [](const MenuItem* entry) { return entry->checked(); });
    const auto ticks = anyTick ? MenuItemView::Ticks::yes : MenuItemView::Ticks::no;
    const QStringList marked = withMnemonics(captionsOf(heading.entries()));
    qsizetype i = 0;
    for (MenuItem* entry : heading.entries()) {
        const QString& caption = marked[i++];
        if (entry->isSeparator()) {
            new MenuItemView(*entry, *menu.addSeparator(), MenuItemView::Ticks::no);
        } else if (entry->entries().empty()) {
            auto* action = new QAction(caption, &menu);
            new MenuItemView(*entry, *action, ticks);
            menu.addAction(action);
        } else {
            QMenu& below = makeMenu(*entry, menu, made);
            below.menuAction()->setText(caption);
            menu.addMenu(&below);
        }
    }
}

} // namespace

MenuItemView::MenuItemView(MenuItem& model, QAction& action, Ticks ticks)
    : QObject(&action),
      model_(model),
      action_(action),
      changed_(model.changed.connect([this](Property which) { apply(which); })) {
    action_.setObjectName(toQString(model_.name()));
    action_.setToolTip(toQString(model_.caption()));
    action_.setCheckable(ticks == Ticks::yes);
    if (!action_.menu()) {
        connect(&action_, &QAction::triggered, this, [this] {
            // Qt has toggled the tick of a checkable action. This is undone, because only the model
            // sets and removes ticks.
            showTick();
            model_.click();
        });
    }
    apply(Property::all);
}

void MenuItemView::apply(Property which) {
    if (concerns(which, Property::checked)) {
        showTick();
    }
    if (concerns(which, Property::enabled)) {
        action_.setEnabled(model_.enabled());
    }
    if (concerns(which, Property::visible)) {
        action_.setVisible(model_.visible());
    }
}

void MenuItemView::showTick() {
    if (model_.checked()) {
        action_.setCheckable(true);
    }
    action_.setChecked(model_.checked());
}

QMenu& makeMenu(MenuItem& heading, QWidget& parent, MenusOfHeadings& made) {
    auto* menu = new QMenu(&parent);
    menu->setObjectName(toQString(heading.name()));
    menu->setAccessibleName(toQString(heading.caption()));
    made.emplace(&heading, menu);
    fill(*menu, heading, made);
    new MenuItemView(heading, *menu->menuAction(), MenuItemView::Ticks::no);
    QObject::connect(menu, &QMenu::aboutToShow, menu, [&heading] { run(heading.onOpen); });
    return *menu;
}

MenuBarView::MenuBarView(const std::vector<MenuItem*>& headings, QWidget* parent)
    : QMenuBar(withBarsInside(parent)) {
    setObjectName(QStringLiteral("menuBar"));
    setAccessibleName(tr("Menu"));
    const QStringList marked = withMnemonics(captionsOf(headings));
    for (std::size_t i = 0; i < headings.size(); ++i) {
        QMenu& menu = makeMenu(*headings[i], *this, menus_);
        const QString& caption = marked[static_cast<qsizetype>(i)];
        menu.menuAction()->setText(caption);
        letters_ += mnemonicOf(caption);
        addMenu(&menu);
    }
    connect(new QShortcut(Qt::Key_F10, parent), &QShortcut::activated, this,
            [this] { takeKeyboard(); });
}

QMenu* MenuBarView::menuOf(const MenuItem& heading) const {
    const auto found = menus_.find(&heading);
    return found == menus_.end() ? nullptr : found->second;
}

void MenuBarView::takeKeyboard() {
    if (!actions().isEmpty()) {
        setFocus(Qt::MenuBarFocusReason);
        setActiveAction(actions().constFirst());
    }
}

} // namespace sonarith
