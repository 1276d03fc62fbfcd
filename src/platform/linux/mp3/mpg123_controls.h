// SPDX-License-Identifier: GPL-3.0-or-later
// Creates this machine's MP3 controls: one for each window that needs one.
#pragma once

#include <memory>
#include <set>

#include "platform/active_mp3.h"
#include "platform/linux/mp3/mpg123_control.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/notices.h"

namespace sonarith::mp3 {

class Mpg123Controls final : public Mp3Controls {
  public:
    /// The arguments are passed to each control: see Mpg123Control.
    Mpg123Controls(sound::SoundCard& card, Mpg123Control::Clock clock,
                   Mpg123Control::PathMapper mapPath, Notices& notices,
                   std::shared_ptr<sound::PendingSaves> saves);

    [[nodiscard]] std::unique_ptr<ActiveMP3> create() override;
    /// Called at the end of the program: stops every existing control. The constructor's `saves`
    /// counts the stopped decodings until their decoded parts are on the disk.
    void stopAll();

  private:
    class Registered;

    sound::SoundCard& card_;
    Mpg123Control::Clock clock_;
    Mpg123Control::PathMapper mapPath_;
    Notices& notices_;
    std::shared_ptr<sound::PendingSaves> saves_;
    /// Shared with the controls, which may outlive this object.
    std::shared_ptr<std::set<ActiveMP3*>> controls_ = std::make_shared<std::set<ActiveMP3*>>();
};

} // namespace sonarith::mp3
