// SPDX-License-Identifier: GPL-3.0-or-later
// Implements the mixer interface for the software sound card. Callers find the card's lines and
// controls by the type numbers that mixer.h defines. The card holds the levels (sound_card.h).
// kept_tone.h saves bass and treble in the settings store.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "platform/mixer.h"

namespace sonarith::sound {

/// The identifiers of lines and mixer controls are the same for all handles.
class CardMixer final : public Mixer {
  public:
    /// A null `card` means a machine without a mixer: opening fails. The card must outlive this
    /// object; `now` is the clock of the card's thread. `toneChanged` is called after each write of
    /// bass or treble.
    explicit CardMixer(SoundCard* card, std::function<void()> toneChanged = {},
                       SoundCardThread::Clock now = monotonicNow);

    MixerResult open(MixerHandle& mixer) override;
    MixerResult getLineInfo(MixerHandle mixer, MixerLine& line) override;
    MixerResult getLineControls(MixerHandle mixer, MixerLineControls& controls) override;
    MixerResult getControlDetails(MixerHandle mixer, MixerControlDetails& details) override;
    MixerResult setControlDetails(MixerHandle mixer, const MixerControlDetails& details) override;

  private:
    [[nodiscard]] bool isOpen(MixerHandle mixer) const { return mixer >= 1 && mixer <= opened_; }
    [[nodiscard]] MixerResult check(MixerHandle mixer, const MixerControlDetails& details) const;

    SoundCard* card_;
    std::function<void()> toneChanged_;
    SoundCardThread::Clock now_;
    MixerHandle opened_ = 0; ///< the number of handles issued, which is also the latest handle
};

} // namespace sonarith::sound
