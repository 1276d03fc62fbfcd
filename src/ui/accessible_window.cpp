// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/accessible_window.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QMenu>

#include "ui/form_window.h"

namespace sonarith {
namespace {

class AccessibleWindow : public QAccessibleWidget {
  public:
    explicit AccessibleWindow(FormWindow& window)
        : QAccessibleWidget(&window, QAccessible::Window) {}

    [[nodiscard]] int childCount() const override {
        return QAccessibleWidget::childCount() + static_cast<int>(popups().size());
    }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        const int widgets = QAccessibleWidget::childCount();
        if (index < widgets) {
            return QAccessibleWidget::child(index);
        }
        const QList<QMenu*> menus = popups();
        return index - widgets < menus.size()
                   ? QAccessible::queryAccessibleInterface(menus[index - widgets])
                   : nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        const qsizetype menu = child ? popups().indexOf(child->object()) : -1;
        return menu < 0 ? QAccessibleWidget::indexOfChild(child)
                        : QAccessibleWidget::childCount() + static_cast<int>(menu);
    }

  private:
    /// The popup menus that are children of the window. The menus of the menu bar are children of
    /// the bar.
    [[nodiscard]] QList<QMenu*> popups() const {
        return widget()->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    }
};

} // namespace

QAccessibleInterface* makeAccessibleWindow(const QString& /*type*/, QObject* object) {
    auto* window = dynamic_cast<FormWindow*>(object);
    return window ? new AccessibleWindow(*window) : nullptr;
}

} // namespace sonarith
