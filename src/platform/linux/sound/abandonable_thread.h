// SPDX-License-Identifier: GPL-3.0-or-later
// A thread for calls into devices that may never come back (a hung sound server): its owner waits
// for it a moment, and then leaves it behind. Not for work whose end must be certain.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace sonarith::sound {

class AbandonableThread {
  public:
    /// Runs `body`, which must own (by shared pointers or copies) everything that it touches, as it
    /// may outlive whoever started it.
    explicit AbandonableThread(std::function<void()> body);
    ~AbandonableThread();
    AbandonableThread(const AbandonableThread&) = delete;
    AbandonableThread& operator=(const AbandonableThread&) = delete;

    /// Waits until the body has returned, for `patience` at most; then the thread is on its own.
    /// Tell the body to come to its end before this is called.
    void leave(std::chrono::milliseconds patience);

  private:
    struct State;
    std::shared_ptr<State> state_;
    bool left_ = false;
};

} // namespace sonarith::sound
