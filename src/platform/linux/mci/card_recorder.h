// SPDX-License-Identifier: GPL-3.0-or-later
// Attaches recordings to the sound card's recorder, one at a time. Writes no files (recording.h
// does) and handles no commands.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/mci/card_transport.h"
#include "platform/linux/mci/devices.h"
#include "platform/linux/sound/recording.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::mci {

class CardRecorder;

/// The state of the card's single recorder: which CardRecorder uses it, and the context that all
/// recordings share. All CardRecorders of a card share one RecordingInput.
struct RecordingInput {
    /// `saves` may be a null pointer.
    RecordingInput(Notices& notices, std::shared_ptr<sound::PendingSaves> saves,
                   const sound::RecordingTiming& timing = {});
    ~RecordingInput(); ///< Recording threads that still hang report nothing afterwards.
    RecordingInput(const RecordingInput&) = delete;
    RecordingInput& operator=(const RecordingInput&) = delete;

    const sound::RecordingContext context;
    const CardRecorder* user = nullptr;
};

/// The folders for recordings that have no name yet, the best one first.
using RecordingFolders = std::function<std::vector<std::filesystem::path>()>;

/// The card must outlive the object. start() may call `folders`, which may wait for a disk.
/// sound::RecordingTiming limits all other waits for a disk.
class CardRecorder : public Recorder {
  public:
    CardRecorder(sound::SoundCard& card, Clock now, RecordingFolders folders,
                 std::shared_ptr<RecordingInput> input);
    /// Detaches the recording from the card. A running save continues in the background.
    ~CardRecorder() override;

    Status start(int channels) override;
    void stop() override;
    [[nodiscard]] bool recording() const override { return input_->user == this; }
    [[nodiscard]] std::int64_t bytes() override;
    Status save(const std::filesystem::path& path) override;

  private:
    sound::SoundCard& card_;
    Clock now_;
    RecordingFolders folders_;
    std::shared_ptr<RecordingInput> input_;
    std::unique_ptr<sound::Recording> recording_; ///< null until start() has succeeded
    bool finished_ = false;                       ///< a save was tried, so no sound can be added
};

} // namespace sonarith::mci
