// SPDX-License-Identifier: GPL-3.0-or-later
// Bass and treble in the store's section "Devices": read at the start, written when a slider has
// come to rest, as sound cards keep them. Volumes and mutes are not kept.
#pragma once

#include <chrono>
#include <memory>

#include "platform/event_loop.h"
#include "platform/linux/sound/tone_control.h"
#include "platform/settings_store.h"

namespace sonarith::sound {

/// Used by the loop's thread alone.
class KeptTone {
  public:
    /// A slider without a change for so long rests; a drag has no longer pauses.
    static constexpr std::chrono::milliseconds restTime{500};

    /// Sets `tone` to what is stored; what is no number from 0 to ToneControl::highest is the
    /// middle. All outlive it.
    KeptTone(ToneControl& tone, SettingsStore& store, EventLoop& loop);

    /// A slider has moved: its position is written after restTime, if no other change follows.
    void changed();
    /// Writes now what would be written later: the end of the program.
    void keep();

  private:
    ToneControl& tone_;
    SettingsStore& store_;
    EventLoop& loop_;
    std::unique_ptr<Wakeup> rest_; ///< while something is to be written
};

} // namespace sonarith::sound
