// SPDX-License-Identifier: GPL-3.0-or-later
// Stores bass and treble of the software sound card in the section "Devices" of the settings store.
// A real sound card, too, keeps its bass and treble when a program ends. The values are read at the
// start of the program and written when the user has stopped moving a slider. Volumes and mutes are
// not stored.
#pragma once

#include <chrono>
#include <memory>

#include "platform/event_loop.h"
#include "platform/linux/sound/tone_control.h"
#include "platform/settings_store.h"

namespace sonarith::sound {

/// Must be used only on the logic thread.
class KeptTone {
  public:
    /// A slider counts as at rest after this time without a change. While a user drags a slider,
    /// the times between two changes are shorter.
    static constexpr std::chrono::milliseconds restTime{500};

    /// Sets `tone` to the stored values; a value that is not a number from 0 to
    /// ToneControl::highest becomes ToneControl::middle. All arguments must outlive this object.
    KeptTone(ToneControl& tone, SettingsStore& store, EventLoop& loop);

    /// Must be called after a slider has moved. Bass and treble are written when no slider has
    /// moved for restTime.
    void changed();
    /// Writes pending changes now. Must be called before the program ends.
    void keep();

  private:
    ToneControl& tone_;
    SettingsStore& store_;
    EventLoop& loop_;
    std::unique_ptr<Wakeup> rest_; ///< non-null while a write is pending
};

} // namespace sonarith::sound
