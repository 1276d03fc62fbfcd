// SPDX-License-Identifier: GPL-3.0-or-later
// The real MP3 control: decodes on all cores and sounds files on the sound card's wave line. Here
// are the rules of the control alone; how it is done stands in decode_job.h and
// mp3_player_source.h.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/active_mp3.h"
#include "platform/linux/mp3/decode_job.h"
#include "platform/linux/sound/sound_card.h"

namespace sonarith::mp3 {

/// As many threads as the machine has cores, within reason.
[[nodiscard]] Division divisionForThisMachine();

/// All members belong to one thread, the logic's.
class Mpg123Control : public ActiveMP3 {
  public:
    using Clock = std::function<sound::SoundCard::Time()>;
    /// From the logic's path form to a path of this machine.
    using PathMapper = std::function<std::filesystem::path(const std::string&)>;

    /// `card` must outlive the control; `clock` is the card's.
    Mpg123Control(sound::SoundCard& card, Clock clock, PathMapper mapPath,
                  const Division& division = divisionForThisMachine());
    ~Mpg123Control() override; ///< stops
    Mpg123Control(const Mpg123Control&) = delete;
    Mpg123Control& operator=(const Mpg123Control&) = delete;

    /// Holds for the next Play or DecodeToWav; what is running goes on.
    Status setSourceFile(const std::string& path) override;
    [[nodiscard]] bool Busy() const override;
    [[nodiscard]] std::int32_t Position() const override;
    [[nodiscard]] std::int32_t Length() const override;
    /// Begins anew if it is playing. Fails if the file cannot be read.
    Status Play() override;
    Status Stop() override;
    /// What goes wrong later than here ends the decoding: Busy turns false.
    Status DecodeToWav(const std::string& path) override;

    /// What became of the last decoding; `none` while there was no such, or while it is running.
    [[nodiscard]] DecodeResult lastResult() const;

  private:
    void endPlaying();

    sound::SoundCard& card_;
    Clock clock_;
    PathMapper mapPath_;
    Division division_;
    std::string sourceFile_;
    std::unique_ptr<DecodeJob> job_; ///< the last one, running or not
    std::shared_ptr<sound::SampleSource> playing_;
};

} // namespace sonarith::mp3
