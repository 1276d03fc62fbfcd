// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/segment_workers.h"

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

namespace sonarith::mp3 {

SegmentWorkers::SegmentWorkers(const ByteSource& source, FrameSequence frames, WavTarget& target,
                               const Division& division, const std::atomic<bool>& stop,
                               Progress& progress)
    : source_(source),
      format_(frames.format()),
      trim_(frames.trim()),
      target_(target),
      workers_(std::max(division.threads, 1U)),
      starter_(division.starter),
      stop_(stop),
      progress_(progress),
      schedule_(std::move(frames), division.framesPerSegment, workers_) {}

Decoded SegmentWorkers::run() {
    std::vector<std::thread> threads;
    for (std::size_t worker = 1; worker < workers_; ++worker) {
        Result<std::thread> thread = starter_([this, worker] { work(worker); });
        if (!thread.ok()) {
            break; // the existing threads do all the work
        }
        threads.push_back(std::move(thread.value()));
    }
    work(0);
    for (std::thread& thread : threads) {
        thread.join();
    }
    Decoded decoded;
    decoded.complete = schedule_.complete();
    decoded.failure = schedule_.failure();
    std::int64_t frames = schedule_.wholeFrames();
    if (const std::optional<Segment> rest = schedule_.rest(); rest && !stop_) {
        if (!decoded.failure || makeRoomBehind(*decoded.failure, frames)) {
            frames = decodeRest(*rest, decoded);
        }
    }
    if (stop_) {
        decoded.failure.reset(); // a read that failed because of the stop is no failure
    }
    decoded.samples = trim_.keptBefore(frames * format_.samplesPerFrame());
    decoded.count = schedule_.count();
    return decoded;
}

void SegmentWorkers::work(std::size_t worker) {
    while (!stop_) {
        const std::optional<Segment> segment = schedule_.take(worker);
        if (!segment) {
            return;
        }
        const SegmentOutcome outcome = decode(*segment, worker);
        if (outcome.failure) {
            schedule_.fail(worker, *outcome.failure);
        } else if (outcome.end == SegmentEnd::broken) {
            schedule_.needOnePass(worker);
        }
    }
}

SegmentOutcome SegmentWorkers::decode(const Segment& segment, std::size_t worker) {
    return decodeSegment(
        source_, format_, trim_, segment,
        [&](std::int64_t frame, std::int64_t first, std::span<const std::int16_t> samples) {
            const auto bytesUpTo = [&](std::int64_t number) {
                return segment.sourceBytes * (number - segment.firstFrame) / segment.frames;
            };
            const Status placed = target_.place(first, samples);
            if (!placed.ok()) {
                return Result<bool>(placed.error());
            }
            progress_.add(bytesUpTo(frame) - bytesUpTo(schedule_.done(worker)));
            schedule_.advance(worker, frame);
            return Result<bool>(!stop_ && schedule_.wanted(worker));
        });
}

/// If `failure` is a full disk, drops all samples after the first `frames` frames. Frames are
/// missing between these frames and the dropped samples. The missing frames need the disk space
/// that becomes free. Returns false for any other failure, and if the samples cannot be dropped.
bool SegmentWorkers::makeRoomBehind(const DecodeFailure& failure, std::int64_t frames) {
    return failure.step == DecodeStep::writing && failure.error.number == ErrorNumber::diskFull &&
           target_.truncateTo(trim_.keptBefore(frames * format_.samplesPerFrame())).ok();
}

/// Continues from segment `rest` to the end of the stream with one decoder. Everything before the
/// segment is complete and without broken frames, so a new decoder reaches the segment in the same
/// state as a decoder that began at the first frame. All frames with numbers below the returned
/// number are in the WAV.
std::int64_t SegmentWorkers::decodeRest(const Segment& rest, Decoded& decoded) {
    std::int64_t frames = rest.firstFrame;
    decoded.sequentialFrom = frames;
    // The scan for frames follows the decoder, to update the counts and the progress.
    std::int64_t scanned = 0;
    SegmentOutcome outcome = decodeSegment(
        source_, format_, trim_, rest,
        [&](std::int64_t frame, std::int64_t first, std::span<const std::int16_t> samples) {
            const Status placed = target_.place(first, samples);
            if (!placed.ok()) {
                return Result<bool>(placed.error());
            }
            frames = frame;
            while (scanned < frame) {
                const std::optional<Segment> passed = schedule_.skim();
                scanned = passed ? passed->firstFrame + passed->frames : frame;
                progress_.add(passed ? passed->sourceBytes : 0);
            }
            return Result<bool>(!stop_);
        },
        Until::streamEnd);
    decoded.complete = outcome.end == SegmentEnd::complete;
    decoded.failure = std::move(outcome.failure);
    while (!stop_ && schedule_.skim()) { // also counts the data after the last frame
    }
    return frames;
}

} // namespace sonarith::mp3
