// SPDX-License-Identifier: GPL-3.0-or-later
// MP3 controls for tests, in virtual time with files in memory. A decoding takes a configured time
// and creates a WAV file when it ends or is stopped. All controls share one configuration and one
// log.
//
//     FakeMp3Controls mp3{loop, disk};
//     mp3.duration = 2000ms;                       // of every decoding from now on
//     mp3.length = 8;                              // Position runs from 0 to 8
//     EXPECT_THAT(mp3.log, ElementsAre("SourceFile c:\\a.mp3", "DecodeToWav c:\\a.wav", "Stop"));
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/active_mp3.h"
#include "support/fake_file_system.h"
#include "support/virtual_event_loop.h"

namespace sonarith::test {

class FakeMp3Controls final : public Mp3Controls {
  public:
    FakeMp3Controls(VirtualEventLoop& loop, FakeFileSystem& files) : loop_(loop), files_(files) {}

    // --- set by the test -------------------------------------------------------------------

    std::chrono::milliseconds duration{1000};
    std::int32_t length = 1000;
    /// If set, Position() returns it instead of a value derived from the time.
    std::optional<std::int32_t> position;
    /// Errors that every setSourceFile(), DecodeToWav() and Stop() return, if set.
    std::optional<Error> failSource;
    std::optional<Error> failDecode;
    std::optional<Error> failStop;
    /// Runs at each logged call, with the log entry.
    std::function<void(const std::string&)> onCall;
    /// Size in bytes of the WAV file of a completed decoding, and of a stopped decoding.
    std::size_t wholeBytes = 4000;
    std::size_t partialBytes = 400;

    // --- read by the test ------------------------------------------------------------------

    /// Calls of the functions that change something, oldest first.
    std::vector<std::string> log;
    /// Calls of Busy(), Length() and Position(), oldest first.
    std::vector<std::string> reads;
    /// Paths of the WAV files of completed decodings, oldest first.
    std::vector<std::string> finished;
    /// Number of controls created so far.
    int created = 0;
    /// Whether any control is decoding.
    [[nodiscard]] bool busy() const {
        return std::any_of(jobs_.begin(), jobs_.end(), [](const auto& known) {
            const auto job = known.lock();
            return job && !job->done;
        });
    }

    std::unique_ptr<ActiveMP3> create() override {
        ++created;
        return std::make_unique<Control>(*this);
    }

  private:
    struct Job {
        std::string source;
        std::string target;
        std::chrono::milliseconds begun{0};
        bool done = false;
    };

    class Control final : public ActiveMP3 {
      public:
        explicit Control(FakeMp3Controls& all) : all_(all) {}

        Status setSourceFile(const std::string& path) override {
            all_.note("SourceFile " + path);
            if (all_.failSource) {
                return *all_.failSource;
            }
            source_ = path;
            return {};
        }
        [[nodiscard]] bool Busy() const override {
            all_.reads.emplace_back("Busy");
            return running();
        }
        [[nodiscard]] std::int32_t Position() const override {
            all_.reads.emplace_back("Position");
            if (all_.position) {
                return *all_.position;
            }
            const auto passed = all_.loop_.now() - (job_ ? job_->begun : all_.loop_.now());
            return static_cast<std::int32_t>(all_.length * std::min(passed, all_.duration).count() /
                                             all_.duration.count());
        }
        [[nodiscard]] std::int32_t Length() const override {
            all_.reads.emplace_back("Length");
            return all_.length;
        }
        Status Play() override {
            all_.note("Play");
            return {};
        }
        Status Stop() override {
            all_.note("Stop");
            if (running()) {
                all_.files_.addFile(job_->target, std::string(all_.partialBytes, 'p'));
            }
            job_.reset();
            return all_.failStop ? Status(*all_.failStop) : Status();
        }
        Status DecodeToWav(const std::string& path) override {
            all_.note("DecodeToWav " + path);
            if (all_.failDecode) {
                return *all_.failDecode;
            }
            if (job_ && job_->source == source_ && job_->target == path) {
                return {};
            }
            job_ = std::make_shared<Job>(Job{source_, path, all_.loop_.now()});
            all_.jobs_.push_back(job_);
            // The job no longer exists if it was stopped or replaced, or if its control was
            // destroyed.
            all_.loop_.after(all_.duration, [&all = all_, job = std::weak_ptr<Job>(job_)] {
                if (const auto kept = job.lock()) {
                    kept->done = true;
                    all.files_.addFile(kept->target, std::string(all.wholeBytes, 'w'));
                    all.finished.push_back(kept->target);
                }
            });
            return {};
        }

      private:
        [[nodiscard]] bool running() const { return job_ && !job_->done; }

        FakeMp3Controls& all_;
        std::string source_;
        std::shared_ptr<Job> job_;
    };

    void note(const std::string& call) {
        log.push_back(call);
        if (onCall) {
            onCall(call);
        }
    }

    VirtualEventLoop& loop_;
    FakeFileSystem& files_;
    std::vector<std::weak_ptr<Job>> jobs_;
};

} // namespace sonarith::test
