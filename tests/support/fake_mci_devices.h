// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces the machine in tests of the devices that run command strings (platform/linux/mci/). The
// position of the fake transport advances only when the test calls advance(); the fake recorder
// only stores its state. No audio is processed.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/mci/devices.h"
#include "support/fake_disc.h"
#include "support/fake_notices.h"

namespace sonarith::fakes {

class FakeTransport : public mci::Transport {
  public:
    /// Stores a pointer to this transport in `seat`. The destructor clears `seat`, unless `seat`
    /// then points to another transport.
    FakeTransport(std::shared_ptr<disc::Disc> disc, FakeTransport*& seat)
        : disc_(std::move(disc)), seat_(seat) {
        seat_ = this;
    }
    ~FakeTransport() override {
        if (seat_ == this) {
            seat_ = nullptr;
        }
    }

    Status play(std::int64_t sector, std::int64_t endSector) override {
        if (refusesToPlay) {
            return {ErrorNumber::deviceUnavailable, "no more threads can be started"};
        }
        calls.push_back("play " + std::to_string(sector) + " " + std::to_string(endSector));
        frame_ = sector * disc::framesPerSector;
        end_ = playableEnd(sector, endSector) * disc::framesPerSector;
        mode_ = frame_ < end_ ? disc::PlayerMode::playing : disc::PlayerMode::stopped;
        return {};
    }
    void pause() override {
        calls.push_back("pause");
        mode_ = disc::PlayerMode::paused;
    }
    void resume() override {
        calls.push_back("resume");
        mode_ = disc::PlayerMode::playing;
    }
    void stop() override {
        calls.push_back("stop");
        mode_ = disc::PlayerMode::stopped;
    }
    void seek(std::int64_t sector) override {
        calls.push_back("seek " + std::to_string(sector));
        frame_ = sector * disc::framesPerSector;
        mode_ = disc::PlayerMode::stopped;
    }
    [[nodiscard]] disc::PlayerMode mode() override { return mode_; }
    [[nodiscard]] std::int64_t positionInFrames() override { return frame_; }
    [[nodiscard]] std::chrono::milliseconds readingFor() override { return reading; }
    [[nodiscard]] bool gone() override { return isGone; }

    /// Advances the position by `frames` if the transport is playing.
    void advance(std::int64_t frames) {
        if (mode_ != disc::PlayerMode::playing) {
            return;
        }
        frame_ = std::min(frame_ + frames, end_);
        if (frame_ == end_) {
            mode_ = disc::PlayerMode::stopped;
        }
    }

    std::vector<std::string> calls;
    std::chrono::milliseconds reading{0};
    bool isGone = false;
    bool refusesToPlay = false;

  private:
    [[nodiscard]] std::int64_t playableEnd(std::int64_t sector, std::int64_t endSector) const {
        const disc::Table& table = disc_->table();
        for (int track = 1; track <= static_cast<int>(table.tracks.size()); ++track) {
            const bool data =
                table.tracks[static_cast<std::size_t>(track - 1)].kind == disc::TrackKind::data;
            if (data && table.start(track) >= sector) {
                return std::min(endSector, table.start(track));
            }
        }
        return endSector;
    }

    std::shared_ptr<disc::Disc> disc_;
    FakeTransport*& seat_;
    std::int64_t frame_ = 0;
    std::int64_t end_ = 0;
    disc::PlayerMode mode_ = disc::PlayerMode::stopped;
};

/// State shared by all recorders, so that tests can read and set it: a recorder itself belongs to
/// its device.
struct RecorderState {
    std::int64_t bytes = 0; ///< number of bytes recorded; set by the test
    int channels = 0;       ///< argument of the latest successful start()
    int living = 0;         ///< number of recorders that exist
    bool recording = false;
    bool busy = false;       ///< makes start() fail as if another recorder were recording
    bool unwritable = false; ///< makes start() and save() fail
    std::vector<std::filesystem::path> saved;
};

class FakeRecorder : public mci::Recorder {
  public:
    explicit FakeRecorder(RecorderState& state) : state_(state) { ++state_.living; }
    ~FakeRecorder() override {
        --state_.living;
        state_.recording = false;
    }
    Status start(int channels) override {
        if (state_.busy) {
            return {ErrorNumber::deviceUnavailable, "busy"};
        }
        if (state_.unwritable) {
            return {ErrorNumber::pathFileAccess, "read-only"};
        }
        state_.channels = channels;
        state_.recording = true;
        return {};
    }
    void stop() override { state_.recording = false; }
    [[nodiscard]] bool recording() const override { return state_.recording; }
    [[nodiscard]] std::int64_t bytes() override { return state_.bytes; }
    Status save(const std::filesystem::path& path) override {
        if (state_.unwritable) {
            return {ErrorNumber::diskFull, "full"};
        }
        state_.saved.push_back(path);
        return {};
    }

  private:
    RecorderState& state_;
};

/// A machine of fakes. It must outlive the interpreter that is created with its devices().
struct FakeMachine {
    std::shared_ptr<FakeDrive> drive;   ///< if this is a null pointer, the machine has no drive
    FakeTransport* transport = nullptr; ///< the transport created last, while it exists
    RecorderState recorder;
    test::FakeNotices notices;

    mci::Devices devices() {
        mci::Devices devices;
        devices.drive = [this] {
            return drive;
        };
        devices.transport = [this](std::shared_ptr<disc::Disc> disc) {
            return std::make_unique<FakeTransport>(std::move(disc), transport);
        };
        devices.recorder = [this] {
            return std::make_unique<FakeRecorder>(recorder);
        };
        // Maps "c:\x y\a.wav" to "/x y/a.wav"; no other drive exists.
        devices.path = [](const std::string& path) -> std::filesystem::path {
            if (path.size() < 2 || (path[0] != 'c' && path[0] != 'C') || path[1] != ':') {
                return {};
            }
            std::string mapped = path.substr(2);
            std::replace(mapped.begin(), mapped.end(), '\\', '/');
            return mapped;
        };
        devices.notices = &notices;
        return devices;
    }
};

} // namespace sonarith::fakes
