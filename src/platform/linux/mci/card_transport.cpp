// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/card_transport.h"

#include <utility>

namespace sonarith::mci {

CardTransport::CardTransport(std::shared_ptr<disc::Disc> disc, sound::SoundCard& card, Clock now,
                             ThreadStarter starter)
    : card_(card),
      now_(std::move(now)),
      player_(std::make_shared<disc::DiscPlayer>(std::move(disc), std::move(starter))) {}

CardTransport::~CardTransport() {
    detach();
}

Status CardTransport::play(std::int64_t sector, std::int64_t endSector) {
    detach();
    Status played = player_->play(sector, endSector);
    if (played.ok()) {
        attach();
    }
    return played;
}

void CardTransport::pause() {
    detach();
    player_->pause();
}

void CardTransport::resume() {
    player_->resume();
    attach();
}

void CardTransport::stop() {
    detach();
    player_->stop();
}

void CardTransport::seek(std::int64_t sector) {
    detach();
    player_->seek(sector);
}

disc::PlayerMode CardTransport::mode() {
    settle();
    return player_->mode();
}

std::int64_t CardTransport::positionInFrames() {
    settle();
    return player_->positionInFrames();
}

std::chrono::milliseconds CardTransport::readingFor() {
    return player_->readingFor();
}

bool CardTransport::gone() {
    return player_->gone();
}

void CardTransport::settle() {
    if (attached_) {
        card_.advance(now_());
    }
}

void CardTransport::attach() {
    attached_ = true;
    card_.attach(sound::Line::compactDisc, player_, now_());
}

// Sound that is due is played first, so that the disc stops at the position of this moment.
void CardTransport::detach() {
    settle();
    if (attached_) {
        card_.detach(sound::Line::compactDisc);
        attached_ = false;
    }
}

} // namespace sonarith::mci
