// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/dialog_loop.h"

#include <vector>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QEventLoop>
#include <QWidget>
#include <QWindow>

namespace sonarith {
namespace {

bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
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

/// The dialogs that run, each opened while the one before it was up.
std::vector<QDialog*>& running() {
    static std::vector<QDialog*> dialogs;
    return dialogs;
}

/// A question that the dialog asks in turn is its child, as are its lists; a completer's list is a
/// popup without a parent.
bool takesInput(const QWidget& widget, const QDialog& dialog) {
    for (const QWidget* above = &widget; above; above = above->parentWidget()) {
        if (above == &dialog) {
            return true;
        }
    }
    return widget.window()->windowType() == Qt::Popup;
}

/// Keeps input from all windows but the dialog that was opened last.
class InputGuard : public QObject {
  public:
    InputGuard() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const QWidget* target = isInput(event->type()) ? widgetOf(watched) : nullptr;
        return target && !takesInput(*target, *running().back());
    }

  private:
    /// The widget that an event is for; null for objects that are none, nor stand for one.
    [[nodiscard]] static const QWidget* widgetOf(const QObject* watched) {
        if (const auto* window = qobject_cast<const QWindow*>(watched)) {
            for (const QWidget* top : QApplication::topLevelWidgets()) {
                if (top->windowHandle() == window) {
                    return top;
                }
            }
        }
        return qobject_cast<const QWidget*>(watched);
    }
};

} // namespace

int runDialog(QDialog& dialog) {
    dialog.setModal(false);
    running().push_back(&dialog);
    const InputGuard guard;
    QEventLoop loop;
    QObject::connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
    loop.exec();
    // Those above have been answered before: their loops ran within this one.
    running().pop_back();
    return dialog.result();
}

QDialog* runningDialog() {
    return running().empty() ? nullptr : running().back();
}

} // namespace sonarith
