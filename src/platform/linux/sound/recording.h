// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the sound of the software sound card's recorder to a file (recording_file.h). The card
// never waits for the disk, and the logic thread waits only for a limited time. The caller
// chooses where the recording is saved.
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

/// The time limits of a recording. The values are estimates and not based on measurements.
struct RecordingTiming {
    /// The longest wait of the logic thread for the disk in each of `begin`, `save` and the
    /// destructor. The destructor does not wait if an earlier wait timed out: if the disk hangs, a
    /// save and the destruction after it together take less than 100 ms, which the user does not
    /// notice.
    std::chrono::milliseconds command{80};
    /// If a folder does not respond within this time, the next folder is tried. The wait for the
    /// last folder has no limit. The program passes four folders, so the last one is tried after
    /// about 6 s at the latest; the queue has space for 10 s of sound.
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

/// Created, used and destroyed on the logic thread; a separate thread writes the file.
///
/// The amount of sound that waits for a slow disk is limited, and the card stops at that limit: see
/// RecordingQueue. Sound that was written before the disk became full or failed is kept and can be
/// saved: see RecordingFile.
///
/// If the disk hangs, the thread that waits for it is detached. If the disk responds again while
/// the program runs, the thread completes a requested save. The file of an unsaved recording has no
/// name, and the system deletes it when the process ends: if the disk hangs until then, the whole
/// recording is lost, including the part that had reached the disk.
class Recording {
  public:
    /// Creates the file in the first of `folders` that allows it. The first folder should be the
    /// one in which the file will be saved, since no copy is needed then. Fails, and notifies the
    /// user, if no folder allows the file or no thread can be started. If the disk does not respond
    /// within RecordingTiming::command, begin() succeeds, and the sound is queued until a file can
    /// be created.
    [[nodiscard]] static Result<std::unique_ptr<Recording>>
    begin(Channels channels, std::vector<std::filesystem::path> folders, RecordingContext context);
    /// Drops unsaved sound; a running save continues without this object.
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    /// The sink for the card. It may outlive this object.
    [[nodiscard]] std::shared_ptr<RecordingSink> sink() const;
    /// The number of sample bytes that the card has delivered so far; after a disk failure, the
    /// number that is kept. Never blocks.
    [[nodiscard]] std::int64_t bytes() const;
    /// Saves the recording as `target`. No more sound is accepted from then on. After a timeout the
    /// call fails with deviceInputOutput, but the save continues in the background. While the save
    /// runs, a further call with the same name waits for it, and a call with another name fails.
    /// For later calls see RecordingFile::save.
    [[nodiscard]] Status save(const std::filesystem::path& target);

  private:
    explicit Recording(std::shared_ptr<RecordingJob> job);

    std::shared_ptr<RecordingJob> job_; ///< shared with the threads
    bool slow_ = false;                 ///< a wait of the logic thread has timed out
    AbandonableThread thread_;
};

} // namespace sonarith::sound
