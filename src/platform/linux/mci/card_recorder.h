// SPDX-License-Identifier: GPL-3.0-or-later
// The lead from the sound card to a recording: attaches it to the card's recorder, one at a time.
// It writes nothing itself (recording.h does) and knows no command.
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

/// The card's one recorder: which CardRecorder has it, and what their recordings share. All
/// CardRecorders of a card share one.
struct RecordingInput {
    /// `saves` may be a null pointer.
    RecordingInput(Notices& notices, std::shared_ptr<sound::PendingSaves> saves,
                   const sound::RecordingTiming& timing = {});
    ~RecordingInput(); ///< of what threads that hang learn afterwards, nothing is reported
    RecordingInput(const RecordingInput&) = delete;
    RecordingInput& operator=(const RecordingInput&) = delete;

    const sound::RecordingContext context;
    const CardRecorder* user = nullptr;
};

/// Where recordings may lie while they have no name, the best folder first.
using RecordingFolders = std::function<std::vector<std::filesystem::path>()>;

/// The card outlives it. No member waits for a disk for longer than sound::RecordingTiming says.
class CardRecorder : public Recorder {
  public:
    CardRecorder(sound::SoundCard& card, Clock now, RecordingFolders folders,
                 std::shared_ptr<RecordingInput> input);
    /// Takes the recording off the card. A save that is under way is finished without it.
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
    std::unique_ptr<sound::Recording> recording_; ///< empty until there was a start
    bool finished_ = false;                       ///< a save has begun: it takes no more
};

} // namespace sonarith::mci
