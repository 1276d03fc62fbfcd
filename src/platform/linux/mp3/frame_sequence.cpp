// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_sequence.h"

#include <utility>

namespace sonarith::mp3 {

FrameSequence::FrameSequence(const ByteSource& source, const StreamFormat& format)
    : scanner_(source, format, 0), format_(format), first_(scanner_.next()) {
    if (!first_) {
        return;
    }
    if (const auto trim = parseInfoTag(first_->header, scanner_.bytesOf(*first_))) {
        trim_ = *trim;
        first_.reset();
    }
}

std::optional<NumberedFrame> FrameSequence::next() {
    const std::optional<Frame> frame = first_ ? std::exchange(first_, {}) : scanner_.next();
    if (!frame) {
        return std::nullopt;
    }
    return NumberedFrame{*frame, number_++};
}

} // namespace sonarith::mp3
