// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/notice_center.h"

#include <utility>

#include "platform/qt/text.h"

namespace sonarith {

NoticeCenter::NoticeCenter(NoticeBoard& board, QWidget& window, NoticeBar& bar,
                           std::function<void(const QString&)> notify)
    : board_(board), window_(window), bar_(bar), notify_(std::move(notify)) {
    board_.setOnPosted([this](const std::string& text) {
        // The board may call this function on any thread. So show() is queued: it runs on the
        // thread of this object, and never inside the call that reports the notice.
        QMetaObject::invokeMethod(
            this, [this, shown = toQString(text)] { show(shown); }, Qt::QueuedConnection);
    });
}

NoticeCenter::~NoticeCenter() {
    board_.setOnPosted(nullptr);
}

void NoticeCenter::show(const QString& text) {
    if (window_.isVisible() && !window_.isMinimized()) {
        bar_.show(text);
    } else {
        notify_(text);
    }
}

} // namespace sonarith
