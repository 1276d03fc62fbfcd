// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/disc_notices.h"

#include <cstdint>

namespace sonarith::mci {
namespace {

std::string secondsOf(std::int64_t sectors) {
    const std::int64_t tenths =
        (10 * sectors + disc::sectorsPerSecond - 1) / disc::sectorsPerSecond;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
}

std::string lossOf(const TrackLoss& loss) {
    std::string text = "Track " + std::to_string(loss.track) + ": ";
    if (loss.damage.silent > 0) {
        text += secondsOf(loss.damage.silent) + " could not be read and are silent";
    }
    if (loss.damage.guessed > 0) {
        text += loss.damage.silent > 0 ? ", and " : "";
        text += secondsOf(loss.damage.guessed) +
                " could not be read without error and were replaced by the drive's best guess";
    }
    return text;
}

} // namespace

Notice lostSound(std::span<const TrackLoss> losses, std::string_view path) {
    std::string text;
    for (const TrackLoss& loss : losses) {
        text += (text.empty() ? "" : "; ") + lossOf(loss);
    }
    const std::size_t separator = path.find_last_of("\\/");
    const std::string_view name =
        separator == std::string_view::npos ? path : path.substr(separator + 1);
    return {text + " in " + std::string(name) + "."};
}

Notice playingIsInterrupted(const std::string& drive, std::chrono::seconds since) {
    return {"Playing is interrupted: " + drive + " has not responded for " +
                std::to_string(since.count()) + " s.",
            drive};
}

Notice discHasVanished(const std::string& image) {
    return {"Playing has ended: " + image + " was removed or has changed."};
}

} // namespace sonarith::mci
