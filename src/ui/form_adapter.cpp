// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/form_adapter.h"

#include <QEvent>
#include <QMouseEvent>
#include <QWindow>

#include "platform/qt/primary_screen.h"
#include "platform/qt/text.h"
#include "platform/qt/twips.h"

namespace sonarith {

FormAdapter::FormAdapter(Form& form, QWidget& window, QWidget& client,
                         std::function<void()> beforeResize)
    : form_(form),
      window_(window),
      client_(client),
      beforeResize_(std::move(beforeResize)),
      agreedLeft_(form.left()),
      agreedTop_(form.top()),
      changed_(form.changed.connect([this] { reflect(); })),
      shown_(form.showRequested.connect([this] { bringBack(); })),
      grasped_(form.captionGrasped.connect([this] {
          if (QWindow* handle = window_.windowHandle()) {
              handle->startSystemMove();
          }
      })),
      minimized_(form.minimizeRequested.connect([this] { window_.showMinimized(); })) {
    window_.setObjectName(toQString(form_.name()));
    window_.installEventFilter(this);
    if (&client_ != &window_) {
        client_.installEventFilter(this);
    }
    reflect();
}

void FormAdapter::reflect() {
    const QString caption = toQString(form_.caption());
    window_.setWindowTitle(caption);
    window_.setAccessibleName(caption);
    if (following_) {
        return;
    }
    if (form_.left() != agreedLeft_ || form_.top() != agreedTop_) {
        agreedLeft_ = form_.left();
        agreedTop_ = form_.top();
        window_.move(primaryScreen().topLeft() +
                     QPoint(toPixels(agreedLeft_), toPixels(agreedTop_)));
    }
    if (window_.isVisible() != form_.visible()) {
        window_.setVisible(form_.visible());
    }
}

void FormAdapter::bringBack() {
    if (window_.isMinimized()) {
        window_.setWindowState(window_.windowState() & ~Qt::WindowMinimized);
    }
}

void FormAdapter::reportSize() {
    if (beforeResize_) {
        beforeResize_();
    }
    form_.setInnerSize(toTwips(client_.width()), toTwips(client_.height()));
}

void FormAdapter::followPlace() {
    // Both before the form hears of the first: half a new place is no place to move to.
    const QPoint place = window_.pos() - primaryScreen().topLeft();
    following_ = true;
    form_.setLeft(toTwips(place.x()));
    form_.setTop(toTwips(place.y()));
    following_ = false;
    agreedLeft_ = form_.left();
    agreedTop_ = form_.top();
}

bool FormAdapter::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Close:
        if (watched == &window_) {
            // The window never goes by itself: unloading hides it, or ends the program.
            event->ignore();
            form_.unload();
            return true;
        }
        break;
    case QEvent::Move:
        // A window that is not on the screen yet has no place of its own to tell of.
        if (watched == &window_ && window_.isVisible() && !window_.isMinimized()) {
            followPlace();
        }
        break;
    case QEvent::Resize:
        if (watched == &client_) {
            reportSize();
        }
        if (watched == &window_) {
            form_.setWidth(toTwips(window_.frameGeometry().width()));
            form_.setHeight(toTwips(window_.frameGeometry().height()));
        }
        break;
    case QEvent::MouseButtonPress:
        // Widgets pass on the presses that they have no use for; only the bare surface's is meant.
        if (watched == &client_ && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
            !client_.childAt(static_cast<QMouseEvent*>(event)->position().toPoint())) {
            run(form_.onMouseDown);
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace sonarith
