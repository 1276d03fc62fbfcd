// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/preroll_history.h"

namespace sonarith::mp3 {

namespace {

/// In the decoding library, the synthesis window advances by 4 (MPEG-1) or 2 (MPEG-2) of 16
/// positions per frame, and the rounding of the samples depends on the window's position. In both
/// cases the window is at its starting position again after 8 frames.
constexpr std::int64_t windowTurn = 8;
/// The minimum number of frames to decode before the first frame whose samples are used. One frame
/// should suffice, since the only lasting effect of a frame is its overlap with the next one. 24
/// frames were measured to be safe, and the other 23 cost little time.
constexpr std::int64_t leastFrames = 24;
/// The last 8 frames before the first frame whose samples are used must be decoded without loss:
/// all bytes of earlier frames to which these 8 frames refer must be available.
constexpr std::int64_t soundFrames = 8;
/// The number of frames that are kept: enough for any stream. A stream of the smallest frames (24
/// bytes: MPEG-2, 24 kHz, 8 kbit/s, stereo, checksum) needs the most. Each of these frames has one
/// byte of main data and may refer to the 255 bytes of main data before it. So the last
/// soundFrames frames and the 255 frames before them are needed. Up to windowTurn - 1 further
/// frames are needed, because decoding starts at a multiple of windowTurn.
constexpr std::size_t capacity = 256 + soundFrames + windowTurn + 1;

} // namespace

void PrerollHistory::add(const NumberedFrame& frame) {
    entries_.push_back({frame.number, frame.offset, frame.header.mainDataBytes(),
                        frame.header.format.maxReservoirBytes()});
    if (entries_.size() > capacity) {
        entries_.pop_front();
    }
}

Preroll PrerollHistory::before(std::int64_t frame) const {
    std::int64_t reservoir = 0;
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
        if (entry->number < frame - soundFrames) {
            reservoir += entry->mainDataBytes;
        }
        if (entry->number == 0 ||
            (entry->number % windowTurn == 0 && entry->number <= frame - leastFrames &&
             reservoir >= entry->maxReservoirBytes)) {
            return {entry->number, entry->offset};
        }
    }
    return {entries_.front().number, entries_.front().offset};
}

} // namespace sonarith::mp3
