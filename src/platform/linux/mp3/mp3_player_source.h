// SPDX-License-Identifier: GPL-3.0-or-later
// Plays an MP3 file on a line of the sound card: a separate thread opens the file and decodes ahead
// into a small ring, from which the card pulls. It uses no card and writes no files, and reports
// nothing about files that cannot be played.
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

/// No caller waits for the file: a disk that hangs blocks only the thread, which is left behind
/// when the object is destroyed. The part before an offset that cannot be read is played, then it
/// ends.
class Mp3PlayerSource : public sound::SampleSource {
  public:
    /// A monotonic clock, from any origin.
    using Clock = std::function<std::chrono::nanoseconds()>;
    /// How long it stops the card while the file has no sound ready: a sleeping disk may take
    /// longer, but other lines must not become silent for that.
    static constexpr std::chrono::milliseconds patience{300};

    /// Without a thread it ends at once.
    Mp3PlayerSource(std::filesystem::path path, Clock clock,
                    const ThreadStarter& starter = startThread);
    ~Mp3PlayerSource() override;
    Mp3PlayerSource(const Mp3PlayerSource&) = delete;
    Mp3PlayerSource& operator=(const Mp3PlayerSource&) = delete;

    /// Starving while nothing is ready, and silent after `patience` of that until there is. Ended
    /// after the last sample, and for a file that cannot be read or has no frame.
    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override;

  private:
    class Decoder;
    Clock clock_;
    std::shared_ptr<Decoder> decoder_; ///< shared with its thread
    std::optional<std::chrono::nanoseconds> starvingSince_;
    sound::AbandonableThread thread_;
};

} // namespace sonarith::mp3
