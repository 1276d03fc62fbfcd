// SPDX-License-Identifier: GPL-3.0-or-later
// A disc and a recorder as the command interface shows them, on the virtual clock: the position
// moves while it plays, the bytes grow while it records, a save is remembered. For
// ScriptedMediaControl::device; it knows the commands of inspection and extraction and fails
// others.
//
//     SimulatedDisc disc(loop, {185000, 240000});
//     media.device = disc.device();
#pragma once

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/event_loop.h"
#include "support/scripted_media_control.h"

namespace sonarith::test {

struct SavedCapture {
    std::string path;
    std::int64_t bytes = 0;

    bool operator==(const SavedCapture&) const = default;
};

class SimulatedDisc {
  public:
    /// The status of a command that the state does not allow or the device does not know.
    static constexpr int refused = 263;

    SimulatedDisc(EventLoop& loop, std::vector<std::int32_t> lengthsMs)
        : loop_(loop), lengthsMs_(std::move(lengthsMs)) {}

    std::string identity = "48213906";
    /// Every save that had a recording to save, oldest first.
    std::vector<SavedCapture> saved;
    /// Runs for each of them.
    std::function<void(const SavedCapture&)> onSave;

    [[nodiscard]] bool discOpen() const { return discOpen_; }
    [[nodiscard]] bool recorderOpen() const { return recorderOpen_; }
    [[nodiscard]] bool playing() const { return playing_; }
    [[nodiscard]] bool recording() const { return recording_; }

    [[nodiscard]] std::function<MciAnswer(std::string_view)> device() {
        return [this](std::string_view command) {
            return answer(command);
        };
    }

    MciAnswer answer(std::string_view command) {
        if (command == "open cdaudio alias cd") {
            return std::exchange(discOpen_, true) ? failure() : done();
        }
        if (command == "open new type waveaudio alias capture") {
            return std::exchange(recorderOpen_, true) ? failure() : done();
        }
        if (mentions(command, "cd")) {
            return discOpen_ ? answerOfDisc(command) : failure();
        }
        return recorderOpen_ ? answerOfRecorder(command) : failure();
    }

  private:
    static MciAnswer failure() { return {refused, ""}; }
    static MciAnswer done(std::string reply = {}) { return {mciSuccess, std::move(reply)}; }

    /// Whether `word` is the command's second word: the alias it goes to.
    static bool mentions(std::string_view command, std::string_view word) {
        const std::size_t start = command.find(' ') + 1;
        return command.substr(start, command.find(' ', start) - start) == word;
    }
    static std::optional<std::int64_t> numberBehind(std::string_view command,
                                                    std::string_view words) {
        const std::size_t at = command.find(words);
        std::int64_t number = 0;
        if (at == std::string_view::npos || std::from_chars(command.data() + at + words.size(),
                                                            command.data() + command.size(), number)
                                                    .ec != std::errc()) {
            return std::nullopt;
        }
        return number;
    }

    MciAnswer answerOfDisc(std::string_view command) {
        if (command == "close cd") {
            playing_ = false;
            discOpen_ = false;
            return done();
        }
        if (command == "stop cd") {
            positionMs_ = position();
            playing_ = false;
            return done();
        }
        if (command.starts_with("play cd")) {
            positionMs_ = numberBehind(command, "from ").value_or(0);
            startedPlaying_ = loop_.now();
            playing_ = true;
            return done();
        }
        if (command.starts_with("set cd time format ")) {
            hms_ = command.ends_with("hms");
            return done();
        }
        if (command == "info cd identity") {
            return done(identity);
        }
        if (command == "status cd number of tracks") {
            return done(std::to_string(lengthsMs_.size()));
        }
        if (command == "status cd position") {
            return done(std::to_string(position()));
        }
        if (command == "status cd current track") {
            return done("1");
        }
        if (const auto track = numberBehind(command, "length track ")) {
            return lengthOf(*track);
        }
        return failure();
    }

    MciAnswer lengthOf(std::int64_t track) const {
        if (track < 1 || track > static_cast<std::int64_t>(lengthsMs_.size())) {
            return failure();
        }
        const int milliseconds = lengthsMs_[static_cast<std::size_t>(track - 1)];
        if (!hms_) {
            return done(std::to_string(milliseconds));
        }
        const int seconds = milliseconds / 1000;
        char text[32];
        std::snprintf(text, sizeof text, "%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
        return done(text);
    }

    MciAnswer answerOfRecorder(std::string_view command) {
        if (command == "close capture") {
            recording_ = false;
            recorderOpen_ = false;
            bytes_ = 0;
            return done();
        }
        if (command == "stop capture") {
            bytes_ = recordedBytes();
            recording_ = false;
            return done();
        }
        if (command == "record capture overwrite") {
            startedRecording_ = loop_.now();
            recording_ = true;
            return done();
        }
        if (command == "status capture length") {
            return done(std::to_string(recordedBytes()));
        }
        if (command == "set capture time format bytes") {
            return done();
        }
        if (const auto rate = numberBehind(command, "bytespersec ")) {
            bytesPerSecond_ = *rate;
            return *rate > 0 ? done() : failure();
        }
        if (command.starts_with("save capture ")) {
            saved.push_back({std::string(command.substr(13)), recordedBytes()});
            if (onSave) {
                onSave(saved.back());
            }
            return done();
        }
        return failure();
    }

    [[nodiscard]] std::int64_t position() const {
        return playing_ ? positionMs_ + (loop_.now() - startedPlaying_).count() : positionMs_;
    }
    [[nodiscard]] std::int64_t recordedBytes() const {
        return recording_ ? (loop_.now() - startedRecording_).count() * bytesPerSecond_ / 1000
                          : bytes_;
    }

    EventLoop& loop_;
    std::vector<std::int32_t> lengthsMs_;
    bool discOpen_ = false;
    bool playing_ = false;
    bool hms_ = false;
    std::int64_t positionMs_ = 0;
    EventLoop::Time startedPlaying_{};
    bool recorderOpen_ = false;
    bool recording_ = false;
    std::int64_t bytesPerSecond_ = 0;
    std::int64_t bytes_ = 0;
    EventLoop::Time startedRecording_{};
};

} // namespace sonarith::test
