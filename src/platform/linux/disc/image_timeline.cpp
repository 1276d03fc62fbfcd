// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_timeline.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/linux/disc/sheet_text.h"

namespace sonarith::disc {

namespace {

// IEC 60908: no track is shorter than 4 seconds.
constexpr std::int64_t shortestTrackSectors = 4 * sectorsPerSecond;

/// The length of a segment on the time line (as stated, or up to the file's end), and how much of
/// it the file contains, both in frames.
struct Extent {
    std::int64_t stated = 0;
    std::int64_t present = 0;
};

Extent extentOf(const Segment& segment, ImageFormat format, std::int64_t fileBytes) {
    const std::int64_t bytes = std::max<std::int64_t>(fileBytes - segment.offset, 0);
    const std::int64_t wholeSectors = bytes / segment.sectorBytes;
    if (segment.frames != toFileEnd) {
        // A stated length may end anywhere in a sector, but only the whole sectors of a truncated
        // file are usable.
        const bool whole = bytes >= statedBytes(segment);
        return {segment.frames, whole ? segment.frames : wholeSectors * framesPerSector};
    }
    if (format == ImageFormat::wave || segment.roundedTo == 1) {
        // WAVE files and the sound files of a TOC may have any length. In a CUE sheet, silence
        // completes the last sector. In a TOC, `roundedTo` is 1, so nothing is added.
        const std::int64_t frames =
            bytes / segment.sectorBytes * framesPerSector +
            bytes % segment.sectorBytes * framesPerSector / segment.sectorBytes;
        const std::int64_t unit = segment.roundedTo;
        return {(frames + unit - 1) / unit * unit, frames};
    }
    // In a file of raw sectors, an incomplete last sector does not belong to the disc.
    return {wholeSectors * framesPerSector, wholeSectors * framesPerSector};
}

/// One or more consecutive tracks whose file is too short.
struct Shortage {
    enum class Kind { truncated, interrupted, missing, lengthUnknown };
    Kind kind = Kind::truncated;
    std::size_t file = 0;
    int firstTrack = 0;
    int lastTrack = 0;
    std::int64_t wholeFrames = 0; ///< the frames of the track before its first missing part
};

std::string describe(const Shortage& shortage) {
    const bool several = shortage.lastTrack > shortage.firstTrack;
    std::string text = several ? "tracks " : "track ";
    text += std::to_string(shortage.firstTrack);
    text += several ? " to " + std::to_string(shortage.lastTrack) : "";
    switch (shortage.kind) {
    case Shortage::Kind::truncated:
        return text + " is truncated and reads as silence from " +
               msfText(shortage.wholeFrames / framesPerSector) + " on";
    case Shortage::Kind::interrupted:
        return text + " lacks a part, which begins at " +
               msfText(shortage.wholeFrames / framesPerSector) + "; later parts are present";
    case Shortage::Kind::missing:
        return text +
               (several ? " are missing and read as silence" : " is missing and reads as silence");
    case Shortage::Kind::lengthUnknown:
        break;
    }
    return text +
           " has no whole sector in its file; the track's length is unknown, and the track is "
           "listed with " +
           std::to_string(shortestTrackSectors / sectorsPerSecond) + " seconds of silence";
}

class LineBuilder {
  public:
    LineBuilder(std::string_view sheet, const ImageLayout& layout,
                std::span<const std::int64_t> fileBytes)
        : sheet_(sheet), layout_(layout), fileBytes_(fileBytes) {}

    Result<ImageTimeline> build();

  private:
    void addTrack(const LayoutTrack& track);
    void addSegment(const Segment& segment);
    void noteShortage(Shortage::Kind kind, std::size_t file, std::int64_t wholeFrames);
    [[nodiscard]] std::string remark() const;

    std::string_view sheet_;
    const ImageLayout& layout_;
    std::span<const std::int64_t> fileBytes_;
    ImageTimeline line_;
    std::int64_t trackStart_ = 0; ///< of the track being added, in frames
    std::int64_t at_ = 0;         ///< end of the time line so far, in frames
    bool anyContent_ = false;
    std::vector<Shortage> shortages_;
    // The first shortage of the track being added, if any: its position in frames from the track's
    // beginning, and the index of its file.
    std::optional<std::pair<std::int64_t, std::size_t>> shortFrom_;
    bool contentAfterShortage_ = false; ///< in the track being added
};

Result<ImageTimeline> LineBuilder::build() {
    for (const LayoutTrack& track : layout_.tracks) {
        addTrack(track);
        if (at_ > maxDiscFrames) {
            return sheetError(
                sheet_, track.line,
                "this track makes the disc longer than 100 minutes, the longest possible disc");
        }
    }
    line_.remark = remark();
    if (!anyContent_ && !shortages_.empty()) {
        return sheetError(sheet_, layout_.tracks.front().line,
                          "no content of the disc was found: " + line_.remark);
    }
    return std::move(line_);
}

void LineBuilder::addTrack(const LayoutTrack& track) {
    trackStart_ = at_;
    shortFrom_.reset();
    contentAfterShortage_ = false;
    for (const Segment& segment : track.segments) {
        addSegment(segment);
    }
    std::int64_t sectors = (at_ - trackStart_ + framesPerSector - 1) / framesPerSector;
    const bool lengthUnknown = sectors == 0;
    if (lengthUnknown) {
        // Without this track's entry in the table, the next tracks would get wrong numbers.
        sectors = shortestTrackSectors;
        if (track.kind == TrackKind::audio) {
            line_.lost.push_back({trackStart_, sectors * framesPerSector});
        }
    }
    at_ = trackStart_ + sectors * framesPerSector;
    line_.table.tracks.push_back({track.kind, sectors});
    if (lengthUnknown) {
        noteShortage(Shortage::Kind::lengthUnknown, track.segments.front().file, 0);
    } else if (shortFrom_) {
        const auto [wholeFrames, file] = *shortFrom_;
        Shortage::Kind kind = Shortage::Kind::truncated;
        if (contentAfterShortage_) {
            kind = Shortage::Kind::interrupted;
        } else if (wholeFrames == 0) {
            kind = Shortage::Kind::missing;
        }
        noteShortage(kind, file, wholeFrames);
    }
}

void LineBuilder::addSegment(const Segment& segment) {
    if (at_ > maxDiscFrames) {
        return; // the disc will be refused; adding more frames might overflow
    }
    if (segment.kind == SegmentKind::silence) {
        at_ += segment.frames;
        return;
    }
    const std::int64_t bytes = fileBytes_[segment.file];
    const Extent extent = extentOf(segment, layout_.files[segment.file].format, bytes);
    // An empty segment is a shortage if it begins beyond the end of its file, or if it is at the
    // beginning of the track. Later in the track, an empty segment may be the pause before the
    // next track: the sheet may leave the length of a pause open (toFileEnd), and a pause may be
    // empty.
    const bool beginsBeyond = extent.stated == 0 && (segment.offset > bytes || at_ == trackStart_);
    contentAfterShortage_ = contentAfterShortage_ || (shortFrom_ && extent.present > 0);
    if (!shortFrom_ &&
        (beginsBeyond || (segment.frames != toFileEnd && extent.present < extent.stated))) {
        shortFrom_ = {at_ - trackStart_ + extent.present, segment.file};
    }
    if (extent.present > 0) {
        anyContent_ = true;
        if (segment.kind == SegmentKind::sound) {
            line_.sound.push_back({at_, extent.present, segment.file, segment.offset});
        }
    }
    if (segment.kind == SegmentKind::sound && segment.frames != toFileEnd &&
        extent.present < extent.stated) {
        line_.lost.push_back({at_ + extent.present, extent.stated - extent.present});
    }
    at_ += extent.stated;
}

void LineBuilder::noteShortage(Shortage::Kind kind, std::size_t file, std::int64_t wholeFrames) {
    const int number = static_cast<int>(line_.table.tracks.size());
    if (!shortages_.empty() && kind == Shortage::Kind::missing) {
        Shortage& last = shortages_.back();
        if (last.kind == kind && last.file == file && last.lastTrack == number - 1) {
            last.lastTrack = number;
            return;
        }
    }
    shortages_.push_back({kind, file, number, number, wholeFrames});
}

std::string LineBuilder::remark() const {
    std::string text;
    std::optional<std::size_t> file;
    for (const Shortage& shortage : shortages_) {
        text += text.empty() ? "" : "; ";
        if (file != shortage.file) {
            file = shortage.file;
            const LayoutFile& entry = layout_.files[*file];
            text += shown(entry.name) + " (" + std::string(sheet_) + ", line " +
                    std::to_string(entry.line) + ") is too short: ";
        }
        text += describe(shortage);
    }
    return text;
}

} // namespace

std::int64_t lostSectors(const ImageTimeline& line, std::int64_t first, std::int64_t end) {
    std::int64_t sectors = 0;
    for (const LostStretch& lost : line.lost) {
        const std::int64_t from = std::max(first, lost.start / framesPerSector);
        const std::int64_t to =
            std::min(end, (lost.start + lost.frames + framesPerSector - 1) / framesPerSector);
        if (from < to) {
            sectors += to - from;
            first = to; // two stretches may share a sector
        }
    }
    return sectors;
}

Result<ImageTimeline> layOnLine(std::string_view sheet, const ImageLayout& layout,
                                std::span<const std::int64_t> fileBytes) {
    return LineBuilder(sheet, layout, fileBytes).build();
}

} // namespace sonarith::disc
