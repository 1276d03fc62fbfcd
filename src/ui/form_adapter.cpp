// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/form_adapter.h"

#include <utility>

#include <QEvent>
#include <QMouseEvent>
#include <QTimer>

#include "platform/qt/primary_screen.h"
#include "platform/qt/text.h"
#include "platform/qt/twips.h"
#include "platform/qt/window_frame.h"
#include "ui/mouse.h"
#include "ui/popup_place.h"

namespace sonarith {

FormAdapter::FormAdapter(Form& form, QWidget& window, QWidget& client,
                         std::function<void()> beforeResize)
    : form_(form),
      window_(window),
      client_(client),
      beforeResize_(std::move(beforeResize)),
      changed_(form.changed.connect([this](Property which) { apply(which); })),
      shown_(form.showRequested.connect([this] { bringBack(); })),
      move_(window),
      grasped_(form.captionGrasped.connect([this] { move_.start(); })),
      minimized_(form.minimizeRequested.connect([this] { window_.showMinimized(); })) {
    window_.setObjectName(toQString(form_.name()));
    window_.installEventFilter(this);
    if (&client_ != &window_) {
        client_.installEventFilter(this);
    }
    apply(Property::all);
}

void FormAdapter::apply(Property which) {
    const bool all = which == Property::all;
    if (all || which == Property::caption) {
        showCaption();
    }
    if (all || which == Property::enabled) {
        window_.setEnabled(form_.enabled());
    }
    if (following_) {
        return;
    }
    if (all || which == Property::left || which == Property::top) {
        showPlace();
    }
    if (all || which == Property::width || which == Property::height) {
        showSize();
    }
    if (all || which == Property::region) {
        showRegion();
    }
    if ((all || which == Property::visible) && window_.isVisible() != form_.visible()) {
        window_.setVisible(form_.visible());
    }
}

void FormAdapter::showCaption() {
    const QString caption = toQString(form_.caption());
    window_.setWindowTitle(caption);
    window_.setAccessibleName(caption);
}

void FormAdapter::showPlace() {
    if (form_.left() != commonLeft_ || form_.top() != commonTop_) {
        commonLeft_ = form_.left();
        commonTop_ = form_.top();
        window_.move(primaryScreen().topLeft() +
                     QPoint(toPixels(commonLeft_), toPixels(commonTop_)));
    }
}

void FormAdapter::showSize() {
    if (form_.width() == commonWidth_ && form_.height() == commonHeight_) {
        return;
    }
    commonWidth_ = form_.width();
    commonHeight_ = form_.height();
    const QSize frame = frameSize();
    window_.resize(QSize(toPixels(commonWidth_), toPixels(commonHeight_)) - frame);
    frameIsPending_ = frame.isNull();
}

void FormAdapter::showRegion() {
    if (!form_.windowRegion()) {
        window_.clearMask();
        return;
    }
    QRegion left;
    for (const PixelRectangle& part : form_.windowRegion()->rectangles) {
        left += QRect(QPoint(part.left, part.top), QPoint(part.right - 1, part.bottom - 1));
    }
    window_.setMask(left);
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

void FormAdapter::designSize() {
    expectedFrame_ = expectedFrame();
    const QSize outer = window_.size() + frameSize();
    following_ = true;
    form_.setDesignedSize(toTwips(outer.width()), toTwips(outer.height()));
    following_ = false;
    commonWidth_ = form_.width();
    commonHeight_ = form_.height();
    frameIsPending_ = false;
    reportSize();
}

void FormAdapter::followPlace() {
    const QPoint place = window_.pos() - primaryScreen().topLeft();
    // Until the form has both new coordinates, its changes must not move the window.
    following_ = true;
    form_.setLeft(toTwips(place.x()));
    form_.setTop(toTwips(place.y()));
    following_ = false;
    commonLeft_ = form_.left();
    commonTop_ = form_.top();
}

void FormAdapter::followSize() {
    const QSize outer = window_.size() + frameSize();
    following_ = true;
    form_.setWidth(toTwips(outer.width()));
    form_.setHeight(toTwips(outer.height()));
    following_ = false;
    commonWidth_ = form_.width();
    commonHeight_ = form_.height();
}

/// Returns expectedFrame_ while the window has no frame yet.
QSize FormAdapter::frameSize() const {
    const QSize added = window_.frameGeometry().size() - window_.size();
    return added.isNull() ? expectedFrame_ : added;
}

/// The sizes that the logic sets and reads include the frame. The size of the frame is certain only
/// after the window is on the screen.
void FormAdapter::takeFrame() {
    const QSize frame = window_.frameGeometry().size() - window_.size();
    if (frame.isNull() || window_.isMinimized()) {
        return;
    }
    if (frameIsPending_) {
        frameIsPending_ = false;
        window_.resize(window_.size() - frame);
    }
    // The form's size may differ from the window's size: the contents may need more space, and the
    // frame may differ from expectedFrame_.
    followSize();
}

bool FormAdapter::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Close:
        if (watched == &window_) {
            // The window never closes by itself: unloading hides it, or ends the program.
            event->ignore();
            form_.unload();
            return true;
        }
        break;
    case QEvent::Show:
        // Some desktops add the frame at once and send no event for it.
        QTimer::singleShot(0, this, [this] { takeFrame(); });
        break;
    case QEvent::Move:
        // A window that is minimized or not yet on the screen has no position to report.
        if (watched == &window_ && window_.isVisible() && !window_.isMinimized()) {
            followPlace();
            takeFrame();
        }
        break;
    case QEvent::Resize:
        if (watched == &client_) {
            reportSize();
        }
        if (watched == &window_ && !window_.isMinimized()) {
            followSize();
        }
        break;
    case QEvent::MouseButtonPress:
        // Only presses outside of the controls are reported. A press that a control does not handle
        // arrives here, too; childAt() excludes it.
        if (const auto& press = *static_cast<QMouseEvent*>(event);
            watched == &client_ && !client_.childAt(press.position().toPoint())) {
            const PopupPlace place(press.globalPosition().toPoint());
            run(form_.onMouseDown, pressed(press));
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace sonarith
