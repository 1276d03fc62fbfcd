// SPDX-License-Identifier: GPL-3.0-or-later
// Feeds arbitrary bytes to the MP3 road: the scanner, one pass over all, and the same in segments,
// which must give the same samples unless they refuse the stream. The first byte of an input
// chooses the size of the segments.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/mp3_index.h"
#include "platform/linux/mp3/pcm_reader.h"
#include "platform/linux/mp3/segment_decoder.h"
#include "require.h"

namespace {

using namespace sonarith;
using fuzz::require;
using namespace sonarith::mp3;

struct Heard {
    std::vector<std::int16_t> samples;
    DecodeCount count;
};

Heard inOnePass(const ByteSource& source) {
    Heard heard;
    const auto reader = openPcmReader(source);
    require(reader.ok());
    if (reader.value()) {
        for (auto part = reader.value()->next(); !part.empty(); part = reader.value()->next()) {
            heard.samples.insert(heard.samples.end(), part.begin(), part.end());
        }
        heard.count = reader.value()->count();
        require(!reader.value()->failure());
        require(heard.count.loss.bytesSkipped <= source.size());
    }
    return heard;
}

void holdSegmentsAgainst(const Heard& whole, const ByteSource& source, std::int64_t size) {
    const FrameSequence frames(source);
    if (!frames.format() || frames.format()->layer != 3) {
        return;
    }
    SegmentIndex index(frames, size);
    std::size_t place = 0;
    while (const auto segment = index.next()) {
        require(segment->preroll.frame <= segment->firstFrame && segment->frames <= size);
        const auto end = decodeSegment(
            source, *frames.format(), frames.trim(), *segment,
            [&](std::int64_t, std::int64_t first, std::span<const std::int16_t> samples) {
                require(static_cast<std::size_t>(first * frames.format()->channels) == place);
                require(place + samples.size() <= whole.samples.size());
                require(std::equal(samples.begin(), samples.end(),
                                   whole.samples.begin() + static_cast<std::ptrdiff_t>(place)));
                place += samples.size();
                return Result<bool>(true);
            });
        require(end.ok());
        if (end.value() == SegmentEnd::broken) {
            return;
        }
    }
    require(place == whole.samples.size());
    require(index.count() == whole.count);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const MemorySource source(Bytes(data + 1, size - 1));
    holdSegmentsAgainst(inOnePass(source), source, 1 + data[0] % 40);
    return 0;
}
