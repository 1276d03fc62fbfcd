// SPDX-License-Identifier: GPL-3.0-or-later
// Converts positions and lengths on a disc's time line to texts in the four time formats, and such
// texts to positions. Pure arithmetic: no device, no state.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/disc/disc.h"
#include "platform/linux/mci/mci_errors.h"

namespace sonarith::mci {

enum class TimeFormat {
    milliseconds,
    hms,  ///< hours:minutes:seconds, fractions of a second dropped
    msf,  ///< minutes:seconds:sectors (75 to a second)
    tmsf, ///< track:minutes:seconds:sectors, counted from the track's start
};

/// The format that a command names ("milliseconds" or "ms", "hms", "msf", "tmsf";
/// case-insensitive); empty for any other name.
[[nodiscard]] std::optional<TimeFormat> timeFormatNamed(std::string_view name);
[[nodiscard]] std::string_view nameOf(TimeFormat format);

/// The time at which a sector starts, rounded to the nearest millisecond. A length in milliseconds
/// is the difference of two such times and is not rounded itself, so that lengths add up exactly.
[[nodiscard]] std::int64_t millisecondsOfSector(std::int64_t sector);
/// The sector whose start is nearest to a time; the inverse of millisecondsOfSector.
[[nodiscard]] std::int64_t sectorOfMilliseconds(std::int64_t milliseconds);

/// The position `sector` of the disc's time line as a text.
[[nodiscard]] std::string positionText(const disc::Table& table, std::int64_t sector,
                                       TimeFormat format);
/// The length between two sectors of the time line as a text. In tmsf the text is that of msf,
/// since a length has no track.
[[nodiscard]] std::string lengthText(std::int64_t first, std::int64_t end, TimeFormat format);

/// The sector that a text names. Fields missing at the end are 0, so in tmsf "3" is the start of
/// track 3. Errors: badInteger (not a number, or too many fields), outOfRange (a field above its
/// range, such as 60 seconds; a track that does not exist; a position beyond the end of the time
/// line or, in tmsf, of its track).
[[nodiscard]] Outcome<std::int64_t> parsePosition(const disc::Table& table, std::string_view text,
                                                  TimeFormat format);

} // namespace sonarith::mci
