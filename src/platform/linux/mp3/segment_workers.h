// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes on all cores: several threads take segments in the order of the stream and write the
// samples of each segment to its position in the WAV file. From the first segment with a broken
// frame on, one thread continues alone. When the disk becomes full, parts of a segment can be
// missing while later segments are already written. Then all samples after the first missing part
// are dropped. This frees disk space, and one thread continues alone in that space. So the WAV file
// contains the beginning of the sound without gaps. The caller opens and names the WAV file.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/decode_failure.h"
#include "platform/linux/mp3/progress.h"
#include "platform/linux/mp3/segment_decoder.h"
#include "platform/linux/mp3/segment_schedule.h"
#include "platform/linux/mp3/wav_target.h"
#include "platform/thread_start.h"

namespace sonarith::mp3 {

/// How the work is divided.
struct Division {
    unsigned threads = 1;
    /// About 27 seconds of sound. With this length, 3 of 100 frames are decoded twice, and a song
    /// still has enough segments for all cores.
    std::int64_t framesPerSegment = 1024;
    /// Starts the threads that work beside the calling thread. If a start fails, fewer threads do
    /// the work.
    ThreadStarter starter = startThread;
};

/// The result of a decoding on one thread or on several.
struct Decoded {
    /// The WAV contains this many samples per channel from the beginning, without a gap.
    std::int64_t samples = 0;
    bool complete = false; ///< whether these are all samples of the stream
    /// The number of the frame from which SegmentWorkers continued with a single decoder; empty if
    /// it did not.
    std::optional<std::int64_t> sequentialFrom;
    /// Why the result is not complete; empty if it is complete or the decoding was stopped. The
    /// samples before the failure are in the WAV.
    std::optional<DecodeFailure> failure;
    /// The counts of the whole stream, or of the part that was scanned before a stop or a failure.
    DecodeCount count;
};

/// `run` may be stopped at any time, and a read or a write may fail. In these cases, too, the WAV
/// contains the first Decoded::samples samples of each channel.
class SegmentWorkers {
  public:
    /// All arguments passed by reference must outlive the object. Precondition: the stream is
    /// Layer III, and next() has not been called on `frames` yet.
    SegmentWorkers(const ByteSource& source, FrameSequence frames, WavTarget& target,
                   const Division& division, const std::atomic<bool>& stop, Progress& progress);

    /// Returns when everything is decoded, or soon after a stop or a failure. May be called once.
    [[nodiscard]] Decoded run();

  private:
    void work(std::size_t worker);
    [[nodiscard]] SegmentOutcome decode(const Segment& segment, std::size_t worker);
    [[nodiscard]] bool makeRoomBehind(const DecodeFailure& failure, std::int64_t frames);
    [[nodiscard]] std::int64_t decodeRest(const Segment& rest, Decoded& decoded);

    const ByteSource& source_;
    StreamFormat format_;
    GaplessTrim trim_;
    WavTarget& target_;
    std::size_t workers_;
    const ThreadStarter& starter_;
    const std::atomic<bool>& stop_;
    Progress& progress_;
    SegmentSchedule schedule_;
};

} // namespace sonarith::mp3
