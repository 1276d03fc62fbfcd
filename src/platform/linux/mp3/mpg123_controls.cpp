// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mpg123_controls.h"

#include <utility>

namespace sonarith::mp3 {

/// An MP3 control that is in the set `controls` during its lifetime, so that stopAll() stops it.
class Mpg123Controls::Registered final : public Mpg123Control {
  public:
    Registered(const Mpg123Controls& maker, std::shared_ptr<std::set<ActiveMP3*>> controls)
        : Mpg123Control(maker.card_, maker.clock_, maker.mapPath_, maker.notices_, maker.saves_),
          controls_(std::move(controls)) {
        controls_->insert(this);
    }
    ~Registered() override { controls_->erase(this); }

  private:
    std::shared_ptr<std::set<ActiveMP3*>> controls_;
};

Mpg123Controls::Mpg123Controls(sound::SoundCard& card, Mpg123Control::Clock clock,
                               Mpg123Control::PathMapper mapPath, Notices& notices,
                               std::shared_ptr<sound::PendingSaves> saves)
    : card_(card),
      clock_(std::move(clock)),
      mapPath_(std::move(mapPath)),
      notices_(notices),
      saves_(std::move(saves)) {}

std::unique_ptr<ActiveMP3> Mpg123Controls::create() {
    return std::make_unique<Registered>(*this, controls_);
}

void Mpg123Controls::stopAll() {
    for (ActiveMP3* control : *controls_) {
        control->Stop().passOver();
    }
}

} // namespace sonarith::mp3
