// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/notice_board.h"

#include <utility>

namespace sonarith {

void NoticeBoard::report(Notice notice) {
    {
        const std::lock_guard lock(mutex_);
        if (!notice.cause.empty() && !causes_.insert(notice.cause).second) {
            return;
        }
    }
    post(notice.text);
}

void NoticeBoard::settled(const std::string& cause, const std::string& text) {
    {
        const std::lock_guard lock(mutex_);
        if (causes_.erase(cause) == 0) {
            return;
        }
    }
    if (!text.empty()) {
        post(text);
    }
}

std::vector<std::string> NoticeBoard::texts() const {
    const std::lock_guard lock(mutex_);
    return {texts_.begin(), texts_.end()};
}

void NoticeBoard::setOnPosted(std::function<void(const std::string& text)> handler) {
    const std::lock_guard lock(mutex_);
    onPosted_ = std::move(handler);
}

void NoticeBoard::post(const std::string& text) {
    std::function<void(const std::string&)> onPosted;
    {
        const std::lock_guard lock(mutex_);
        texts_.push_back(text);
        if (texts_.size() > most) {
            texts_.pop_front();
        }
        onPosted = onPosted_;
    }
    if (onPosted) {
        onPosted(text);
    }
}

} // namespace sonarith
