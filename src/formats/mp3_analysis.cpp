// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/mp3_analysis.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "formats/id3v1_tag.h"
#include "formats/mp3_bits.h"
#include "formats/mp3_header.h"
#include "platform/text/numbers.h"

namespace sonarith {

namespace {

/// Shorter files are refused, because this many bytes at the end of a file are searched for a tag.
constexpr std::int64_t leastLength = 256;

// Positions in the file count from 1; 0 means "no frame".
constexpr std::size_t lastFramePosition = 5000;
/// Distance from a frame to the mark of a variable bit rate if the frame is stereo and MPEG 1.
/// Deliberate: the mark of other frames is not found.
constexpr std::size_t markDistance = 36;
constexpr std::size_t frameCountDistance = 44;
constexpr std::size_t headLength = lastFramePosition + frameCountDistance + 3;
constexpr std::string_view variableRateMark = "Xing";

/// The first bytes of the file.
class Head {
  public:
    static Result<Head> of(BinaryFile& file) {
        Head head;
        head.bytes_.resize(headLength);
        const Result<std::size_t> count = file.read(0, head.bytes_);
        if (!count.ok()) {
            return count.error();
        }
        head.bytes_.resize(count.value());
        return head;
    }

    /// The byte at `position`; 0 before the start of the file and after the last byte that was
    /// read.
    [[nodiscard]] std::uint8_t at(std::size_t position) const {
        return position >= 1 && position <= bytes_.size()
                   ? std::to_integer<std::uint8_t>(bytes_[position - 1])
                   : std::uint8_t{0};
    }
    [[nodiscard]] FourBytes fourAt(std::size_t position) const {
        return {0, at(position), at(position + 1), at(position + 2), at(position + 3)};
    }
    [[nodiscard]] bool holds(std::string_view text, std::size_t position) const {
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (at(position + i) != static_cast<std::uint8_t>(text[i])) {
                return false;
            }
        }
        return true;
    }

  private:
    std::vector<std::byte> bytes_;
};

/// The position of the first frame of MPEG 1 Layer III, with or without a CRC; 0 if none begins at
/// lastFramePosition or before.
std::size_t framePositionIn(const Head& head) {
    for (std::size_t i = 1; i <= lastFramePosition; ++i) {
        if (head.at(i) == 0xFF && (head.at(i + 1) == 0xFA || head.at(i + 1) == 0xFB)) {
            return i;
        }
    }
    return 0;
}

Status readFrameCount(const Head& head, std::size_t frame, Mp3Info& info) {
    info.IsVbr = head.holds(variableRateMark, frame + markDistance);
    if (!info.IsVbr) {
        return {};
    }
    FourBytes count = head.fourAt(frame + frameCountDistance);
    const Result<std::int32_t> frames = BitsToLong(BytesToBits(count));
    if (!frames.ok()) {
        return frames.error();
    }
    const Result<std::int16_t> fitting = roundedToInteger16(frames.value());
    if (!fitting.ok()) {
        return fitting.error();
    }
    info.Frames = fitting.value();
    return {};
}

/// The bytes that are searched for a tag; empty if they cannot be read.
std::string tailOf(BinaryFile& file, std::int64_t length) {
    std::array<std::byte, tagSearchLength> bytes{};
    const auto count = file.read(length - static_cast<std::int64_t>(bytes.size()), bytes);
    return {reinterpret_cast<const char*>(bytes.data()), count.valueOr(0)};
}

} // namespace

Result<std::string> ReadMp3Bits(FileSystem& files, const std::string& path, TagReading readTag,
                                HeaderReading readHeader, Mp3Info& info) {
    const auto opened = files.openBinary(path, FileAccess::read);
    if (!opened.ok()) {
        return opened.error();
    }
    BinaryFile& file = *opened.value();
    const Result<std::int64_t> length = file.length();
    if (!length.ok()) {
        return length.error();
    }
    if (length.value() < leastLength) {
        return {ErrorNumber::invalidProcedureCall, "The file is too short."};
    }
    FourBytes header{};
    if (readHeader == HeaderReading::yes) {
        const Result<Head> head = Head::of(file);
        if (!head.ok()) {
            return head.error();
        }
        const std::size_t frame = framePositionIn(head.value());
        if (Status counted = readFrameCount(head.value(), frame, info); !counted.ok()) {
            return counted.error();
        }
        header = head.value().fourAt(frame);
    }
    if (readTag == TagReading::yes) {
        readId3v1Tag(tailOf(file, length.value()), info);
    }
    return BytesToBits(header);
}

Result<Mp3Info> GetMp3Info(FileSystem& files, const std::string& path, TagReading readTag,
                           HeaderReading readHeader, Mp3Info& info) {
    const Result<std::string> digits = ReadMp3Bits(files, path, readTag, readHeader, info);
    if (!digits.ok()) {
        return digits.error();
    }
    if (readHeader == HeaderReading::yes) {
        const Result<std::int64_t> length = files.fileLength(path);
        if (!length.ok()) {
            return length.error();
        }
        if (Status decoded = decodeMp3Header(digits.value(), length.value(), info); !decoded.ok()) {
            return decoded.error();
        }
    }
    return Mp3Info{};
}

} // namespace sonarith
