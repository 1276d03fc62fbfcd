// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/time_format.h"

#include <array>
#include <initializer_list>

#include "platform/linux/mci/command_parser.h"

namespace sonarith::mci {
namespace {

constexpr std::int64_t perSecond = disc::sectorsPerSecond;
constexpr std::int64_t perMinute = 60 * perSecond;
constexpr std::int64_t perHour = 60 * perMinute;
/// Number of fields in tmsf, the format with the most fields.
constexpr std::size_t maxFields = 4;
using Fields = std::array<std::int64_t, maxFields>;

/// Each field has at least two digits, since the logic reads fields at fixed positions of a reply.
std::string joined(std::initializer_list<std::int64_t> fields) {
    std::string text;
    for (const std::int64_t field : fields) {
        if (!text.empty()) {
            text += ':';
        }
        if (field < 10) {
            text += '0';
        }
        text += std::to_string(field);
    }
    return text;
}

std::string hmsText(std::int64_t sectors) {
    return joined({sectors / perHour, sectors / perMinute % 60, sectors / perSecond % 60});
}

std::string msfText(std::int64_t sectors) {
    return joined({sectors / perMinute, sectors / perSecond % 60, sectors % perSecond});
}

/// Parses up to `count` numbers separated by colons; numbers missing at the end are 0. Fails if
/// there are more than `count`.
Outcome<Fields> split(std::string_view text, std::size_t count) {
    Fields fields{};
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t colon = text.find(':');
        const Outcome<int> number = parseInteger(text.substr(0, colon));
        if (!number.ok()) {
            return number.error;
        }
        fields[i] = number.value;
        if (colon == std::string_view::npos) {
            return fields;
        }
        text.remove_prefix(colon + 1);
    }
    return MciError::badInteger;
}

Outcome<std::int64_t> sectorsOfHms(std::int64_t hours, std::int64_t minutes, std::int64_t seconds) {
    if (minutes >= 60 || seconds >= 60) {
        return MciError::outOfRange;
    }
    return hours * perHour + minutes * perMinute + seconds * perSecond;
}

Outcome<std::int64_t> sectorsOfMsf(std::int64_t minutes, std::int64_t seconds,
                                   std::int64_t sectors) {
    if (seconds >= 60 || sectors >= perSecond) {
        return MciError::outOfRange;
    }
    return minutes * perMinute + seconds * perSecond + sectors;
}

Outcome<std::int64_t> sectorOfTmsf(const disc::Table& table, const Fields& fields) {
    if (fields[0] < 1 || fields[0] > static_cast<std::int64_t>(table.tracks.size())) {
        return MciError::outOfRange;
    }
    const int track = static_cast<int>(fields[0]);
    const Outcome<std::int64_t> offset = sectorsOfMsf(fields[1], fields[2], fields[3]);
    if (!offset.ok()) {
        return offset;
    }
    const std::int64_t start = table.start(track);
    return offset.value > table.start(track + 1) - start
               ? Outcome<std::int64_t>(MciError::outOfRange)
               : Outcome(start + offset.value);
}

Outcome<std::int64_t> sectorOf(const disc::Table& table, std::string_view text, TimeFormat format) {
    const std::size_t count = format == TimeFormat::milliseconds ? 1
                              : format == TimeFormat::tmsf       ? maxFields
                                                                 : 3;
    const Outcome<Fields> fields = split(text, count);
    if (!fields.ok()) {
        return fields.error;
    }
    const Fields& f = fields.value;
    switch (format) {
    case TimeFormat::milliseconds:
        return sectorOfMilliseconds(f[0]);
    case TimeFormat::hms:
        return sectorsOfHms(f[0], f[1], f[2]);
    case TimeFormat::msf:
        return sectorsOfMsf(f[0], f[1], f[2]);
    case TimeFormat::tmsf:
        break;
    }
    return sectorOfTmsf(table, f);
}

} // namespace

std::optional<TimeFormat> timeFormatNamed(std::string_view name) {
    const std::string lower = asciiLowerCase(name);
    if (lower == "ms") {
        return TimeFormat::milliseconds;
    }
    for (const TimeFormat format :
         {TimeFormat::milliseconds, TimeFormat::hms, TimeFormat::msf, TimeFormat::tmsf}) {
        if (lower == nameOf(format)) {
            return format;
        }
    }
    return std::nullopt;
}

std::string_view nameOf(TimeFormat format) {
    switch (format) {
    case TimeFormat::milliseconds:
        return "milliseconds";
    case TimeFormat::hms:
        return "hms";
    case TimeFormat::msf:
        return "msf";
    case TimeFormat::tmsf:
        break;
    }
    return "tmsf";
}

// A sector lasts 40/3 ms. Adding 1 before the division rounds one third down and two thirds up.
std::int64_t millisecondsOfSector(std::int64_t sector) {
    return (sector * 40 + 1) / 3;
}

std::int64_t sectorOfMilliseconds(std::int64_t milliseconds) {
    return (milliseconds * 3 + 20) / 40;
}

std::string positionText(const disc::Table& table, std::int64_t sector, TimeFormat format) {
    if (format != TimeFormat::tmsf) {
        return lengthText(0, sector, format);
    }
    const int track = table.trackAt(sector);
    const std::int64_t offset = sector - table.start(track);
    return joined({track, offset / perMinute, offset / perSecond % 60, offset % perSecond});
}

std::string lengthText(std::int64_t first, std::int64_t end, TimeFormat format) {
    switch (format) {
    case TimeFormat::milliseconds:
        return std::to_string(millisecondsOfSector(end) - millisecondsOfSector(first));
    case TimeFormat::hms:
        return hmsText(end - first);
    case TimeFormat::msf:
    case TimeFormat::tmsf:
        break;
    }
    return msfText(end - first);
}

Outcome<std::int64_t> parsePosition(const disc::Table& table, std::string_view text,
                                    TimeFormat format) {
    const Outcome<std::int64_t> sector = sectorOf(table, text, format);
    if (sector.ok() && sector.value > table.sectors()) {
        return MciError::outOfRange;
    }
    return sector;
}

} // namespace sonarith::mci
