// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes on all cores: several threads take segments in the order of the stream and write their
// samples to their positions in the WAV. From a frame that the library gives up, one thread
// continues alone; likewise on a full disk, so that the WAV contains the beginning of the sound
// without gaps. It neither opens nor names the WAV.
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
    /// About 27 seconds: 3 of 100 frames are decoded twice, and a song still has enough segments
    /// for all cores.
    std::int64_t framesPerSegment = 1024;
    /// If the system cannot start all threads, fewer threads do the work.
    ThreadStarter starter = startThread;
};

/// The result of a decoding, by either method.
struct Decoded {
    /// The WAV has every sample up to this one, per channel.
    std::int64_t samples = 0;
    bool complete = false; ///< these are all samples of the stream
    /// From this frame on one decoder decoded the stream; empty if that was not needed.
    std::optional<std::int64_t> sequentialFrom;
    /// Why the result is not complete; empty after a stop. The samples before the failure are in
    /// the WAV.
    std::optional<DecodeFailure> failure;
    DecodeCount count; ///< of the whole stream, or of the part examined before the end
};

/// The WAV always contains every sample before Decoded::samples: `run` may be stopped, and a read
/// or a write may fail, at any time.
class SegmentWorkers {
  public:
    /// All arguments must outlive the object. Precondition: `frames` are of Layer III and at their
    /// beginning.
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
