// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the frames of an MPEG audio stream, through tags, junk and torn frames, whatever the bytes
// are. It decodes nothing, and needs the same small memory for files of any length.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/mp3/frame_row.h"
#include "platform/linux/mp3/mp3_header.h"

namespace sonarith::mp3 {

struct Frame {
    std::int64_t offset = 0; ///< in the source
    FrameHeader header;
    /// What stands before it in the source is not the frame before it: the bit reservoir is lost.
    bool afterGap = false;
};

/// What a scan met that is not in the sound.
struct ScanLoss {
    std::int64_t bytesSkipped = 0;  ///< junk and torn frames; tags do not count
    std::int64_t framesDropped = 0; ///< whole frames of another format than the stream's
    /// Places between two frames of the stream where bytes were skipped. Junk before the first
    /// frame and behind the last one is in so many good files that it is no damage.
    std::int64_t damagedPlaces = 0;
    friend bool operator==(const ScanLoss&, const ScanLoss&) = default;
};

/// A frame counts if the one before it leads to it, or if two more frames of its format follow it
/// (fewer only where the file or a tag ends the row). Going on from any frame gives the same frames
/// as coming to it from the front. A place that cannot be read ends the source.
///
/// The time is linear in the bytes, whatever they are: each place is tried a bounded number of
/// times.
class FrameScanner {
  public:
    /// From the beginning of `source`, which must outlive the scanner: frames of every format.
    explicit FrameScanner(const ByteSource& source);
    /// The frames of `format` from `offset` on, which is the beginning of the source or that of a
    /// frame that another scanner found. It knows no free format.
    FrameScanner(const ByteSource& source, const StreamFormat& format, std::int64_t offset);

    /// The next frame; empty at the end, at a place that cannot be read, or where
    /// `freeFormatOffset` has a value.
    [[nodiscard]] std::optional<Frame> next();
    /// All bytes of the frame that `next` gave last. They stay until its next call.
    [[nodiscard]] Bytes bytesOf(const Frame& frame);

    /// The stream is in free format (its headers do not tell the frame size) and begins here. This
    /// is as far as it goes then.
    [[nodiscard]] std::optional<std::int64_t> freeFormatOffset() const { return freeFormat_; }
    [[nodiscard]] const ScanLoss& loss() const { return loss_; }
    [[nodiscard]] const std::optional<Error>& failure() const { return window_.failure(); }
    /// All before this place in the source has been looked at.
    [[nodiscard]] std::int64_t position() const { return position_; }
    /// How often a row of frames was looked for so far: the work that hostile bytes can cause.
    [[nodiscard]] std::int64_t placesTried() const {
        return placesTried_ + rowsAhead_.placesTried();
    }

  private:
    [[nodiscard]] std::optional<Frame> take(const FrameHeader& header);
    [[nodiscard]] bool belongs(const FrameHeader& header, Bytes bytes);
    [[nodiscard]] bool isTorn(const FrameHeader& header, Bytes bytes);
    [[nodiscard]] bool verified(const FrameHeader& header, Bytes bytes, std::size_t offset);
    [[nodiscard]] std::int64_t tagBytes(Bytes bytes) const;
    [[nodiscard]] bool leadsOn(std::int64_t offset) const;
    [[nodiscard]] bool beginsFreeFormat(Bytes bytes);
    void skipJunk();
    void skip(std::int64_t bytes);

    const ByteSource* source_;
    SourceWindow window_;
    std::int64_t position_ = 0;
    std::optional<StreamFormat> only_;    ///< others are dropped
    std::optional<StreamFormat> current_; ///< of the row of frames that it is in
    std::optional<std::int64_t> freeFormat_;
    int freeFormatTries_ = 0;
    RowsAhead rowsAhead_;
    std::int64_t placesTried_ = 0;
    bool gap_ = true;
    bool foundFrame_ = false; ///< one of those that `next` gives
    bool damaged_ = false;    ///< bytes were skipped since then
    ScanLoss loss_;
};

} // namespace sonarith::mp3
