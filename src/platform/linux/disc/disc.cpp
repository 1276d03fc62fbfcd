// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/disc.h"

#include <algorithm>

namespace sonarith::disc {

namespace {

// The hash function FNV-1a with 64 bits (public domain; draft-eastlake-fnv): it is short, and every
// bit of the table affects its result.
constexpr std::uint64_t fnvOffset = 14695981039346656037U;
constexpr std::uint64_t fnvPrime = 1099511628211U;

// The identity of a disc is a number from 1 to this value. The logic computes the number in the
// name of a WAV file as floor(identity * fraction + 1), where 0 <= fraction < 1. The result must
// fit a signed 32-bit integer.
constexpr std::uint64_t largestIdentity = 2147483646U;

std::uint64_t mixIn(std::uint64_t hash, std::uint64_t value) {
    for (int shift = 0; shift < 64; shift += 8) {
        hash = (hash ^ ((value >> shift) & 0xffU)) * fnvPrime;
    }
    return hash;
}

} // namespace

std::int64_t Table::start(int number) const {
    const auto before = std::clamp<std::int64_t>(number - 1, 0, std::ssize(tracks));
    std::int64_t sector = 0;
    for (std::int64_t i = 0; i < before; ++i) {
        sector += tracks[static_cast<std::size_t>(i)].sectors;
    }
    return sector;
}

std::int64_t Table::sectors() const {
    return start(static_cast<int>(tracks.size()) + 1);
}

int Table::trackAt(std::int64_t sector) const {
    std::int64_t end = 0;
    int number = 0;
    for (const Track& track : tracks) {
        ++number;
        end += track.sectors;
        if (sector < end) {
            break;
        }
    }
    return number;
}

std::string identityOf(const Table& table) {
    std::uint64_t hash = mixIn(fnvOffset, table.tracks.size());
    for (const Track& track : table.tracks) {
        hash = mixIn(hash, track.kind == TrackKind::audio ? 0 : 1);
        hash = mixIn(hash, static_cast<std::uint64_t>(track.sectors));
    }
    return std::to_string(hash % largestIdentity + 1);
}

} // namespace sonarith::disc
