// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes on all cores: several threads take segments in the order of the stream and put their
// samples at their places in the WAV. From a frame on that the library gives up, one goes on alone;
// and on a full disk, so that what is there is a whole beginning.
// It neither opens nor names the WAV.
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

namespace sonarith::mp3 {

/// How the work is divided.
struct Division {
    unsigned threads = 1;
    /// Some 27 seconds: the frames that are decoded twice are 3 of 100, and a song still has
    /// enough segments for all cores.
    std::int64_t framesPerSegment = 1024;
};

/// What came of a decoding, however it was done.
struct Decoded {
    /// The WAV has every sample up to here, per channel.
    std::int64_t samples = 0;
    bool complete = false; ///< these are all of the stream
    /// From this frame on the stream was decoded by one decoder; empty if there was no need for
    /// that.
    std::optional<std::int64_t> sequentialFrom;
    /// Why it is not complete; empty after a stop. The samples before that place are there.
    std::optional<DecodeFailure> failure;
    DecodeCount count; ///< of the whole stream, or of what was looked at before the end
};

/// The samples at the head of a WAV stay valid whatever happens: `run` may be stopped, a reading or
/// a writing may fail at any place.
class SegmentWorkers {
  public:
    /// All that is handed in must outlive the object. Precondition: `frames` are of Layer III and
    /// at their beginning.
    SegmentWorkers(const ByteSource& source, FrameSequence frames, WavTarget& target,
                   const Division& division, const std::atomic<bool>& stop, Progress& progress);

    /// Returns when all is decoded, or soon after a stop or a failure. Once.
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
    const std::atomic<bool>& stop_;
    Progress& progress_;
    SegmentSchedule schedule_;
};

} // namespace sonarith::mp3
