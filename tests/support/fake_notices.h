// SPDX-License-Identifier: GPL-3.0-or-later
// A fake of Notices that records the text of each notice. Thread-safe.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/notices.h"

namespace sonarith::test {

class FakeNotices final : public Notices {
  public:
    void report(Notice notice) override {
        const std::lock_guard lock(mutex_);
        texts_.push_back(std::move(notice.text));
    }
    void settled(const std::string& cause, const std::string& text) override {
        const std::lock_guard lock(mutex_);
        texts_.push_back("settled [" + cause + "]" + (text.empty() ? "" : ": " + text));
    }
    /// The texts of all notices, oldest first. A call of settled() is recorded as "settled [CAUSE]:
    /// TEXT", or as "settled [CAUSE]" if its text is empty.
    [[nodiscard]] std::vector<std::string> texts() const {
        const std::lock_guard lock(mutex_);
        return texts_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> texts_;
};

} // namespace sonarith::test
