// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/wav_head.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "conversion/number_bases.h"
#include "platform/text/numbers.h"

namespace sonarith {

namespace {

/// A sample rate, and the low byte of the header's rate field for this rate. `lowByteDigits` is the
/// byte in hexadecimal digits without 0x: 40 stands for 0x40. 16000 Hz has the same low byte as
/// 48000 Hz and is reported as 48000.
struct SampleRate {
    int lowByteDigits;
    const char* hertz;
};
constexpr std::array<SampleRate, 6> sampleRates = {{
    {40, "8000"},
    {11, "11025"},
    {22, "22050"},
    {0, "32000"},
    {44, "44100"},
    {80, "48000"},
}};

/// Assumed size of the header in bits (1000 bytes); the real header has 44 bytes.
constexpr double headerBits = 8000;

constexpr std::string_view riffMark = "RIFF";

/// Opens the file for reading and writing or, if that fails, for reading only. Null if both fail.
std::unique_ptr<BinaryFile> openForBoth(FileSystem& files, const std::string& path) {
    auto both = files.openBinary(path, FileAccess::readWrite);
    if (both.ok()) {
        return std::move(both.value());
    }
    auto reading = files.openBinary(path, FileAccess::read);
    return reading.ok() ? std::move(reading.value()) : nullptr;
}

/// The `count` bytes at `offset`; nothing if `file` is null or ends before the last of these bytes.
template <std::size_t count>
std::optional<std::array<std::byte, count>> bytesAt(BinaryFile* file, std::int64_t offset) {
    std::array<std::byte, count> bytes{};
    if (file == nullptr || file->read(offset, bytes).valueOr(0) != count) {
        return std::nullopt;
    }
    return bytes;
}

void storeWord(BinaryFile* file, std::int64_t offset, std::int16_t& target) {
    if (const auto bytes = bytesAt<2>(file, offset)) {
        const unsigned word =
            std::to_integer<unsigned>((*bytes)[0]) | std::to_integer<unsigned>((*bytes)[1]) << 8U;
        target = static_cast<std::int16_t>(static_cast<std::uint16_t>(word));
    }
}

bool isRiff(const std::optional<std::array<std::byte, 4>>& bytes) {
    return bytes && std::string_view(reinterpret_cast<const char*>(bytes->data()), bytes->size()) ==
                        riffMark;
}

/// Rounds `number` half away from zero and writes at least two digits. A value that is rounded to 0
/// keeps its sign.
std::string twoDigits(double number) {
    const double whole = std::round(std::fabs(number));
    std::string digits = std::to_string(static_cast<std::int64_t>(whole));
    if (digits.size() < 2) {
        digits.insert(0, 1, '0');
    }
    return (number < 0 ? "-" : "") + digits;
}

/// The minutes are computed from the rounded seconds: in the last half second of a minute they are
/// one too high, and the seconds are negative (59.7 s: "01:-00").
std::string durationText(double seconds) {
    const std::int32_t minutes = roundedToInteger32(seconds).valueOr(0) / 60;
    return twoDigits(minutes) + ":" + twoDigits(seconds - minutes * 60.0);
}

} // namespace

bool WavHeadReader::wHeadInfo(const std::string& path) {
    const Result<std::int64_t> length = files_.fileLength(path);
    if (length.ok()) {
        head_.wavFileLength = std::to_string(length.value());
    }
    std::optional<std::array<std::byte, 4>> mark;
    std::array<std::byte, 1> rate{};
    {
        const std::unique_ptr<BinaryFile> file = openForBoth(files_, path);
        mark = bytesAt<4>(file.get(), 0);
        storeWord(file.get(), 22, head_.wavChannels);
        storeWord(file.get(), 34, head_.wavBits);
        rate = bytesAt<1>(file.get(), 24).value_or(rate);
    }
    const std::string rateDigits =
        ConvertBase(std::to_string(std::to_integer<int>(rate[0])), 10, 16);
    if (!isRiff(mark)) {
        return false;
    }
    for (const SampleRate& known : sampleRates) {
        if (rateDigits == std::to_string(known.lowByteDigits)) {
            head_.wavSampleRate = known.hertz;
            break;
        }
    }
    workOut();
    return true;
}

/// A step that fails leaves its field unchanged, and the next step uses that old value, for example
/// the bit rate of an earlier file. A bit rate of 0 leaves the duration unchanged.
void WavHeadReader::workOut() {
    if (const auto rate = toInteger32(head_.wavSampleRate); rate.ok()) {
        const std::int64_t product = std::int64_t{head_.wavBits} * head_.wavChannels * rate.value();
        if (product >= std::numeric_limits<std::int32_t>::min() &&
            product <= std::numeric_limits<std::int32_t>::max()) {
            head_.wavBitRate = static_cast<std::int32_t>(product);
        }
    }
    const Result<double> bytes = toDouble(head_.wavFileLength);
    if (bytes.ok() && head_.wavBitRate != 0) {
        head_.wavDuration = durationText((bytes.value() * 8 - headerBits) / head_.wavBitRate);
    }
}

} // namespace sonarith
