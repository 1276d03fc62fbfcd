// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the frames of an MPEG audio stream among tags, junk and truncated frames. Any data may be
// scanned. The scanner decodes nothing, and its memory does not depend on the length of the file.
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
    /// False if the frame directly follows another frame of its format in the same scan. If true,
    /// the frame cannot use data of earlier frames (bit_reservoir.h).
    bool afterGap = false;
};

/// Counts what a scan found that is not part of the sound.
struct ScanLoss {
    std::int64_t bytesSkipped = 0;  ///< junk, truncated frames, and tags directly after them
    std::int64_t framesDropped = 0; ///< whole frames of another format than the stream's
    /// Places between two frames of the stream where bytes were skipped. Junk before the first
    /// frame and after the last one is common in good files and does not count.
    std::int64_t damagedPlaces = 0;
    friend bool operator==(const ScanLoss&, const ScanLoss&) = default;
};

/// A frame is accepted if it begins a row: two more frames of its format follow, or fewer frames
/// and then a tag or the end of the source. A frame needs no row if it has the format of the last
/// accepted frame, and directly follows that frame or the tags behind that frame.
///
/// The second constructor starts a scan for one format. In such a scan, a frame of this format
/// needs no row at the start of the scan, directly after an accepted frame of any format, or
/// directly after a tag.
///
/// Truncated frames are not accepted. A frame is truncated if the source ends inside the frame. It
/// also counts as truncated if a row of its format begins inside it, and neither a frame nor
/// a tag nor the end of the source directly follows it. An offset that cannot be read counts as the
/// end of the source.
///
/// A scan may begin at any frame that `next` has returned. It finds the same later frames as a scan
/// for the same format from the beginning.
///
/// The time of a scan is linear in the number of bytes for any data: each offset is tried a bounded
/// number of times.
class FrameScanner {
  public:
    /// Finds frames of every format from the beginning of `source`, which must outlive the scanner.
    explicit FrameScanner(const ByteSource& source);
    /// Finds the frames of `format` from `offset` on. `offset` must be the beginning of the source
    /// or of a frame that another scanner found. This scanner does not detect free format.
    FrameScanner(const ByteSource& source, const StreamFormat& format, std::int64_t offset);

    /// The next frame; empty at the end of the source, at an offset that cannot be read, and at
    /// freeFormatOffset().
    [[nodiscard]] std::optional<Frame> next();
    /// All bytes of the frame that `next` returned last. Valid until the next call of `next`.
    [[nodiscard]] Bytes bytesOf(const Frame& frame);

    /// Set if the stream is in free format (its headers do not contain the frame size): the offset
    /// at which the stream begins. The scan ends at this offset.
    [[nodiscard]] std::optional<std::int64_t> freeFormatOffset() const { return freeFormat_; }
    [[nodiscard]] const ScanLoss& loss() const { return loss_; }
    [[nodiscard]] const std::optional<Error>& failure() const { return window_.failure(); }
    /// Everything before this offset in the source has been examined.
    [[nodiscard]] std::int64_t position() const { return position_; }
    /// How often the scan has examined whether a row of frames begins at an offset. This number
    /// measures the work that hostile data can cause.
    [[nodiscard]] std::int64_t placesTried() const {
        return placesTried_ + rowsAhead_.placesTried();
    }

  private:
    [[nodiscard]] std::optional<Frame> take(const FrameHeader& header);
    [[nodiscard]] bool belongs(const FrameHeader& header, Bytes bytes);
    [[nodiscard]] bool isTorn(const FrameHeader& header, Bytes bytes);
    [[nodiscard]] bool verified(const FrameHeader& header, Bytes bytes, std::size_t offset);
    [[nodiscard]] std::int64_t tagBytes(Bytes bytes) const;
    [[nodiscard]] bool mayTagEndAt(std::int64_t offset) const;
    [[nodiscard]] bool beginsFreeFormat(Bytes bytes);
    void skipJunk();
    void skip(std::int64_t bytes);

    const ByteSource* source_;
    SourceWindow window_;
    std::int64_t position_ = 0;
    std::optional<StreamFormat> only_;    ///< frames of other formats are dropped
    std::optional<StreamFormat> current_; ///< the format of the current row
    std::optional<std::int64_t> freeFormat_;
    int freeFormatTries_ = 0;
    RowsAhead rowsAhead_;
    std::int64_t placesTried_ = 0;
    bool gap_ = true;
    bool foundFrame_ = false; ///< `next` has returned a frame
    bool damaged_ = false;    ///< bytes were skipped since the last frame
    ScanLoss loss_;
};

} // namespace sonarith::mp3
