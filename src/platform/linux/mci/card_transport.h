// SPDX-License-Identifier: GPL-3.0-or-later
// Connects the disc to the sound card: plays a disc into the card's compact disc line. It reads no
// sector itself (disc_player.h does) and handles no commands.
#pragma once

#include <functional>
#include <memory>

#include "platform/linux/disc/disc_player.h"
#include "platform/linux/mci/devices.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::mci {

/// The clock of the sound card's thread.
using Clock = std::function<sound::SoundCard::Time()>;

/// The card must outlive the transport. The disc player is the line's source only while the disc
/// plays. A paused source would keep the card active and block a recording.
class CardTransport : public Transport {
  public:
    CardTransport(std::shared_ptr<disc::Disc> disc, sound::SoundCard& card, Clock now,
                  ThreadStarter starter = startThread);
    ~CardTransport() override; ///< detaches the disc from the line

    Status play(std::int64_t sector, std::int64_t endSector) override;
    void pause() override;
    void resume() override;
    void stop() override;
    void seek(std::int64_t sector) override;
    [[nodiscard]] disc::PlayerMode mode() override;
    [[nodiscard]] std::int64_t positionInFrames() override;
    [[nodiscard]] std::chrono::milliseconds readingFor() override;
    [[nodiscard]] bool gone() override;

  private:
    /// Advances the player to the present moment.
    void settle();
    void attach();
    void detach();

    sound::SoundCard& card_;
    Clock now_;
    std::shared_ptr<disc::DiscPlayer> player_; ///< shared with the card's line
    bool attached_ = false;
};

} // namespace sonarith::mci
