// SPDX-License-Identifier: GPL-3.0-or-later
// Simulates a disc and a recorder that are controlled by device commands. While they run,
// the disc's position and the number of recorded bytes grow with the time of an event loop. Each
// save of a recording is logged. The test assigns device() to ScriptedMediaControl::device.
// Supports the commands that the player, the extraction and the inspection of a disc send. Most
// other commands fail.
//
//     SimulatedDisc disc(loop, {185000, 240000});
//     media.device = disc.device();
//     disc.remove();
//     disc.insert({60000, 60000, 60000});
#pragma once

#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <numeric>
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
    /// The status of a command that is not supported, or not allowed in the current state.
    static constexpr int refused = 263;

    SimulatedDisc(EventLoop& loop, std::vector<std::int32_t> lengthsMs)
        : loop_(loop), lengthsMs_(std::move(lengthsMs)) {}

    std::string identity = "48213906";
    /// Every save of a recording, oldest first.
    std::vector<SavedCapture> saved;
    /// Called for each save.
    std::function<void(const SavedCapture&)> onSave;

    /// Removes the disc from the drive.
    void remove() {
        present_ = false;
        moveTo(0);
    }
    /// Inserts a disc with tracks of these lengths in place of the present disc, if any.
    void insert(std::vector<std::int32_t> lengthsMs) {
        lengthsMs_ = std::move(lengthsMs);
        present_ = true;
        moveTo(0);
    }

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
        for (const std::string_view word : {" shareable", " wait"}) {
            if (command.ends_with(word)) {
                command.remove_suffix(word.size());
            }
        }
        if (command == "close all") {
            answer("close cd");
            answer("close capture");
            return done();
        }
        if (command == "open cdaudio alias cd") {
            if (std::exchange(discOpen_, true)) {
                return failure();
            }
            moveTo(0);
            return done();
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

    /// Whether `word` is the command's second word, the alias of the device.
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
            moveTo(0);
            discOpen_ = false;
            return done();
        }
        if (command == "stop cd" || command == "pause cd") {
            paused_ = command == "pause cd" && playing_;
            positionMs_ = position();
            playing_ = false;
            return done();
        }
        if (command.starts_with("set cd ")) {
            return set(command);
        }
        if (command == "status cd media present") {
            return done(present_ ? "true" : "false");
        }
        return present_ ? answerOfMedium(command) : failure();
    }

    MciAnswer set(std::string_view command) {
        if (command == "set cd door open") {
            remove();
            return done();
        }
        format_ = command.ends_with("hms")    ? Format::hms
                  : command.ends_with("tmsf") ? Format::tmsf
                                              : Format::milliseconds;
        return done();
    }

    MciAnswer answerOfMedium(std::string_view command) {
        if (command.starts_with("play cd") || command.starts_with("seek cd to ")) {
            const bool plays = command.starts_with("play cd");
            const auto place = numberBehind(command, plays ? "from " : "to ");
            const auto wanted = place ? placeOf(*place) : position();
            if (!wanted) {
                return failure();
            }
            moveTo(*wanted);
            startedPlaying_ = loop_.now();
            playing_ = plays;
            return done();
        }
        if (command == "info cd identity") {
            return done(identity);
        }
        if (command == "status cd number of tracks") {
            return done(std::to_string(lengthsMs_.size()));
        }
        if (command == "status cd position") {
            return done(format_ == Format::tmsf ? positionInTracks() : std::to_string(position()));
        }
        if (command == "status cd current track") {
            return done("1");
        }
        if (command == "status cd mode") {
            return done(playing_ && position() < startOf(lengthsMs_.size() + 1) ? "playing"
                        : paused_                                               ? "paused"
                                                                                : "stopped");
        }
        if (command == "status cd length") {
            return done(std::to_string(startOf(lengthsMs_.size() + 1)));
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
        if (format_ == Format::milliseconds) {
            return done(std::to_string(milliseconds));
        }
        const int seconds = milliseconds / 1000;
        if (format_ == Format::tmsf) {
            return done(inTwoDigits({seconds / 60, seconds % 60, milliseconds % 1000 * 75 / 1000}));
        }
        return done(inTwoDigits({seconds / 3600, seconds / 60 % 60, seconds % 60}));
    }

    /// For example "05:17:00" for 5, 17 and 0.
    static std::string inTwoDigits(std::initializer_list<std::int64_t> numbers) {
        std::string text;
        for (const std::int64_t number : numbers) {
            text += (text.empty() ? "" : ":") + std::string(number < 10 ? "0" : "") +
                    std::to_string(number);
        }
        return text;
    }

    /// Start of track number `track` in milliseconds. If `track` is one more than the number of
    /// tracks: end of the disc.
    [[nodiscard]] std::int64_t startOf(std::size_t track) const {
        return std::accumulate(lengthsMs_.begin(),
                               lengthsMs_.begin() + static_cast<std::ptrdiff_t>(track - 1),
                               std::int64_t{0});
    }
    /// Converts the number in a command to a position in milliseconds. In the time format tmsf, the
    /// number is that of a track; no value if the track does not exist. In the other formats, the
    /// number is taken as milliseconds.
    [[nodiscard]] std::optional<std::int64_t> placeOf(std::int64_t number) const {
        if (format_ != Format::tmsf) {
            return number;
        }
        if (number < 1 || number > static_cast<std::int64_t>(lengthsMs_.size())) {
            return std::nullopt;
        }
        return startOf(static_cast<std::size_t>(number));
    }
    [[nodiscard]] std::string positionInTracks() const {
        const std::int64_t place = position();
        std::size_t track = 1;
        while (track < lengthsMs_.size() && place >= startOf(track + 1)) {
            ++track;
        }
        const std::int64_t inside = place - startOf(track);
        return inTwoDigits({static_cast<std::int64_t>(track), inside / 60000, inside / 1000 % 60,
                            inside % 1000 * 75 / 1000});
    }

    void moveTo(std::int64_t place) {
        positionMs_ = place;
        playing_ = false;
        paused_ = false;
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
    bool present_ = true;
    bool playing_ = false;
    bool paused_ = false;
    enum class Format { milliseconds, hms, tmsf } format_ = Format::milliseconds;
    std::int64_t positionMs_ = 0;
    EventLoop::Time startedPlaying_{};
    bool recorderOpen_ = false;
    bool recording_ = false;
    std::int64_t bytesPerSecond_ = 0;
    std::int64_t bytes_ = 0;
    EventLoop::Time startedRecording_{};
};

} // namespace sonarith::test
