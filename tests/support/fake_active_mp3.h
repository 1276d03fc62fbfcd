// SPDX-License-Identifier: GPL-3.0-or-later
// The MP3 control for tests, in virtual time over files in memory: a decoding takes as long as is
// set, and leaves a WAV file at its end or when it is stopped.
//
//     FakeActiveMP3 mp3{loop, disk};
//     mp3.duration = 2000ms;                       // of every decoding from now on
//     mp3.length = 8;                              // Position runs from 0 to it
//     EXPECT_THAT(mp3.log, ElementsAre("SourceFile c:\\a.mp3", "DecodeToWav c:\\a.wav", "Stop"));
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/active_mp3.h"
#include "support/fake_file_system.h"
#include "support/virtual_event_loop.h"

namespace sonarith::test {

class FakeActiveMP3 final : public ActiveMP3 {
  public:
    FakeActiveMP3(VirtualEventLoop& loop, FakeFileSystem& files) : loop_(loop), files_(files) {}

    // --- what a test sets up ---------------------------------------------------------------

    std::chrono::milliseconds duration{1000};
    std::int32_t length = 1000;
    /// In place of the position that follows from the time.
    std::optional<std::int32_t> position;
    /// The Error of every setting of the source, of every start and of every stop.
    std::optional<Error> failSource;
    std::optional<Error> failDecode;
    std::optional<Error> failStop;
    /// Runs at each call that is logged, with what is logged.
    std::function<void(const std::string&)> onCall;
    /// Bytes of a whole result, and of one that was stopped.
    std::size_t wholeBytes = 4000;
    std::size_t partialBytes = 400;

    // --- what a test looks at --------------------------------------------------------------

    /// Calls that change something, oldest first.
    std::vector<std::string> log;
    /// Reads of Busy, Length and Position, oldest first.
    mutable std::vector<std::string> reads;
    /// Results written, whole ones alone.
    std::vector<std::string> finished;

    // --- the control -------------------------------------------------------------------------

    Status setSourceFile(const std::string& path) override {
        note("SourceFile " + path);
        if (failSource) {
            return *failSource;
        }
        source_ = path;
        return {};
    }
    [[nodiscard]] bool Busy() const override {
        reads.emplace_back("Busy");
        return running();
    }
    [[nodiscard]] std::int32_t Position() const override {
        reads.emplace_back("Position");
        if (position) {
            return *position;
        }
        const auto done = std::min(loop_.now() - begun_, duration);
        return static_cast<std::int32_t>(length * done.count() / duration.count());
    }
    [[nodiscard]] std::int32_t Length() const override {
        reads.emplace_back("Length");
        return length;
    }
    Status Play() override {
        note("Play");
        return {};
    }
    Status Stop() override {
        note("Stop");
        if (running()) {
            files_.addFile(job_->target, std::string(partialBytes, 'p'));
        }
        job_.reset();
        return failStop ? Status(*failStop) : Status();
    }
    Status DecodeToWav(const std::string& path) override {
        note("DecodeToWav " + path);
        if (failDecode) {
            return *failDecode;
        }
        if (job_ && job_->source == source_ && job_->target == path) {
            return {};
        }
        begun_ = loop_.now();
        job_ = Job{source_, path};
        const int number = ++started_;
        loop_.after(duration, [this, number] { finish(number); });
        return {};
    }

  private:
    struct Job {
        std::string source;
        std::string target;
        bool done = false;
    };

    [[nodiscard]] bool running() const { return job_ && !job_->done; }
    void note(const std::string& call) {
        log.push_back(call);
        if (onCall) {
            onCall(call);
        }
    }
    void finish(int number) {
        if (number == started_ && running()) {
            job_->done = true;
            files_.addFile(job_->target, std::string(wholeBytes, 'w'));
            finished.push_back(job_->target);
        }
    }

    VirtualEventLoop& loop_;
    FakeFileSystem& files_;
    std::string source_;
    std::optional<Job> job_;
    std::chrono::milliseconds begun_{0};
    int started_ = 0;
};

} // namespace sonarith::test
