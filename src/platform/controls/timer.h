// SPDX-License-Identifier: GPL-3.0-or-later
// A form's timer: fires again and again while enabled, and does not fire while its tick runs. A
// tick that switches it off and on has started it anew: from then on it fires also while that tick
// waits for something, so a job that one tick starts is watched like any other.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/controls/control.h"
#include "platform/controls/form.h"
#include "platform/event_loop.h"

namespace sonarith {

/// Whether a timer is on when its form loads.
enum class TimerAtLoad { off, on };

/// Its form's unload switches it off.
class Timer : public FormPart {
  public:
    Timer(Form& owner, EventLoop& loop, std::string name, EventLoop::Duration interval,
          TimerAtLoad designed = TimerAtLoad::off)
        : loop_(loop), name_(std::move(name)), interval_(interval), designed_(designed) {
        owner.adopt(*this);
    }

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] EventLoop::Duration interval() const { return interval_; }
    [[nodiscard]] bool enabled() const { return wakeup_ != nullptr; }
    /// Enabling starts a full interval; a timer that is on already runs on undisturbed.
    void setEnabled(bool enabled) {
        if (!enabled) {
            wakeup_.reset();
        } else if (!wakeup_) {
            wakeup_ = loop_.every(interval_, [this] { run(onTimer); });
        }
    }

    Handler<> onTimer;
    /// One tick, whether the timer is on or not.
    void fire() { run(onTimer); }

  private:
    void atLoad() override { setEnabled(designed_ == TimerAtLoad::on); }
    void atUnload() override { setEnabled(false); }

    EventLoop& loop_;
    std::string name_;
    EventLoop::Duration interval_;
    TimerAtLoad designed_;
    std::unique_ptr<Wakeup> wakeup_;
};

} // namespace sonarith
