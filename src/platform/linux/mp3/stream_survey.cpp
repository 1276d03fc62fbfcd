// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/stream_survey.h"

#include <algorithm>
#include <vector>

#include "platform/linux/mp3/frame_scanner.h"
#include "platform/linux/mp3/info_tag.h"

namespace sonarith::mp3 {

namespace {

struct FormatCount {
    StreamFormat format;
    std::int64_t frames = 0;
};

/// Counts the frames of each format. 54 formats exist; usually only one occurs in a stream.
class FormatCounts {
  public:
    void add(const Frame& frame, FrameScanner& scanner) {
        if (counts_.empty() || counts_[last_].format != frame.header.format) {
            last_ = indexOf(frame, scanner);
        }
        ++counts_[last_].frames;
    }
    [[nodiscard]] std::optional<StreamFormat> most() const {
        const auto most = std::max_element( // the first of equal counts
            counts_.begin(), counts_.end(),
            [](const FormatCount& a, const FormatCount& b) { return a.frames < b.frames; });
        return most == counts_.end() ? std::nullopt : std::optional(most->format);
    }

  private:
    std::size_t indexOf(const Frame& frame, FrameScanner& scanner) {
        const auto known =
            std::find_if(counts_.begin(), counts_.end(), [&](const FormatCount& count) {
                return count.format == frame.header.format;
            });
        const auto index = static_cast<std::size_t>(known - counts_.begin());
        if (known == counts_.end()) {
            const bool isInfo = parseInfoTag(frame.header, scanner.bytesOf(frame)).has_value();
            // add() then increases the count by one. An information frame must not count, so the
            // count of its format begins at -1.
            counts_.push_back({frame.header.format, isInfo ? -1 : 0});
        }
        return index;
    }

    std::vector<FormatCount> counts_; ///< in the order of their first frames
    std::size_t last_ = 0;
};

} // namespace

StreamSurvey surveyStream(const ByteSource& source, std::int64_t end) {
    FrameScanner scanner(source);
    FormatCounts counts;
    while (scanner.position() < end) {
        const std::optional<Frame> frame = scanner.next();
        if (!frame) {
            break;
        }
        counts.add(*frame, scanner);
    }
    return {counts.most(), scanner.freeFormatOffset(), scanner.failure()};
}

} // namespace sonarith::mp3
