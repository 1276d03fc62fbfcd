// SPDX-License-Identifier: GPL-3.0-or-later
// The lead from the sound card to a recording: lets a file take what the card's recorder hears. It
// writes no samples itself (recording_file.h does) and knows no command.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/mci/card_transport.h"
#include "platform/linux/mci/devices.h"
#include "platform/linux/sound/recording_file.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::mci {

class CardRecorder;

/// The card's one recorder: which CardRecorder has it. All CardRecorders of a card share one.
struct RecordingInput {
    const CardRecorder* user = nullptr;
};

/// Where recordings may lie while they have no name, the best folder first.
using RecordingFolders = std::function<std::vector<std::filesystem::path>()>;

/// The card outlives it.
class CardRecorder : public Recorder {
  public:
    CardRecorder(sound::SoundCard& card, Clock now, RecordingFolders folders,
                 std::shared_ptr<RecordingInput> input);
    ~CardRecorder() override; ///< takes the recording off the card

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
    std::shared_ptr<sound::RecordingFile> file_; ///< shared with the card's recorder
    bool finished_ = false;                      ///< a save has begun: the file takes no more
};

} // namespace sonarith::mci
