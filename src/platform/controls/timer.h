// SPDX-License-Identifier: GPL-3.0-or-later
// A timer of a form. While the timer is enabled, it repeatedly runs its handler; such a run is a
// tick. The timer does not fire while a tick runs, with one exception: after a tick has disabled
// and enabled the timer, the timer also fires while that tick yields. So later ticks can monitor a
// job that runs inside the first tick.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/controls/control.h"
#include "platform/controls/form.h"
#include "platform/event_loop.h"

namespace sonarith {

/// Whether a timer is enabled when its form loads.
enum class TimerAtLoad { off, on };

/// `always`: every tick must be in time. `inSound`: ticks may run in batches; see
/// EventLoop::everyInSound().
enum class TicksInTime { always, inSound };

/// Unloading the form disables the timer.
class Timer : public FormPart {
  public:
    Timer(Form& owner, EventLoop& loop, std::string name, EventLoop::Duration interval,
          TimerAtLoad designed = TimerAtLoad::off, TicksInTime inTime = TicksInTime::always)
        : loop_(loop),
          name_(std::move(name)),
          interval_(interval),
          designed_(designed),
          inTime_(inTime) {
        owner.adopt(*this);
    }

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] EventLoop::Duration interval() const { return interval_; }
    [[nodiscard]] bool enabled() const { return wakeup_ != nullptr; }
    /// Enabling starts a full interval. Enabling a timer that is already enabled has no
    /// effect.
    void setEnabled(bool enabled) {
        if (!enabled) {
            wakeup_.reset();
        } else if (!wakeup_) {
            const auto tick = [this] {
                run(onTimer);
            };
            wakeup_ = inTime_ == TicksInTime::always ? loop_.every(interval_, tick)
                                                     : loop_.everyInSound(interval_, tick);
        }
    }

    Handler<> onTimer;
    /// For tests and benchmarks: runs the handler at once, even if the timer is disabled. An
    /// enabled timer may fire while this call yields.
    void fire() { run(onTimer); }

  private:
    void atLoad() override { setEnabled(designed_ == TimerAtLoad::on); }
    void atUnload() override { setEnabled(false); }

    EventLoop& loop_;
    std::string name_;
    EventLoop::Duration interval_;
    TimerAtLoad designed_;
    TicksInTime inTime_;
    std::unique_ptr<Wakeup> wakeup_;
};

} // namespace sonarith
