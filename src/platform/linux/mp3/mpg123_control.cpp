// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mpg123_control.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/linux/mp3/decode_notice.h"

namespace sonarith::mp3 {

using namespace std::chrono_literals;

namespace {

const Error noSourceFile{ErrorNumber::invalidPropertyValue, "no source file is set"};

/// Within this time a working disk has stored and named the WAV of a stopped decoding. The wait is
/// too short for the user to notice.
constexpr std::chrono::milliseconds stopPatience{40};
/// If a completed decoding is requested again, a working disk reports within this time whether the
/// source file or the WAV has changed since that decoding.
constexpr std::chrono::milliseconds checkTimeout{20};

/// The file name in `path`, which is a path of the logic or a machine path.
std::string nameIn(const std::string& path) {
    return path.substr(path.find_last_of("\\/") + 1);
}

} // namespace

/// Reports the results of one control's decodings. The logic may restart a failed decoding once
/// without a command from the user; if the second failure has the same text, it is not reported.
class Mpg123Control::Reporter {
  public:
    explicit Reporter(Notices& notices) : notices_(notices) {}

    void report(const DecodeNames& names, const DecodeResult& result) {
        std::string text = decodeNotice(names, result);
        {
            const std::lock_guard lock(mutex_);
            if (text.empty() || text == last_) {
                return;
            }
            last_ = text;
        }
        notices_.report({std::move(text)});
    }
    /// Called when the next decoding will not be a restart of the previous one: if the next
    /// decoding fails, the failure is reported even if its text is the same as before.
    void forget() {
        const std::lock_guard lock(mutex_);
        last_.clear();
    }

  private:
    Notices& notices_;
    std::mutex mutex_;
    std::string last_;
};

Division divisionForThisMachine() {
    constexpr unsigned most = 32; // no disk is fast enough for more threads; each takes 0.5 MB
    Division division;
    division.threads = std::clamp(std::thread::hardware_concurrency(), 1U, most);
    return division;
}

Mpg123Control::Mpg123Control(sound::SoundCard& card, Clock clock, PathMapper mapPath,
                             Notices& notices, std::shared_ptr<sound::PendingSaves> saves,
                             const Division& division)
    : card_(card),
      clock_(std::move(clock)),
      mapPath_(std::move(mapPath)),
      division_(division),
      saves_(std::move(saves)),
      reporter_(std::make_shared<Reporter>(notices)) {}

Mpg123Control::~Mpg123Control() {
    Stop().passOver();
}

Status Mpg123Control::setSourceFile(const std::string& path) {
    sourceFile_ = path;
    return {};
}

bool Mpg123Control::Busy() const {
    return job_ && job_->busy();
}

std::int32_t Mpg123Control::Position() const {
    return job_ ? job_->progress().position() : 0;
}

std::int32_t Mpg123Control::Length() const {
    return job_ ? Progress::length : 0;
}

Status Mpg123Control::Play() {
    endPlaying();
    if (sourceFile_.empty()) {
        return noSourceFile;
    }
    playing_ = std::make_shared<Mp3PlayerSource>(mapPath_(sourceFile_), clock_);
    card_.attach(sound::Line::waveOut, playing_, clock_());
    return {};
}

Status Mpg123Control::Stop() {
    endPlaying();
    if (job_) {
        job_->stop(stopPatience);
    }
    reporter_->forget();
    return {};
}

Status Mpg123Control::DecodeToWav(const std::string& path) {
    if (sourceFile_.empty()) {
        return noSourceFile;
    }
    const DecodeOrder order{mapPath_(sourceFile_), mapPath_(path), division_};
    std::optional<CompletedDecoding> former;
    if (job_ && job_->isFor(order)) {
        if (job_->busy()) {
            return {};
        }
        former = job_->completed();
    } else {
        reporter_->forget();
    }
    const DecodeNames names{nameIn(sourceFile_), nameIn(path), order.target.parent_path()};
    const bool mayReuse = former.has_value();
    job_.reset(); // stops the previous decoding before the next one begins
    job_ = std::make_unique<DecodeJob>(
        order,
        [reporter = reporter_, names](const DecodeResult& result) {
            reporter->report(names, result);
        },
        saves_, std::move(former));
    if (mayReuse) {
        job_->awaitEnd(checkTimeout);
    }
    return {};
}

DecodeResult Mpg123Control::lastResult() const {
    return job_ && job_->over() ? job_->result() : DecodeResult{};
}

void Mpg123Control::endPlaying() {
    if (playing_) {
        // Detaches only this source: it may have ended, and another control may use the line now.
        card_.detachSource(sound::Line::waveOut, *playing_);
        playing_.reset();
    }
}

} // namespace sonarith::mp3
