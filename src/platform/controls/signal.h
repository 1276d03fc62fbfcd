// SPDX-License-Identifier: GPL-3.0-or-later
// How a model tells whoever shows it that something changed. For notifications alone: what the
// product does on an event is the single handler of that event (onClick and its like).
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace sonarith {

/// Keeps a slot connected for as long as it lives. It may outlive the signal.
class Connection {
  public:
    Connection() = default;
    explicit Connection(std::shared_ptr<void> slot) : slot_(std::move(slot)) {}

  private:
    std::shared_ptr<void> slot_;
};

template <typename... Args>
class Signal {
  public:
    using Slot = std::function<void(Args...)>;

    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    [[nodiscard]] Connection connect(Slot slot) {
        auto kept = std::make_shared<Slot>(std::move(slot));
        slots_.push_back(kept);
        return Connection(std::move(kept));
    }

    /// Calls every slot in the order of connection. Slots may come and go meanwhile.
    void emit(Args... args) {
        std::erase_if(slots_, [](const std::weak_ptr<Slot>& slot) { return slot.expired(); });
        const auto slots = slots_;
        for (const auto& slot : slots) {
            if (const auto kept = slot.lock()) {
                (*kept)(args...);
            }
        }
    }

  private:
    std::vector<std::weak_ptr<Slot>> slots_;
};

} // namespace sonarith
