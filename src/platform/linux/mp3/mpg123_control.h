// SPDX-License-Identifier: GPL-3.0-or-later
// The real MP3 control: decodes on all cores and plays files on the sound card's wave line. This
// class starts and stops the work; decode_job.h and mp3_player_source.h do it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/active_mp3.h"
#include "platform/linux/mp3/decode_job.h"
#include "platform/linux/mp3/mp3_player_source.h"
#include "platform/linux/sound/pending_saves.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/notices.h"

namespace sonarith::mp3 {

/// As many threads as the machine has cores, within limits.
[[nodiscard]] Division divisionForThisMachine();

/// Each window that needs an MP3 control has its own. Any number of MP3 controls may use one card.
/// The card's wave line belongs to the control that played last; Stop of another control does not
/// affect that line. The controls decode concurrently; two decodings to the same target run one
/// after the other.
///
/// For use on the logic thread only; `mapPath` is called on no other thread.
///
/// The waits for a disk are short, but long enough for a working disk. Play waits at most 10 ms,
/// DecodeToWav at most 20 ms, Stop and the destructor at most 50 ms. Play and DecodeToWav also call
/// `mapPath`, which may wait longer. No other member waits for a disk.
///
/// The states of a decoding as the caller sees them (for all states, see decode_job.h):
///
///     DecodeToWav        Busy is true, also while the decoding waits for an earlier decoding to
///                        the same target
///     end of decoding    Busy is false; the WAV has its name, unless no sample was decoded or
///                        saving failed; after a failure the WAV contains everything decoded
///                        before it
///     Stop               Busy is false at once; the WAV with the decoded part gets its name when
///                        the disk allows, possibly after the control is destroyed
///     DecodeToWav for other files
///                        stops the previous decoding as Stop does; Busy is true for the new one
///     DecodeToWav again  has no effect if the same files are being decoded, or were decoded
///                        completely and have not changed since; after a stop or a failure it
///                        decodes everything again
class Mpg123Control : public ActiveMP3 {
  public:
    using Clock = std::function<sound::SoundCard::Time()>;
    /// Translates a path of the logic to a machine path.
    using PathMapper = std::function<std::filesystem::path(const std::string&)>;

    /// `card` must outlive the control. `clock` is the card's clock, and may be called on the
    /// card's thread. `notices` must live until the process ends: a decoding that outlives the
    /// control may still report. `saves` counts each decoding until it has ended.
    Mpg123Control(sound::SoundCard& card, Clock clock, PathMapper mapPath, Notices& notices,
                  std::shared_ptr<sound::PendingSaves> saves,
                  const Division& division = divisionForThisMachine());
    ~Mpg123Control() override; ///< stops playing and decoding
    Mpg123Control(const Mpg123Control&) = delete;
    Mpg123Control& operator=(const Mpg123Control&) = delete;

    /// Takes effect with the next Play or DecodeToWav; playing and decoding that have already
    /// started continue.
    Status setSourceFile(const std::string& path) override;
    [[nodiscard]] bool Busy() const override;
    [[nodiscard]] std::int32_t Position() const override;
    [[nodiscard]] std::int32_t Length() const override;
    /// Starts at the file's beginning, even if the file is already playing. A file that cannot be
    /// played is silent, and the failure is not reported.
    Status Play() override;
    /// Stops this control's playing and decoding.
    Status Stop() override;
    /// Fails only if no source file is set. A later failure ends the decoding and is reported to
    /// the user.
    Status DecodeToWav(const std::string& path) override;

    /// The result of the last decoding; its outcome is `none` until that decoding is over
    /// (decode_job.h), and if no decoding was ever started.
    [[nodiscard]] DecodeResult lastResult() const;

  private:
    class Reporter;
    void endPlaying();

    sound::SoundCard& card_;
    Clock clock_;
    PathMapper mapPath_;
    Division division_;
    std::shared_ptr<sound::PendingSaves> saves_;
    std::shared_ptr<Reporter> reporter_; ///< shared with the decodings
    std::string sourceFile_;
    std::unique_ptr<DecodeJob> job_; ///< the last decoding, running or not
    std::shared_ptr<Mp3PlayerSource> playing_;
};

} // namespace sonarith::mp3
