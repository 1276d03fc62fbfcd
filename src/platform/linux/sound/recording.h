// SPDX-License-Identifier: GPL-3.0-or-later
// A recording in progress: the sound of the card's recorder is written to a file on the disk
// (recording_file.h), and neither the card nor the logic waits for that disk. The caller chooses
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
#include "platform/thread_start.h"

namespace sonarith::sound {

/// The times of a recording; none was measured.
struct RecordingTiming {
    /// The longest time that the logic's thread waits for the disk, in `begin`, in `save` and in
    /// the destructor; the destructor does not wait if an earlier wait timed out. So a stop, a save
    /// and a destruction together take less than the 100 ms that the user does not notice.
    std::chrono::milliseconds command{80};
    /// A folder in which no file can be created within this time is skipped if there is another
    /// one. For four folders that is less than the queue holds.
    std::chrono::milliseconds folder{2000};
    /// A save that takes longer is reported to the user.
    std::chrono::milliseconds lateSave{3000};
};

/// Shared by all recordings of a card.
struct RecordingContext {
    std::shared_ptr<RecordingNotices> notices;
    std::shared_ptr<PendingSaves> saves; ///< may be a null pointer
    RecordingTiming timing = {};
    ThreadStarter starter = startThread;
};

struct RecordingJob;

/// Created, used and destroyed on the logic's thread; a separate thread writes.
///
/// The amount of sound that waits for a slow disk is bounded, and the card stops at that bound: see
/// RecordingQueue. Sound that was written before the disk became full or failed is kept and can be
/// saved: see RecordingFile.
///
/// A disk that hangs is left behind with its thread. If it responds again while the program runs, a
/// requested save is then completed. The file of an unsaved recording has no name and cannot get
/// one after the process has ended: if the disk hangs until then, the recording is lost with the
/// process, including the part that had reached the disk.
class Recording {
  public:
    /// Creates the file in the first of `folders` that allows it; best is the folder in which it
    /// will be saved, as no copy is needed then. Fails, with the last folder's reason, if none
    /// does. If a folder does not respond in time it succeeds: the sound is queued until a file can
    /// be created. Without a thread to write on it fails, with a notice to the user.
    [[nodiscard]] static Result<std::unique_ptr<Recording>>
    begin(Channels channels, std::vector<std::filesystem::path> folders, RecordingContext context);
    /// Drops unsaved sound; a running save continues without it.
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    /// For the card, which may keep it longer than the lifetime of this object.
    [[nodiscard]] std::shared_ptr<RecordingSink> sink() const;
    /// Bytes of samples that the card has delivered so far; after a disk failure, those that are
    /// kept. Never blocks.
    [[nodiscard]] std::int64_t bytes() const;
    /// Saves the recording as `target`, as `RecordingFile::save` does; no more sound is accepted
    /// from then on. After a timeout it fails with deviceInputOutput and continues in the
    /// background; another call with this name resumes waiting for it. May be called again, as
    /// there.
    [[nodiscard]] Status save(const std::filesystem::path& target);

  private:
    explicit Recording(std::shared_ptr<RecordingJob> job);

    std::shared_ptr<RecordingJob> job_; ///< shared with the threads
    bool slow_ = false;                 ///< a wait of the logic's thread has timed out
    AbandonableThread thread_;
};

} // namespace sonarith::sound
