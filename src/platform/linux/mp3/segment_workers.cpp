// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/segment_workers.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

namespace sonarith::mp3 {

SegmentWorkers::SegmentWorkers(const ByteSource& source, FrameSequence frames, WavTarget& target,
                               const Division& division, const std::atomic<bool>& stop,
                               Progress& progress)
    : source_(source),
      format_(*frames.format()),
      trim_(frames.trim()),
      target_(target),
      division_(division),
      stop_(stop),
      progress_(progress),
      index_(std::move(frames), division.framesPerSegment) {}

Decoded SegmentWorkers::run() {
    std::vector<Work> works(std::max(division_.threads, 1U));
    std::vector<std::thread> threads;
    try {
        for (std::size_t i = 1; i < works.size(); ++i) {
            threads.emplace_back([this, &mine = works[i]] { work(mine); });
        }
    } catch (const std::system_error&) {
        // The system has no more threads: those that there are do it all.
    }
    work(works[0]);
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::int64_t frames = index_.count().framesDecoded;
    if (broken_ && !stop_ && !decoded_.failure) {
        frames = decodeRest(works);
    }
    decoded_.samples = trim_.keptBefore(completeFrames(works, frames) * format_.samplesPerFrame());
    decoded_.count = index_.count();
    return decoded_;
}

void SegmentWorkers::work(Work& mine) {
    while (const std::optional<Segment> segment = takeSegment(mine)) {
        const Result<SegmentEnd> end = decode(*segment, mine);
        if (!end.ok() || end.value() != SegmentEnd::complete) {
            keepEnd(*segment, end);
            return;
        }
    }
}

std::optional<Segment> SegmentWorkers::takeSegment(Work& mine) {
    const std::lock_guard lock(mutex_);
    if (ended_ || broken_) {
        return std::nullopt;
    }
    const std::optional<Segment> segment = stop_ ? std::nullopt : index_.next();
    if (segment) {
        mine = {segment->firstFrame, segment->firstFrame + segment->frames};
    } else {
        // No reason to end early for those who still decode.
        decoded_.stopped = stop_;
        if (!stop_ && index_.failure()) {
            decoded_.failure = index_.failure();
            ended_ = true;
        }
    }
    return segment;
}

Result<SegmentEnd> SegmentWorkers::decode(const Segment& segment, Work& mine) {
    return decodeSegment(
        source_, format_, trim_, segment,
        [&](std::int64_t frame, std::int64_t first, std::span<const std::int16_t> samples) {
            const auto bytesUpTo = [&](std::int64_t number) {
                return segment.sourceBytes * (number - segment.firstFrame) / segment.frames;
            };
            const Result<bool> goOn = place(first, samples);
            if (goOn.ok()) {
                progress_.add(bytesUpTo(frame) - bytesUpTo(mine.done));
                mine.done = frame;
            }
            return goOn.ok() ? Result(goOn.value() && segment.firstFrame <= brokenFrom_) : goOn;
        });
}

/// True: nobody wants an end.
Result<bool> SegmentWorkers::place(std::int64_t first, std::span<const std::int16_t> samples) {
    const Status placed = target_.place(first, samples);
    return placed.ok() ? Result(!stop_ && !ended_) : placed.error();
}

/// Keeps why a thread ends early, and has the others end too: at once, or as far as their work is
/// in vain.
void SegmentWorkers::keepEnd(const Segment& segment, const Result<SegmentEnd>& end) {
    const std::lock_guard lock(mutex_);
    if (stop_) { // a reading that the stop made fail is no failure
        decoded_.stopped = true;
        ended_ = true;
    } else if (!end.ok()) {
        decoded_.failure = end.error();
        ended_ = true;
    } else if (end.value() == SegmentEnd::broken && segment.firstFrame < brokenFrom_) {
        broken_ = segment;
        brokenFrom_ = segment.firstFrame;
    }
}

/// Goes on alone from the first broken segment to the end. All before it is complete, and without
/// broken frames, so that a fresh decoder comes to it in the same state as one from the beginning.
/// Answers the frame up to which all is there.
std::int64_t SegmentWorkers::decodeRest(std::vector<Work>& works) {
    for (Work& work : works) {
        if (work.done >= broken_->firstFrame) {
            work = {};
        }
    }
    std::int64_t frames = broken_->firstFrame;
    decoded_.sequentialFrom = frames;
    // The scan goes on with it, for what it counts and for the progress.
    std::int64_t scanned = 0;
    const Result<SegmentEnd> end = decodeSegment(
        source_, format_, trim_, *broken_,
        [&](std::int64_t frame, std::int64_t first, std::span<const std::int16_t> samples) {
            const Result<bool> goOn = place(first, samples);
            if (goOn.ok()) {
                frames = frame;
                while (scanned < frame) {
                    const std::optional<Segment> passed = index_.next();
                    scanned = passed ? passed->firstFrame + passed->frames : frame;
                    progress_.add(passed ? passed->sourceBytes : 0);
                }
            }
            return goOn;
        },
        Until::streamEnd);
    decoded_.stopped = stop_;
    if (!stop_ && !end.ok()) {
        decoded_.failure = end.error();
    }
    while (!stop_ && index_.next()) { // what comes after the last frame counts, too
    }
    return frames;
}

/// Segments are taken in order: all before the first that is not complete are.
std::int64_t SegmentWorkers::completeFrames(const std::vector<Work>& works, std::int64_t frames) {
    for (const Work& work : works) {
        if (work.done < work.end) {
            frames = std::min(frames, work.done);
        }
    }
    return frames;
}

} // namespace sonarith::mp3
