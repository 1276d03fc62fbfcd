// SPDX-License-Identifier: GPL-3.0-or-later
// The road on all cores: several threads take segments in the order of the stream and put their
// samples at their places in the WAV. From a frame on that the library gives up, one goes on alone.
// It neither opens nor names the WAV.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/mp3_index.h"
#include "platform/linux/mp3/progress.h"
#include "platform/linux/mp3/segment_decoder.h"
#include "platform/linux/mp3/wav_target.h"

namespace sonarith::mp3 {

/// How the work is divided.
struct Division {
    unsigned threads = 1;
    /// Some 27 seconds: the frames that are decoded twice are 3 of 100, and a song still has
    /// enough segments for all cores.
    std::int64_t framesPerSegment = 1024;
};

/// What came of a decoding, whatever the road.
struct Decoded {
    /// The WAV has every sample up to here, per channel.
    std::int64_t samples = 0;
    bool stopped = false;
    /// From here on the stream was decoded by one decoder; empty if there was no need for that.
    std::optional<std::int64_t> sequentialFrom;
    std::optional<Error> failure;
    DecodeCount count; ///< of the whole stream, or of what was looked at before the end
};

class SegmentWorkers {
  public:
    /// All that is handed in must outlive the object. Precondition: `frames` has a format of Layer
    /// III and stands at the stream's beginning.
    SegmentWorkers(const ByteSource& source, FrameSequence frames, WavTarget& target,
                   const Division& division, const std::atomic<bool>& stop, Progress& progress);

    /// Returns when all is decoded, or at once after a stop or a failure.
    [[nodiscard]] Decoded run();

  private:
    /// One thread's segment. All frames before `done` are in the WAV, from the segment's first on.
    struct Work {
        std::int64_t done = 0;
        std::int64_t end = 0;
    };
    void work(Work& mine);
    [[nodiscard]] std::optional<Segment> takeSegment(Work& mine);
    [[nodiscard]] Result<SegmentEnd> decode(const Segment& segment, Work& mine);
    [[nodiscard]] Result<bool> place(std::int64_t first, std::span<const std::int16_t> samples);
    void keepEnd(const Segment& segment, const Result<SegmentEnd>& end);
    [[nodiscard]] std::int64_t decodeRest(std::vector<Work>& works);
    [[nodiscard]] static std::int64_t completeFrames(const std::vector<Work>& works,
                                                     std::int64_t frames);

    const ByteSource& source_;
    StreamFormat format_;
    GaplessTrim trim_;
    WavTarget& target_;
    Division division_;
    const std::atomic<bool>& stop_;
    Progress& progress_;
    std::atomic<bool> ended_ = false; ///< one thread met a failure or the stop
    /// The first frame of the first segment that is broken: those after it are in vain.
    std::atomic<std::int64_t> brokenFrom_ = std::numeric_limits<std::int64_t>::max();

    std::mutex mutex_; ///< for what follows
    SegmentIndex index_;
    std::optional<Segment> broken_;
    Decoded decoded_;
};

} // namespace sonarith::mp3
