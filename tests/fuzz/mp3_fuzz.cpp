// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes all but the first two bytes of an input as an MP3 file: in one pass and, if the stream is
// of layer 3, also in segments. Both decodings must return the same samples. If a segment is broken
// (segment_decoder.h), the comparison ends at this segment. All of this is done twice, the second
// time with a source that is unreadable from an offset on. The first byte of the input selects the
// size of the segments, the second byte the offset.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/mp3_index.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/mp3/segment_decoder.h"
#include "platform/linux/mp3/stream_survey.h"
#include "require.h"

namespace {

using namespace sonarith;
using fuzz::require;
using namespace sonarith::mp3;

struct DecodedSound {
    std::vector<std::int16_t> samples;
    DecodeCount count;
    bool failed = false;
};

/// A source whose bytes are unreadable from `end` on.
class TornSource : public ByteSource {
  public:
    TornSource(Bytes bytes, std::size_t end) : bytes_(bytes), end_(end) {}
    [[nodiscard]] std::int64_t size() const override {
        return static_cast<std::int64_t>(bytes_.size());
    }
    [[nodiscard]] Reading readAt(std::int64_t offset, std::span<std::uint8_t> out) const override {
        const auto begin = static_cast<std::size_t>(offset);
        require(begin + out.size() <= bytes_.size());
        const std::size_t count = std::min(out.size(), begin < end_ ? end_ - begin : 0);
        std::copy_n(bytes_.begin() + offset, count, out.begin());
        const bool torn = count < out.size();
        return {count,
                torn ? std::optional(Error{ErrorNumber::deviceInputOutput, "torn"}) : std::nullopt};
    }

  private:
    Bytes bytes_;
    std::size_t end_;
};

DecodedSound inOnePass(const ByteSource& source, const StreamSurvey& survey) {
    DecodedSound decoded;
    const auto reader = openPcmReader(source, survey);
    decoded.failed = !reader.ok();
    if (reader.ok() && reader.value()) {
        for (auto part = reader.value()->next(); !part.empty(); part = reader.value()->next()) {
            decoded.samples.insert(decoded.samples.end(), part.begin(), part.end());
        }
        decoded.count = reader.value()->count();
        decoded.failed = reader.value()->failure().has_value();
        require(decoded.count.loss.bytesSkipped <= source.size());
    }
    return decoded;
}

void compareSegments(const DecodedSound& whole, const ByteSource& source,
                     const StreamFormat& format, std::int64_t size) {
    const FrameSequence frames(source, format);
    SegmentIndex index(frames, size);
    std::size_t place = 0;
    while (const auto segment = index.next()) {
        require(segment->preroll.frame <= segment->firstFrame && segment->frames <= size);
        const SegmentOutcome outcome = decodeSegment(
            source, format, frames.trim(), *segment,
            [&](std::int64_t, std::int64_t first, std::span<const std::int16_t> samples) {
                require(static_cast<std::size_t>(first * format.channels) == place);
                require(place + samples.size() <= whole.samples.size());
                require(std::equal(samples.begin(), samples.end(),
                                   whole.samples.begin() + static_cast<std::ptrdiff_t>(place)));
                place += samples.size();
                return Result<bool>(true);
            });
        require(!outcome.failure);
        if (outcome.end == SegmentEnd::broken) {
            return;
        }
    }
    require(place == whole.samples.size());
    require(index.count() == whole.count);
    require(index.failure().has_value() == whole.failed);
}

void decode(const ByteSource& source, std::int64_t framesPerSegment) {
    const StreamSurvey survey = surveyStream(source);
    const DecodedSound whole = inOnePass(source, survey);
    if (survey.format && survey.format->layer == 3) {
        compareSegments(whole, source, *survey.format, framesPerSegment);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const Bytes bytes(data + 2, size - 2);
    const std::int64_t framesPerSegment = 1 + data[0] % 40;
    decode(MemorySource(bytes), framesPerSegment);
    decode(TornSource(bytes, bytes.size() * data[1] / 256), framesPerSegment);
    return 0;
}
