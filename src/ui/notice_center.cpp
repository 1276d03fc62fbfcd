// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/notice_center.h"

#include <utility>

#include "platform/qt/text.h"

namespace sonarith {

NoticeCenter::NoticeCenter(NoticeBoard& board, QWidget& window, NoticeBar& bar,
                           std::function<void(const QString&)> notify)
    : board_(board), window_(window), bar_(bar), notify_(std::move(notify)) {
    board_.setOnPosted([this](const std::string& text) {
        // May be called on any thread; queued, so that it never runs within the reporting step.
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
