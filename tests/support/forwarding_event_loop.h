// SPDX-License-Identifier: GPL-3.0-or-later
// An event loop that passes every call on to another event loop. A test derives from this
// class to observe or to replace a single operation.
#pragma once

#include <cstdlib>
#include <functional>
#include <memory>
#include <utility>

#include "platform/event_loop.h"

namespace sonarith::test {

class ForwardingEventLoop : public EventLoop {
  public:
    /// `target` must outlive this object.
    explicit ForwardingEventLoop(EventLoop& target) : target_(target) {}

    void yield() override { target_.yield(); }
    void waitWhile(const std::function<bool()>& condition) override {
        target_.waitWhile(condition);
    }
    [[nodiscard]] Time now() const override { return target_.now(); }
    [[nodiscard]] double secondsSinceMidnight() const override {
        return target_.secondsSinceMidnight();
    }
    [[nodiscard]] std::unique_ptr<Wakeup> every(Duration interval,
                                                std::function<void()> handler) override {
        return target_.every(interval, std::move(handler));
    }
    [[nodiscard]] std::unique_ptr<Wakeup> everyInSound(Duration interval,
                                                       std::function<void()> handler) override {
        return target_.everyInSound(interval, std::move(handler));
    }
    [[noreturn]] void endProgram() override {
        target_.endProgram();
        std::abort(); // avoids a warning: GCC ignores [[noreturn]] of a virtual function
    }

  private:
    EventLoop& target_;
};

} // namespace sonarith::test
