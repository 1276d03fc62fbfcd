// SPDX-License-Identifier: GPL-3.0-or-later
// Plays a disc into a line of the sound card: a reader thread reads up to 4 s of sound ahead, and
// the sound card's thread pulls that sound. The position counts only the frames that were pulled.
// This class parses no commands.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/linux/disc/disc.h"
#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/result.h"
#include "platform/thread_start.h"

namespace sonarith::disc {

enum class PlayerMode { stopped, playing, paused };

/// pull() is for the sound card's thread, all other members are for the logic thread.
class DiscPlayer : public sound::SampleSource {
  public:
    explicit DiscPlayer(std::shared_ptr<Disc> disc, ThreadStarter starter = startThread);
    /// Asks the current read to stop and waits at most 5 ms for its end. If the read hangs, the
    /// reader's thread and the disc exist until the read returns.
    ~DiscPlayer() override;
    DiscPlayer(const DiscPlayer&) = delete;
    DiscPlayer& operator=(const DiscPlayer&) = delete;

    /// Plays from `sector` on, up to (not including) `endSector`. Continues from one audio track to
    /// the next; stops where a data track begins, or at `endSector`. Precondition: 0 <= sector <=
    /// endSector <= table().sectors(). Fails, and changes nothing, if no thread can be started to
    /// read the disc.
    [[nodiscard]] Status play(std::int64_t sector, std::int64_t endSector);
    void pause();
    void resume();
    /// Stops; the position does not change.
    void stop();
    /// Stops and sets the position.
    void seek(std::int64_t sector);

    /// At the end of the range to play, the mode changes from `playing` to `stopped`. After the
    /// medium has been removed, the mode stays `playing`, and the position stops at the end of the
    /// sound that was read.
    [[nodiscard]] PlayerMode mode() const;
    /// The number of the next frame to pull. Frames are counted from 0 at the beginning of the
    /// disc's time line, framesPerSector frames for each sector. At the end of the range to play,
    /// this is exactly the first frame after the range.
    [[nodiscard]] std::int64_t positionInFrames() const;
    /// How long the current read has taken so far; 0 if no read is running.
    [[nodiscard]] std::chrono::milliseconds readingFor() const;
    /// True once a read has reported that the medium is gone.
    [[nodiscard]] bool gone() const;

    /// After a full block the supply is `flowing`, even if that block is the last one. Otherwise
    /// the supply is `ended` while stopped, and `starving` while paused or if too little has been
    /// read. Once the medium is gone and all sound that was read has been pulled, the supply of a
    /// playing disc is `lost`.
    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override;

  private:
    class Reader;
    std::shared_ptr<Reader> reader_; ///< shared with thread_
    ThreadStarter starter_;
    sound::AbandonableThread thread_; ///< started by the first play()
};

} // namespace sonarith::disc
