// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/disc_replies.h"

#include <cstddef>
#include <cstdlib>

#include "platform/text/numbers.h"
#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// Reads at most two characters of `reply`, from index `at` on. If they are a number, stores the
/// number in `target`.
void readTwoCharacters(std::string_view reply, std::size_t at, std::int16_t& target) {
    if (at < reply.size()) {
        toInteger16(reply.substr(at, 2)).storeIn(target);
    }
}

/// Writes `number` in decimal, with a leading zero if it has only one digit.
std::string atLeastTwoDigits(std::int16_t number) {
    const std::string digits = std::to_string(std::abs(number));
    return (number < 0 ? "-" : "") + std::string(digits.size() < 2 ? "0" : "") + digits;
}

} // namespace

bool isTrueText(const std::string& reply) {
    return lowerCase(reply) == "true" || toDouble(reply).valueOr(0) != 0;
}

void readTrackCount(std::string_view reply, DiscState& disc) {
    readTwoCharacters(reply, 0, disc.NumTracks);
}

void readPosition(std::string_view reply, DiscState& disc) {
    readTwoCharacters(reply, 0, disc.CurTrack);
    readTwoCharacters(reply, 3, disc.CurMin);
    readTwoCharacters(reply, 6, disc.CurSec);
}

std::string positionText(const DiscState& disc) {
    return "[" + atLeastTwoDigits(disc.CurTrack) + "] " + atLeastTwoDigits(disc.CurMin) + ":" +
           atLeastTwoDigits(disc.CurSec);
}

} // namespace sonarith
