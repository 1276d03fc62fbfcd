// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/decode_job.h"

#include <system_error>
#include <utility>
#include <vector>

#include "platform/linux/mp3/frame_sequence.h"

namespace sonarith::mp3 {

namespace fs = std::filesystem;

namespace {

DecodeResult failed(const Error& error) {
    DecodeResult result;
    result.outcome = DecodeOutcome::failed;
    result.error = error;
    return result;
}

} // namespace

DecodeJob::DecodeJob(fs::path source, fs::path target, const Division& division)
    : source_(std::move(source)), target_(std::move(target)), division_(division) {
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error& error) {
        result_ = failed({ErrorNumber::deviceUnavailable, error.what()});
        busy_ = false;
    }
}

void DecodeJob::stop() {
    stop_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
}

bool DecodeJob::isFor(const fs::path& source, const fs::path& target) const {
    return source == source_ && target == target_;
}

bool DecodeJob::stillHolds() const {
    return !busy_ && result_.outcome == DecodeOutcome::completed && sourceIdentity_ &&
           targetIdentity_ && FileIdentity::of(source_) == sourceIdentity_ &&
           FileIdentity::of(target_) == targetIdentity_;
}

void DecodeJob::run() {
    result_ = decode();
    if (result_.outcome == DecodeOutcome::completed) {
        progress_.raiseTo(progress_.total());
        targetIdentity_ = FileIdentity::of(target_);
    }
    busy_ = false;
}

DecodeResult DecodeJob::decode() {
    const Result<std::unique_ptr<FileSource>> opened = FileSource::open(source_, stop_);
    if (!opened.ok()) {
        return failed(opened.error());
    }
    const FileSource& source = *opened.value();
    sourceIdentity_ = source.identity();
    progress_.setTotal(source.size());
    // Opened for its format even where the segments do the work: it looks no further than to the
    // first frame.
    const Result<std::unique_ptr<PcmReader>> reader = openPcmReader(source);
    const FrameSequence frames(source);
    const bool divisible = division_.threads > 1 && frames.format() && frames.format()->layer == 3;
    DecodeResult result;
    if (stop_) {
        result.outcome = DecodeOutcome::stopped;
        return result;
    }
    if (!reader.ok()) {
        return failed(reader.error());
    }
    if (!reader.value()) {
        result.outcome = DecodeOutcome::noFrames;
        return result;
    }
    result.format = reader.value()->format();
    const Result<std::unique_ptr<WavTarget>> made = WavTarget::create(target_, result.format);
    if (!made.ok()) {
        return failed(made.error());
    }
    WavTarget& target = *made.value();
    Decoded decoded;
    if (divisible) {
        decoded = SegmentWorkers(source, frames, target, division_, stop_, progress_).run();
        result.road = decoded.sequentialFrom ? DecodeRoad::mixed : DecodeRoad::segments;
    } else {
        decoded = decodeSequentially(*reader.value(), target);
        result.road = DecodeRoad::sequential;
    }
    finish(decoded, target, result);
    return result;
}

Decoded DecodeJob::decodeSequentially(PcmReader& reader, WavTarget& target) {
    constexpr std::size_t samplesPerBatch = 64 * 1024; // so that the system calls do not count
    Decoded decoded;
    std::vector<std::int16_t> batch;
    const int channels = reader.format().channels;
    for (bool more = !stop_; more && !decoded.failure;) {
        const std::span<const std::int16_t> samples = reader.next();
        more = !samples.empty() && !stop_;
        batch.insert(batch.end(), samples.begin(), samples.end());
        if (!more || batch.size() >= samplesPerBatch) {
            const Status placed = target.place(decoded.samples, batch);
            if (!placed.ok()) {
                decoded.failure = placed.error();
            } else {
                decoded.samples += static_cast<std::int64_t>(batch.size()) / channels;
            }
            batch.clear();
            progress_.raiseTo(reader.sourcePosition());
        }
    }
    decoded.stopped = stop_;
    if (!decoded.stopped && !decoded.failure) {
        decoded.failure = reader.failure();
    }
    decoded.count = reader.count();
    return decoded;
}

/// Names the WAV, or leaves it to vanish.
void DecodeJob::finish(const Decoded& decoded, WavTarget& target, DecodeResult& result) const {
    result.count = decoded.count;
    std::optional<Error> failure = decoded.failure;
    result.outcome = decoded.stopped ? DecodeOutcome::stopped : DecodeOutcome::completed;
    if (!decoded.stopped && decoded.samples == 0) {
        result.outcome = DecodeOutcome::noFrames; // a tag's frame alone
    }
    // Without a sample, what stands under the name stays: it would be replaced by nothing.
    if (!failure && decoded.samples > 0) {
        if (const Status finished = target.finish(decoded.samples); !finished.ok()) {
            failure = finished.error();
        } else {
            result.samples = decoded.samples;
        }
    }
    if (failure) {
        result.outcome = DecodeOutcome::failed;
        result.error = failure;
    }
}

} // namespace sonarith::mp3
