// SPDX-License-Identifier: GPL-3.0-or-later
// A form's timer: fires again and again while enabled, and never enters its handler twice at once.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/controls/control.h"
#include "platform/event_loop.h"

namespace sonarith {

class Timer {
  public:
    Timer(EventLoop& loop, std::string name, EventLoop::Duration interval)
        : loop_(loop), name_(std::move(name)), interval_(interval) {}

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] EventLoop::Duration interval() const { return interval_; }
    [[nodiscard]] bool enabled() const { return wakeup_ != nullptr; }
    /// Enabling starts a full interval; a timer that is on already runs on undisturbed.
    void setEnabled(bool enabled) {
        if (!enabled) {
            wakeup_.reset();
        } else if (!wakeup_) {
            wakeup_ = loop_.every(interval_, [this] { fire(); });
        }
    }

    Handler<> onTimer;
    /// One tick, whether the timer is on or not.
    void fire() {
        if (firing_) {
            return;
        }
        // Put back also when the end of the program unwinds through the handler.
        const struct Firing {
            bool& flag;
            explicit Firing(bool& on) : flag(on) { flag = true; }
            ~Firing() { flag = false; }
        } guard(firing_);
        run(onTimer);
    }

  private:
    EventLoop& loop_;
    std::string name_;
    EventLoop::Duration interval_;
    std::unique_ptr<Wakeup> wakeup_;
    bool firing_ = false;
};

} // namespace sonarith
