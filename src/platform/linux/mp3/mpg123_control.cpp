// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mpg123_control.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "platform/linux/mp3/mp3_player_source.h"

namespace sonarith::mp3 {

namespace fs = std::filesystem;

namespace {

const Error noSourceFile{ErrorNumber::invalidPropertyValue, "no source file is set"};

} // namespace

Division divisionForThisMachine() {
    constexpr unsigned most = 32; // each takes half a megabyte, and no disk feeds more
    Division division;
    division.threads = std::clamp(std::thread::hardware_concurrency(), 1U, most);
    return division;
}

Mpg123Control::Mpg123Control(sound::SoundCard& card, Clock clock, PathMapper mapPath,
                             const Division& division)
    : card_(card), clock_(std::move(clock)), mapPath_(std::move(mapPath)), division_(division) {}

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
    const Result<std::shared_ptr<Mp3PlayerSource>> opened =
        Mp3PlayerSource::open(mapPath_(sourceFile_));
    if (!opened.ok()) {
        return opened.error();
    }
    playing_ = opened.value();
    card_.attach(sound::Line::waveOut, playing_, clock_());
    return {};
}

Status Mpg123Control::Stop() {
    endPlaying();
    if (job_) {
        job_->stop();
    }
    return {};
}

Status Mpg123Control::DecodeToWav(const std::string& path) {
    if (sourceFile_.empty()) {
        return noSourceFile;
    }
    const fs::path source = mapPath_(sourceFile_);
    const fs::path target = mapPath_(path);
    if (job_ && job_->isFor(source, target) && (job_->busy() || job_->stillHolds())) {
        return {};
    }
    job_.reset(); // stops it before the next one begins
    job_ = std::make_unique<DecodeJob>(source, target, division_);
    return {};
}

DecodeResult Mpg123Control::lastResult() const {
    return job_ && !job_->busy() ? job_->result() : DecodeResult{};
}

void Mpg123Control::endPlaying() {
    // The card lets go of a source that has come to its end, or that somebody else's has replaced:
    // then the line is not ours to detach.
    if (playing_.use_count() > 1) {
        card_.detach(sound::Line::waveOut);
    }
    playing_.reset();
}

} // namespace sonarith::mp3
