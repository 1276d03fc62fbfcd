// SPDX-License-Identifier: GPL-3.0-or-later
// Signals with which an object notifies other objects. For example, a control notifies its views.
// The program logic uses no signals for the events of controls: each such event has a single
// handler (onClick and the like).
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace sonarith {

/// Keeps a slot connected while this object exists. This object may outlive the signal.
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
        forgetDisconnected();
        auto kept = std::make_shared<Slot>(std::move(slot));
        slots_.push_back(kept);
        return Connection(std::move(kept));
    }

    /// Calls every slot in the order of connection. Slots may connect and disconnect during the
    /// call; a new slot is first called by the next emission. Does not allocate.
    void emit(Args... args) {
        const Emission emission(*this);
        const std::size_t count = slots_.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (const auto kept = slots_[i].lock()) {
                (*kept)(args...);
            }
        }
    }

  private:
    /// Counts nested emissions: during an emission no entry may be erased, because that would shift
    /// the indexes that emit() uses.
    class Emission {
      public:
        explicit Emission(Signal& signal) : signal_(signal) { ++signal_.emissions_; }
        ~Emission() {
            --signal_.emissions_;
            signal_.forgetDisconnected();
        }
        Emission(const Emission&) = delete;
        Emission& operator=(const Emission&) = delete;

      private:
        Signal& signal_;
    };

    void forgetDisconnected() {
        if (emissions_ == 0) {
            std::erase_if(slots_, [](const std::weak_ptr<Slot>& slot) { return slot.expired(); });
        }
    }

    std::vector<std::weak_ptr<Slot>> slots_;
    int emissions_ = 0;
};

} // namespace sonarith
