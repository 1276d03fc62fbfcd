// SPDX-License-Identifier: GPL-3.0-or-later
// Plays a disc into a line of the sound card: a reader thread keeps seconds of sound ready, the
// engine pulls them, and the position is what the engine has taken. No commands are parsed here.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/linux/disc/disc.h"
#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/sample_source.h"

namespace sonarith::disc {

enum class PlayerMode { stopped, playing, paused };

/// All members but `pull` belong to the logic's thread; `pull` to the sound engine's.
class DiscPlayer : public sound::SampleSource {
  public:
    explicit DiscPlayer(std::shared_ptr<Disc> disc);
    /// Stops the read that is under way, and waits a moment for it. One that hangs is left behind,
    /// and the disc with it, until the device lets it return.
    ~DiscPlayer() override;
    DiscPlayer(const DiscPlayer&) = delete;
    DiscPlayer& operator=(const DiscPlayer&) = delete;

    /// Plays from `sector` on, up to (not including) `endSector`. Plays across audio tracks and
    /// stops where a data track begins, or at `endSector`.
    /// Precondition: 0 <= sector <= endSector <= table().sectors().
    void play(std::int64_t sector, std::int64_t endSector);
    void pause();
    void resume();
    /// Stops; the position stays where it is.
    void stop();
    /// Stops, and moves the position.
    void seek(std::int64_t sector);

    /// `playing` turns to `stopped` by itself at the end; a disc that vanished stays `playing`
    /// with a position that no longer moves.
    [[nodiscard]] PlayerMode mode() const;
    /// In frames of the disc's time line (framesPerSector to a sector): all frames before it have
    /// been taken by the engine. At the end of playing it is exactly the end sector's first frame.
    [[nodiscard]] std::int64_t positionInFrames() const;
    /// How long the read that is under way has taken so far; 0 if none is.
    [[nodiscard]] std::chrono::milliseconds readingFor() const;
    /// True from the moment a read said that the medium is gone.
    [[nodiscard]] bool gone() const;

    /// Starving while the reader has nothing yet, and while paused. Ended while stopped. Lost once
    /// the medium is gone and what was read before has been taken, though the mode says `playing`.
    /// A full block is always `flowing`, even the last one.
    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override;

  private:
    class Reader;
    std::shared_ptr<Reader> reader_; ///< shared with its thread
    sound::AbandonableThread thread_;
};

} // namespace sonarith::disc
