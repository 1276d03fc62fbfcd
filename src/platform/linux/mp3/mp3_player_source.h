// SPDX-License-Identifier: GPL-3.0-or-later
// Plays an MP3 file on a line of the sound card: a separate thread opens the file and decodes ahead
// into a small ring, from which the card pulls. The source never calls the card, writes no files,
// and reports nothing about files that cannot be played.
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

/// If the disk hangs, only the source's own thread is blocked, and this thread may outlive the
/// object. The destructor waits at most 10 ms for the thread; no other member waits. If an offset
/// of the file cannot be read, the part before this offset is played, and then the playing ends.
class Mp3PlayerSource : public sound::SampleSource {
  public:
    /// A monotonic clock with any origin.
    using Clock = std::function<std::chrono::nanoseconds()>;
    /// The longest time for which the source stops the card because no sound is ready; after that
    /// it delivers silence. A sleeping disk may take longer, but must not stop the other lines for
    /// all that time.
    static constexpr std::chrono::milliseconds patience{300};

    /// If no thread can be started, the source ends at once.
    Mp3PlayerSource(std::filesystem::path path, Clock clock,
                    const ThreadStarter& starter = startThread);
    ~Mp3PlayerSource() override;
    Mp3PlayerSource(const Mp3PlayerSource&) = delete;
    Mp3PlayerSource& operator=(const Mp3PlayerSource&) = delete;

    /// While no sound is ready, returns `starving` during the first `patience`, then silence.
    /// Returns `ended` after the last sample, and for a file that cannot be read or has no frame.
    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override;

  private:
    class Decoder;
    Clock clock_;
    std::shared_ptr<Decoder> decoder_; ///< shared with its thread
    std::optional<std::chrono::nanoseconds> starvingSince_;
    sound::AbandonableThread thread_;
};

} // namespace sonarith::mp3
