// SPDX-License-Identifier: GPL-3.0-or-later
// The lead from the disc to the sound card: plays a disc into the card's compact disc line. It
// reads no sector itself (disc_player.h does) and knows no command.
#pragma once

#include <functional>
#include <memory>

#include "platform/linux/disc/disc_player.h"
#include "platform/linux/mci/devices.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::mci {

/// The clock of the sound card's thread.
using Clock = std::function<sound::SoundCard::Time()>;

/// The card outlives it. While it plays, the line is its own; at rest the line has no source, so
/// that an idle card sleeps and a paused disc holds up no recording.
class CardTransport : public Transport {
  public:
    CardTransport(std::shared_ptr<disc::Disc> disc, sound::SoundCard& card, Clock now);
    ~CardTransport() override; ///< takes the disc off the line

    void play(std::int64_t sector, std::int64_t endSector) override;
    void pause() override;
    void resume() override;
    void stop() override;
    void seek(std::int64_t sector) override;
    [[nodiscard]] disc::PlayerMode mode() override;
    [[nodiscard]] std::int64_t positionInFrames() override;
    [[nodiscard]] std::chrono::milliseconds readingFor() override;
    [[nodiscard]] bool gone() override;

  private:
    /// Brings the player to this very moment.
    void settle();
    void attach();
    void detach();

    sound::SoundCard& card_;
    Clock now_;
    std::shared_ptr<disc::DiscPlayer> player_; ///< shared with the card's line
    bool attached_ = false;
};

} // namespace sonarith::mci
