// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/mp3_header.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "formats/mp3_bits.h"
#include "platform/text/numbers.h"

namespace sonarith {

namespace {

// Tables for MPEG 1 (ISO/IEC 11172-3) and MPEG 2. The first six are indexed by the value of a field
// of the frame header.

constexpr std::array<std::int16_t, 4> versions = {25, 0, 2, 1};
constexpr std::array<std::int16_t, 4> layers = {0, 3, 2, 1};
constexpr std::array<const char*, 4> modes = {"stereo", "joint stereo", "dual channel",
                                              "single channel"};
constexpr std::array<const char*, 4> emphases = {"no", "50/15", "reserved", "CCITT J 17"};
constexpr std::array<const char*, 2> flags = {"no", "yes"};
/// The protection bit is 0 if a CRC follows the header.
constexpr std::array<const char*, 2> crcFlags = {"yes", "no"};

struct SamplingRates {
    std::int16_t version;
    std::array<std::int32_t, 3> ratesHz;
};
/// Deliberate: no version has the number 27, so only version 1 has rates.
constexpr std::array<SamplingRates, 2> samplingRates = {{
    {1, {44100, 48000, 32000}},
    {27, {22050, 24000, 16000}},
}};

struct BitRates {
    int key; ///< the decimal digits of version and layer, one after the other
    std::array<int, 15> kilobits;
};
/// Deliberate: no version and layer have the key 255, so only version 1 has bit rates.
constexpr std::array<BitRates, 4> bitRates = {{
    {11, {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448}},
    {12, {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384}},
    {13, {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}},
    {255, {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256}},
}};

/// Indexed by the layer. The reserved layer has index 0 and coefficient 0. The number of slots in a
/// frame is coefficient x bit rate / sampling rate. A slot is four bytes in Layer I and one byte in
/// the other layers. averageBitRate() assumes one byte for every layer.
constexpr std::array<int, 4> coefficients = {0, 12, 144, 144};

Error outOfRange() {
    return {ErrorNumber::subscriptOutOfRange, "Subscript out of range"};
}

Error byZero() {
    return {ErrorNumber::divisionByZero, "Division by zero"};
}

/// The value of `count` binary digits (at most 4) from position `first` on. The first of `digits`
/// has position 1.
std::size_t group(std::string_view digits, std::size_t first, std::size_t count) {
    const std::string_view part =
        first > digits.size() ? std::string_view() : digits.substr(first - 1, count);
    return static_cast<std::size_t>(BitsToLong(part).valueOr(0));
}

const SamplingRates* samplingRatesOf(std::int16_t version) {
    const auto* const row =
        std::find_if(samplingRates.begin(), samplingRates.end(),
                     [version](const SamplingRates& rates) { return rates.version == version; });
    return row == samplingRates.end() ? nullptr : row;
}

const BitRates* bitRatesOf(std::int16_t version, std::int16_t layer) {
    const double key = numberOf(std::to_string(version) + std::to_string(layer));
    const auto* const row = std::find_if(bitRates.begin(), bitRates.end(),
                                         [key](const BitRates& rates) { return rates.key == key; });
    return row == bitRates.end() ? nullptr : row;
}

/// The average bit rate in kilobits per second, not rounded.
Result<double> averageBitRate(std::int64_t fileLength, std::int32_t frequencyHz,
                              std::int16_t frames, std::int16_t layer) {
    const int coefficient = coefficients.at(static_cast<std::size_t>(layer));
    if (frames == 0 || coefficient == 0) {
        return byZero();
    }
    return static_cast<double>(fileLength) * frequencyHz / frames / 1000 / coefficient;
}

/// The duration in whole seconds.
Result<std::int32_t> durationOf(std::int64_t fileLength, double bitRate) {
    if (fileLength > std::numeric_limits<std::int32_t>::max() / 8) {
        return {ErrorNumber::overflow, "Overflow"};
    }
    if (bitRate == 0) {
        return byZero();
    }
    return roundedToInteger32(std::floor(static_cast<double>(fileLength * 8) / bitRate / 1000));
}

} // namespace

Status decodeMp3Header(std::string_view digits, std::int64_t fileLength, Mp3Info& info) {
    const std::int16_t version = versions[group(digits, 12, 2)];
    const std::int16_t layer = layers[group(digits, 14, 2)];
    const SamplingRates* rates = samplingRatesOf(version);
    if (rates == nullptr) {
        return {};
    }
    const std::size_t rateIndex = group(digits, 21, 2);
    if (rateIndex >= rates->ratesHz.size()) {
        return outOfRange();
    }
    const std::int32_t frequency = rates->ratesHz[rateIndex];

    Result<double> bitRate = 0.0;
    if (info.IsVbr) {
        bitRate = averageBitRate(fileLength, frequency, info.Frames, layer);
    } else {
        const BitRates* row = bitRatesOf(version, layer);
        if (row == nullptr) {
            return {};
        }
        const std::size_t index = group(digits, 17, 4);
        bitRate = index < row->kilobits.size() ? Result<double>(row->kilobits[index])
                                               : Result<double>(outOfRange());
    }
    if (!bitRate.ok()) {
        return bitRate.error();
    }
    const Result<std::int32_t> duration = durationOf(fileLength, bitRate.value());
    if (!duration.ok()) {
        return duration.error();
    }
    const Result<std::int16_t> wholeBitRate = roundedToInteger16(bitRate.value());
    if (!wholeBitRate.ok()) {
        return wholeBitRate.error();
    }
    info.Bitrate = wholeBitRate.value();
    info.CRC = crcFlags[group(digits, 16, 1)];
    info.Duration = duration.value();
    info.Emphasis = emphases[group(digits, 31, 2)];
    info.Frequency = frequency;
    info.Mode = modes[group(digits, 25, 2)];
    info.MpegLayer = layer;
    info.MpegVersion = version;
    info.Padding = flags[group(digits, 23, 1)];
    info.Original = flags[group(digits, 30, 1)];
    info.CopyRight = flags[group(digits, 29, 1)];
    info.Private = flags[group(digits, 24, 1)];
    return {};
}

} // namespace sonarith
