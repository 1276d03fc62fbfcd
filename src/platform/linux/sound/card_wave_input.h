// SPDX-License-Identifier: GPL-3.0-or-later
// The machine's wave input: device 0 delivers the sound of the software sound card's recorder,
// whatever the recorder's source is. This class records no file (recording.h does) and measures
// no peak (sound_card.h does).
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/sound_card_thread.h"
#include "platform/wave_input.h"

namespace sonarith::sound {

class CardWaveInput final : public WaveInput {
  public:
    /// The longest wait of open() for the opening of an external input; a user does not notice such
    /// a short delay. An input that takes longer counts as opened. If its opening fails later, the
    /// input is silent.
    static constexpr std::chrono::milliseconds inputPatience{40};

    /// The card must outlive this object; `now` is the clock of the card's thread.
    explicit CardWaveInput(SoundCard& card, SoundCardThread::Clock now = monotonicNow);
    ~CardWaveInput() override;
    CardWaveInput(const CardWaveInput&) = delete;
    CardWaveInput& operator=(const CardWaveInput&) = delete;

    WaveResult open(WaveInHandle& handle, std::uint32_t device, const WaveFormat& format) override;
    WaveResult prepareHeader(WaveInHandle handle, WaveHeader& header) override;
    WaveResult unprepareHeader(WaveInHandle handle, WaveHeader& header) override;
    WaveResult addBuffer(WaveInHandle handle, WaveHeader& header) override;
    WaveResult start(WaveInHandle handle) override;
    /// A partly filled buffer is marked done; empty buffers remain in the queue.
    WaveResult stop(WaveInHandle handle) override;
    WaveResult reset(WaveInHandle handle) override;
    WaveResult close(WaveInHandle handle) override;
    [[nodiscard]] std::string errorText(WaveResult result) const override;

  private:
    class Tape;

    [[nodiscard]] bool isOpen(WaveInHandle handle) const { return tape_ && handle == handle_; }
    /// Opens the external input if it is the recorder's source; false if that fails.
    [[nodiscard]] bool openInput();
    void stopListening();

    SoundCard& card_;
    SoundCardThread::Clock now_;
    WaveInHandle handle_ = 0;            ///< the most recently issued handle
    std::shared_ptr<Tape> tape_;         ///< not null while the device is open
    std::shared_ptr<SampleSource> held_; ///< keeps the external input open from open() to start()
    bool running_ = false;
    std::string failedInput_; ///< the name of the input for which `open` failed
};

} // namespace sonarith::sound
