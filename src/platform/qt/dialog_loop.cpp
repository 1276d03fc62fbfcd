// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/dialog_loop.h"

#include <vector>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QEventLoop>
#include <QMainWindow>
#include <QWidget>
#include <QWindow>

namespace sonarith {
namespace {

bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

/// Whether the user has pressed a mouse button or a key, or touched the screen.
bool isPress(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::Shortcut:
    case QEvent::TouchBegin:
        return true;
    default:
        return false;
    }
}

/// The running dialogs; each was opened while the previous dialog was open.
std::vector<QDialog*>& running() {
    static std::vector<QDialog*> dialogs;
    return dialogs;
}

/// The owner of a widget. The list of a completer has no parent; the owner of this list is the
/// completer's line edit, which is the focus proxy of the list.
const QWidget* ownerOf(const QWidget& widget) {
    if (widget.parentWidget() || widget.windowType() != Qt::Popup) {
        return widget.parentWidget();
    }
    const QWidget* line = widget.focusProxy();
    return line && !widget.isAncestorOf(line) ? line : nullptr;
}

/// Whether `widget` receives input while `dialog` runs: true for the dialog's own controls, lists
/// and menus, and for a dialog that `dialog` opens.
bool takesInput(const QWidget& widget, const QDialog& dialog) {
    const QWidget* above = &widget;
    while (above && above != &dialog) {
        above = ownerOf(*above);
    }
    return above != nullptr;
}

void bringToFront(QDialog& dialog) {
    if (dialog.isMinimized()) {
        dialog.showNormal();
    }
    dialog.raise();
    dialog.activateWindow();
}

/// Blocks input to all windows except the dialog that was opened last.
class InputGuard : public QObject {
  public:
    InputGuard() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const QWidget* target = isInput(event->type()) ? widgetOf(watched) : nullptr;
        QDialog& inFront = *running().back();
        if (!target || takesInput(*target, inFront)) {
            return false;
        }
        if (isPress(event->type())) {
            // The pressed window may cover the dialog that blocks it.
            bringToFront(inFront);
        }
        return true;
    }

  private:
    /// The target widget of an event that `watched` receives: `watched` itself, the widget of a
    /// native window, or the widget that owns a shortcut or an action. Null if there is none.
    [[nodiscard]] static const QWidget* widgetOf(const QObject* watched) {
        if (const auto* window = qobject_cast<const QWindow*>(watched)) {
            for (const QWidget* top : QApplication::topLevelWidgets()) {
                if (top->windowHandle() == window) {
                    return top;
                }
            }
        }
        while (watched && !watched->isWidgetType()) {
            watched = watched->parent();
        }
        return static_cast<const QWidget*>(watched);
    }
};

/// Notifies all other windows and their widgets that they are blocked, as Qt's own modal dialogs
/// do. A widget that tracks a pressed mouse button then stops tracking, because it will not receive
/// the release.
void notifyBlockedWindows(const QDialog& dialog) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window != &dialog) {
            QEvent blocked(QEvent::WindowBlocked);
            QCoreApplication::sendEvent(window, &blocked);
        }
    }
}

} // namespace

int runDialog(QDialog& dialog) {
    dialog.setModal(false);
    notifyBlockedWindows(dialog);
    running().push_back(&dialog);
    const InputGuard guard;
    QEventLoop loop;
    QObject::connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
    dialog.show(); // Closes menus that are open.
    dialog.raise();
    dialog.activateWindow();
    loop.exec();
    // Dialogs that were opened later have finished, because their loops ran within this loop.
    running().pop_back();
    return dialog.result();
}

QDialog* runningDialog() {
    return running().empty() ? nullptr : running().back();
}

QWidget* dialogParent() {
    const auto seen = [](const QWidget* window) {
        return window && window->isVisible() && !window->isMinimized();
    };
    for (QWidget* window : {static_cast<QWidget*>(runningDialog()), QApplication::activeWindow()}) {
        if (seen(window)) {
            return window;
        }
    }
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (qobject_cast<QMainWindow*>(window) && seen(window)) {
            return window;
        }
    }
    return nullptr;
}

} // namespace sonarith
