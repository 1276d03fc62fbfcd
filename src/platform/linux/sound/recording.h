// SPDX-License-Identifier: GPL-3.0-or-later
// A recording under way: what the card's recorder hears goes to a file on the disk
// (recording_file.h), and neither the card nor the logic waits for that disk. It does not decide
// where it is saved.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/linux/sound/abandonable_thread.h"
#include "platform/linux/sound/pending_saves.h"
#include "platform/linux/sound/recording_notices.h"
#include "platform/linux/sound/sound_card.h"
#include "platform/linux/sound/wav_writer.h"
#include "platform/result.h"

namespace sonarith::sound {

/// The times that a recording goes by; none was measured.
struct RecordingTiming {
    /// The logic's thread waits so long for the disk at the most, in `begin`, in `save` and in the
    /// destructor; not in the destructor if it waited in vain before. So a stop, a save and an end
    /// together take less than the 100 ms that pass unnoticed.
    std::chrono::milliseconds command{80};
    /// A folder in which no file is made within this time is passed over, if there is another one.
    /// For four folders that is less than what the queue holds.
    std::chrono::milliseconds folder{2000};
    /// A save that takes longer is reported to the user.
    std::chrono::milliseconds lateSave{3000};
};

/// What all recordings of a card share.
struct RecordingContext {
    std::shared_ptr<RecordingNotices> notices;
    std::shared_ptr<PendingSaves> saves; ///< may be a null pointer
    RecordingTiming timing = {};
};

struct RecordingJob;

/// Made, used and destroyed by the logic's thread; a thread of its own writes.
///
/// What waits for a slow disk is bounded, and holds the card at that bound: see RecordingQueue.
/// What is on a full disk or before a failure of it is kept and can be saved: see RecordingFile.
///
/// A disk that hangs is left alone with its thread. If it comes back while the program runs, the
/// save that was asked for is done then, whole. What a recording without a name holds cannot be
/// named after the process has ended: of a disk that hangs until then, an unsaved recording is lost
/// with the process, also what had reached that disk.
class Recording {
  public:
    /// In the first of `folders` that takes a file; best is the one that it will be saved in, as it
    /// needs no copy then. Fails, with the last folder's reason, if none does. Where a folder does
    /// not answer in time it succeeds: what is heard waits until a folder takes it.
    [[nodiscard]] static Result<std::unique_ptr<Recording>>
    begin(Channels channels, std::vector<std::filesystem::path> folders, RecordingContext context);
    /// Drops what was not saved; a save that is under way is finished without it.
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    /// For the card; the card may keep it for longer than this lives.
    [[nodiscard]] std::shared_ptr<RecordingSink> sink() const;
    /// Bytes of samples that the card has handed over so far. After a failure of the disk: that
    /// are kept. It never waits.
    [[nodiscard]] std::int64_t bytes() const;
    /// Puts the recording, which takes no more from then on, under the name `target` as
    /// `RecordingFile::save` does. What takes too long fails, with deviceInputOutput, and goes on;
    /// another call with this name waits on for it. May be called again, as there.
    [[nodiscard]] Status save(const std::filesystem::path& target);

  private:
    explicit Recording(std::shared_ptr<RecordingJob> job);

    std::shared_ptr<RecordingJob> job_; ///< shared with the threads
    bool slow_ = false;                 ///< the logic's thread has waited in vain
    AbandonableThread thread_;
};

} // namespace sonarith::sound
