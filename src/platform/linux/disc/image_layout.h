// SPDX-License-Identifier: GPL-3.0-or-later
// Represents the parsed content of a disc image's sheet (CUE or TOC): the files that the sheet
// names, and the segments of each track. A layout contains nothing that must be read from those
// files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

/// How an image file stores its sound, which is always 16 bit, stereo, 44100 Hz.
enum class ImageFormat {
    littleEndian, ///< raw samples, low byte first ("BINARY"; a raw file of a TOC with SWAP)
    bigEndian,    ///< raw samples, high byte first ("MOTOROLA"; other raw files of a TOC)
    wave,         ///< a WAVE file
};

struct LayoutFile {
    std::string name; ///< relative to the sheet's folder; escape sequences of a TOC are decoded
    ImageFormat format = ImageFormat::littleEndian;
    int line = 0; ///< in the sheet
    friend bool operator==(const LayoutFile&, const LayoutFile&) = default;
};

/// The length of a segment that extends to the end of its file.
inline constexpr std::int64_t toFileEnd = -1;

enum class SegmentKind { silence, sound, data };

/// A contiguous part of one track.
struct Segment {
    SegmentKind kind = SegmentKind::silence;
    std::size_t file = 0;    ///< index in ImageLayout::files; unused for silence
    std::int64_t offset = 0; ///< in bytes from the file's beginning, or from a WAVE's first sample
    std::int64_t frames = 0; ///< length on the time line in frames, or toFileEnd
    int sectorBytes = 2352;  ///< size of one sector in the file
    /// If `frames` is toFileEnd, the length is rounded to a multiple of this number of frames: up
    /// in a WAVE file, down in other files. 1 for the sound of a TOC, otherwise one sector.
    int roundedTo = framesPerSector;
    /// If the stated length of a data segment ends inside a sector: the number of bytes from this
    /// end to the end of the sector.
    int lastSectorLacks = 0;
    friend bool operator==(const Segment&, const Segment&) = default;
};

struct LayoutTrack {
    TrackKind kind = TrackKind::audio;
    int line = 0; ///< in the sheet
    /// The content from INDEX 01 to the next track's INDEX 01, without a pause that joinPauses()
    /// leaves out. If the length of the content is not a whole number of sectors, the last sector
    /// is padded with silence.
    std::vector<Segment> segments;
};

struct ImageLayout {
    std::vector<LayoutFile> files; ///< all files that the sheet names
    std::vector<LayoutTrack> tracks;
};

/// A track as a sheet describes it, together with the pause before the track.
struct SheetTrack {
    TrackKind kind = TrackKind::audio;
    int line = 0;
    bool opensSession = false;  ///< a gap between sessions precedes the track
    std::vector<Segment> pause; ///< the part before its INDEX 01
    std::vector<Segment> body;  ///< from its INDEX 01 on
};

/// Appends each pause to the preceding track. Pauses before the first track, before a new session
/// and between an audio track and a following data track are left out, because playing never
/// continues across them.
[[nodiscard]] std::vector<LayoutTrack> joinPauses(std::vector<SheetTrack> tracks);

/// How many bytes of its file `segment` occupies. Precondition: the segment is not silence, and its
/// length is not toFileEnd.
[[nodiscard]] std::int64_t statedBytes(const Segment& segment);

/// The sum of the lengths of `segments` in frames, or toFileEnd if one of the lengths is toFileEnd.
[[nodiscard]] std::int64_t statedFrames(const std::vector<Segment>& segments);

} // namespace sonarith::disc
