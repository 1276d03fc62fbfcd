// SPDX-License-Identifier: GPL-3.0-or-later
// Sounds an MP3 file on a line of the sound card: a thread of its own opens the file and decodes
// ahead into a small ring, from which the card pulls. It knows no card and writes no files, and it
// is quiet about files that cannot be played.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/sample_source.h"

namespace sonarith::mp3 {

/// Nothing waits for the file: a disk that hangs keeps the thread, which is left behind when the
/// object is gone. What comes before a place that cannot be read is played, then it ends.
class Mp3PlayerSource : public sound::SampleSource {
  public:
    /// A monotonic clock, from any origin.
    using Clock = std::function<std::chrono::nanoseconds()>;
    /// How long it holds up the card while the file has no sound ready: a disk that was asleep may
    /// take longer, but other lines are not to fall silent for that.
    static constexpr std::chrono::milliseconds patience{300};

    Mp3PlayerSource(std::filesystem::path path, Clock clock);
    ~Mp3PlayerSource() override;
    Mp3PlayerSource(const Mp3PlayerSource&) = delete;
    Mp3PlayerSource& operator=(const Mp3PlayerSource&) = delete;

    /// Starving while nothing is ready, and after `patience` of that silence until there is. Ended
    /// behind the last sample, and for a file that cannot be read or has no frame.
    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override;

  private:
    class Decoder;
    Clock clock_;
    std::shared_ptr<Decoder> decoder_; ///< shared with its thread
    std::optional<std::chrono::nanoseconds> starvingSince_;
    std::optional<sound::AbandonableThread> thread_;
};

} // namespace sonarith::mp3
