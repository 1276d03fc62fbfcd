// SPDX-License-Identifier: GPL-3.0-or-later
// Stores the texts of the most recent notices to the user. As long as a cause is not settled, only
// the first notice of that cause is stored. The board displays nothing: it passes each new text to
// a handler, and views read the stored texts.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "platform/notices.h"

namespace sonarith {

/// Any thread may call any member.
class NoticeBoard final : public Notices {
  public:
    /// Maximum number of texts kept: enough for what a user may want to read after a long run.
    static constexpr std::size_t most = 100;

    void report(Notice notice) override;
    void settled(const std::string& cause, const std::string& text) override;

    /// The texts that are kept, oldest first.
    [[nodiscard]] std::vector<std::string> texts() const;
    /// `handler` runs for each text that is stored from now on, on the thread that called report()
    /// or settled(). It must call neither of these two functions.
    void setOnPosted(std::function<void(const std::string& text)> handler);

  private:
    void post(const std::string& text);

    mutable std::mutex mutex_;
    std::deque<std::string> texts_;
    std::set<std::string> causes_; ///< reported and not yet settled
    std::function<void(const std::string&)> onPosted_;
};

} // namespace sonarith
