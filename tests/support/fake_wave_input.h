// SPDX-License-Identifier: GPL-3.0-or-later
// A wave input for tests. It logs every operation. The operations that the test has listed
// in `failures` return an error. A buffer is filled when the test calls fill().
//
//     FakeWaveInput input;
//     input.failures["open"] = WaveResult::notEnabled;
//     input.fill(8192);                    // the oldest buffer is done
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/wave_input.h"

namespace sonarith::test {

class FakeWaveInput final : public WaveInput {
  public:
    /// The result of each operation that is to fail, by the operation's name: "open", "prepare",
    /// "unprepare", "add", "start", "stop", "reset", "close".
    std::map<std::string, WaveResult> failures;
    /// The operations, oldest first. The result follows the name if the operation failed: "open 3".
    std::vector<std::string> log;
    /// Called with each entry of the log.
    std::function<void(const std::string&)> onOperation;
    std::deque<WaveHeader*> queue;
    WaveFormat format;
    bool isOpen = false;
    bool running = false;
    /// Number of successful opens.
    int opened = 0;

    /// Marks the oldest queued buffer done, with `bytes` recorded bytes.
    void fill(std::uint32_t bytes) {
        if (!queue.empty()) {
            queue.front()->dwBytesRecorded = bytes;
            queue.front()->dwFlags |= wave_header::done;
            queue.pop_front();
        }
    }

    WaveResult open(WaveInHandle& handle, std::uint32_t device, const WaveFormat& wanted) override {
        const WaveResult result = note("open", device != 0 ? WaveResult::badDevice
                                               : isOpen    ? WaveResult::allocated
                                                           : WaveResult::noError);
        if (result == WaveResult::noError) {
            isOpen = true;
            ++opened;
            format = wanted;
            handle = openHandle;
        }
        return result;
    }
    WaveResult prepareHeader(WaveInHandle handle, WaveHeader& header) override {
        const WaveResult result = note("prepare", fits(handle));
        if (result == WaveResult::noError) {
            header.dwFlags |= wave_header::prepared;
        }
        return result;
    }
    WaveResult unprepareHeader(WaveInHandle handle, WaveHeader& header) override {
        const WaveResult result = note("unprepare", fits(handle));
        if (result == WaveResult::noError) {
            header.dwFlags &= ~wave_header::prepared;
        }
        return result;
    }
    WaveResult addBuffer(WaveInHandle handle, WaveHeader& header) override {
        const bool prepared = (header.dwFlags & wave_header::prepared) != 0;
        const WaveResult result = note("add", prepared ? fits(handle) : WaveResult::unprepared);
        if (result == WaveResult::noError) {
            header.dwFlags &= ~wave_header::done;
            queue.push_back(&header);
        }
        return result;
    }
    WaveResult start(WaveInHandle handle) override {
        const WaveResult result = note("start", fits(handle));
        running = running || result == WaveResult::noError;
        return result;
    }
    WaveResult stop(WaveInHandle handle) override {
        running = false;
        return note("stop", fits(handle));
    }
    WaveResult reset(WaveInHandle handle) override {
        const WaveResult result = note("reset", fits(handle));
        if (result == WaveResult::noError) {
            running = false;
            while (!queue.empty()) {
                fill(0);
            }
        }
        return result;
    }
    WaveResult close(WaveInHandle handle) override {
        const WaveResult result = note("close", fits(handle));
        if (result == WaveResult::noError) {
            isOpen = false;
        }
        return result;
    }
    [[nodiscard]] std::string errorText(WaveResult result) const override {
        return result == WaveResult::noError
                   ? std::string()
                   : "input error " + std::to_string(static_cast<int>(result));
    }

  private:
    static constexpr WaveInHandle openHandle = 77;

    [[nodiscard]] WaveResult fits(WaveInHandle handle) const {
        return isOpen && handle == openHandle ? WaveResult::noError : WaveResult::invalidHandle;
    }
    WaveResult note(const std::string& operation, WaveResult result) {
        if (const auto scripted = failures.find(operation); scripted != failures.end()) {
            result = scripted->second;
        }
        log.push_back(operation + (result == WaveResult::noError
                                       ? ""
                                       : " " + std::to_string(static_cast<int>(result))));
        if (onOperation) {
            onOperation(log.back());
        }
        return result;
    }
};

} // namespace sonarith::test
