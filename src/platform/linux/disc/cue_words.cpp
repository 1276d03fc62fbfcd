// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/cue_words.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/linux/disc/sheet_text.h"

namespace sonarith::disc {

namespace {

template <typename Meaning>
using Keywords = std::pair<std::string_view, Meaning>;

constexpr auto trackModes =
    std::to_array<Keywords<CueTrackMode>>({{"AUDIO", {TrackKind::audio, bytesPerSector}},
                                           {"MODE1/2048", {TrackKind::data, 2048}},
                                           {"MODE1/2352", {TrackKind::data, 2352}},
                                           {"MODE2/2048", {TrackKind::data, 2048}},
                                           {"MODE2/2324", {TrackKind::data, 2324}},
                                           {"MODE2/2336", {TrackKind::data, 2336}},
                                           {"MODE2/2352", {TrackKind::data, 2352}},
                                           {"CDI/2336", {TrackKind::data, 2336}},
                                           {"CDI/2352", {TrackKind::data, 2352}}});

constexpr auto fileFormats =
    std::to_array<Keywords<ImageFormat>>({{"BINARY", ImageFormat::littleEndian},
                                          {"MOTOROLA", ImageFormat::bigEndian},
                                          {"WAVE", ImageFormat::wave}});

constexpr auto descriptions = std::to_array<std::string_view>(
    {"CATALOG", "CDTEXT", "CDTEXTFILE", "TITLE", "PERFORMER", "SONGWRITER", "COMPOSER", "ARRANGER",
     "MESSAGE", "DISC_ID", "GENRE", "ISRC", "FLAGS", "UPC_EAN", "TOC_INFO1", "TOC_INFO2"});

template <typename Table>
auto meaning(const Table& table, std::string_view word)
    -> std::optional<typename Table::value_type::second_type> {
    for (const auto& [name, value] : table) {
        if (sameWord(name, word)) {
            return value;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<CueTrackMode> cueTrackMode(std::string_view word) {
    return meaning(trackModes, word);
}

std::optional<ImageFormat> cueFileFormat(std::string_view word) {
    return meaning(fileFormats, word);
}

bool isCueDescription(std::string_view word) {
    return std::any_of(descriptions.begin(), descriptions.end(),
                       [&](std::string_view known) { return sameWord(known, word); });
}

} // namespace sonarith::disc
