// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the text of the notice to the user about a decoding, in one sentence. The notice is
// reported elsewhere, and the logic does not use the text.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/linux/mp3/decode_result.h"

namespace sonarith::mp3 {

/// The files of a decoding, as the notice names them.
struct DecodeNames {
    std::string source;           ///< without its folder
    std::string target;           ///< without its folder
    std::filesystem::path folder; ///< of the target
};

/// Empty if the decoding was stopped, or was completed without an omitted frame or a damaged place.
[[nodiscard]] std::string decodeNotice(const DecodeNames& names, const DecodeResult& result);

/// The duration of `samples` per channel at `rate` samples per second, as "3:12" or "1:03:12";
/// fractions of a second are dropped.
[[nodiscard]] std::string playingTime(std::int64_t samples, int rate);

} // namespace sonarith::mp3
