// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mp3_index.h"

namespace sonarith::mp3 {

std::optional<Segment> SegmentIndex::next() {
    Segment segment;
    segment.firstFrame = frames_.number();
    const std::int64_t begin = frames_.scanner().position();
    while (segment.frames < framesPerSegment_) {
        const std::optional<NumberedFrame> frame = frames_.next();
        if (!frame) {
            break;
        }
        history_.add(*frame);
        if (segment.frames++ == 0) {
            segment.preroll = history_.before(frame->number);
        }
        if (frame->afterGap) {
            reservoir_.clear();
        }
        if (reservoir_.admit(frame->header, frames_.bytesOf(*frame))) {
            ++count_.framesSilenced;
        }
    }
    count_.loss = frames_.scanner().loss();
    if (segment.frames == 0) {
        return std::nullopt;
    }
    count_.framesDecoded += segment.frames;
    segment.sourceBytes = frames_.scanner().position() - begin;
    return segment;
}

} // namespace sonarith::mp3
