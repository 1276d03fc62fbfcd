// SPDX-License-Identifier: GPL-3.0-or-later
// Message boxes for tests. Every box is recorded. A test can set `whileUp`, for example to yield or
// to stop a job while a box is open. A box closes as soon as `whileUp` has run. If `whileUp` is not
// set, the box closes at once. A box with only an OK button needs no answer. The test puts the
// answers for other boxes into `answers`.
#pragma once

#include <deque>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/message_box.h"

namespace sonarith::test {

struct ShownBox {
    std::string text;
    BoxIcon icon = BoxIcon::none;
    BoxButtons buttons = BoxButtons::ok;
    std::string title = {};

    bool operator==(const ShownBox&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const ShownBox& box) {
    return out << "[" << box.title << "] " << box.text << " (icon " << static_cast<int>(box.icon)
               << ", buttons " << static_cast<int>(box.buttons) << ")";
}

class FakeMessageBoxes final : public MessageBoxes {
  public:
    /// All boxes, oldest first. A box is added when it opens.
    std::vector<ShownBox> shown;
    /// Answers for the boxes with more than an OK button, in the order in which the boxes close. If
    /// no answer is left, show() throws.
    std::deque<BoxAnswer> answers;
    /// Runs while a box is open, before its answer is taken from `answers`. May itself show boxes.
    std::function<void(const ShownBox&)> whileUp;

    /// The texts of all boxes, oldest first.
    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (const ShownBox& box : shown) {
            all.push_back(box.text);
        }
        return all;
    }

    BoxAnswer show(const std::string& text, BoxIcon icon = BoxIcon::none,
                   BoxButtons buttons = BoxButtons::ok, const std::string& title = {}) override {
        const ShownBox box{text, icon, buttons, title};
        shown.push_back(box);
        if (whileUp) {
            whileUp(box);
        }
        if (buttons == BoxButtons::ok) {
            return BoxAnswer::ok;
        }
        if (answers.empty()) {
            throw std::logic_error("no scripted answer for the box: " + text);
        }
        const BoxAnswer answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

} // namespace sonarith::test
