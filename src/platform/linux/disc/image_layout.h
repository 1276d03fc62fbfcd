// SPDX-License-Identifier: GPL-3.0-or-later
// What a disc image's sheet (CUE or TOC) states: its files, and for each track the pieces of sound
// that make it up. This is text turned into numbers; no file has been looked at yet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

/// How a file of an image holds its sound: 16 bit, stereo, 44100 Hz in all of them.
enum class ImageFormat {
    littleEndian, ///< bare samples, low byte first ("BINARY")
    bigEndian,    ///< bare samples, high byte first ("MOTOROLA", and the bare files of a TOC)
    wave,         ///< a RIFF WAVE file
};

struct LayoutFile {
    std::string name; ///< as the sheet writes it, relative to the sheet's folder
    ImageFormat format = ImageFormat::littleEndian;
    int line = 0; ///< of the sheet
    friend bool operator==(const LayoutFile&, const LayoutFile&) = default;
};

/// The length of a segment that goes on to the end of its file.
inline constexpr std::int64_t toFileEnd = -1;

enum class SegmentKind { silence, sound, data };

/// A run of one track's content.
struct Segment {
    SegmentKind kind = SegmentKind::silence;
    std::size_t file = 0;    ///< index in ImageLayout::files; without meaning for silence
    std::int64_t offset = 0; ///< in bytes: into the file, or into the samples of a WAVE
    std::int64_t frames = 0; ///< length on the time line, or toFileEnd
    int sectorBytes = 2352;  ///< what one sector takes up in the file
    /// What a length that the file decides is rounded to: sectors in a CUE, single frames in a TOC.
    int roundedTo = framesPerSector;
    /// The bytes that a stated length of data leaves out of its last sector.
    int lastSectorLacks = 0;
    friend bool operator==(const Segment&, const Segment&) = default;
};

struct LayoutTrack {
    TrackKind kind = TrackKind::audio;
    int line = 0; ///< of the sheet
    /// From INDEX 01 up to the next track's INDEX 01. A total that is no whole number of sectors
    /// ends in silence up to the next one.
    std::vector<Segment> segments;
};

struct ImageLayout {
    std::vector<LayoutFile> files; ///< each is used by at least one segment or index
    std::vector<LayoutTrack> tracks;
};

/// A track as sheets describe it: with the pause before it.
struct SheetTrack {
    TrackKind kind = TrackKind::audio;
    int line = 0;
    bool opensSession = false;  ///< a gap between sessions lies before it
    std::vector<Segment> pause; ///< what stands before its INDEX 01
    std::vector<Segment> body;  ///< from its INDEX 01 on
};

/// Gives each pause to the track before it. Pauses before the first track, before a new session
/// and between sound and data are left out: nothing that can be played goes on there.
[[nodiscard]] std::vector<LayoutTrack> joinPauses(std::vector<SheetTrack> tracks);

/// How many bytes of its file `segment`, whose length is stated, takes up.
[[nodiscard]] std::int64_t statedBytes(const Segment& segment);

/// The sum of the lengths of `segments` in frames, or toFileEnd if a file decides it.
[[nodiscard]] std::int64_t statedFrames(const std::vector<Segment>& segments);

} // namespace sonarith::disc
