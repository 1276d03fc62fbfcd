// SPDX-License-Identifier: GPL-3.0-or-later
// Notifies the user about recordings: what is kept, where, and why a recording is not complete. One
// object serves all recordings of a sound card; each cause is reported once while it persists. The
// recordings are not controlled here.
#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>

#include "platform/notices.h"
#include "platform/result.h"

namespace sonarith::sound {

/// Distinguishes the notices of different recordings.
using RecordingNumber = int;

/// Thread-safe.
class RecordingNotices {
  public:
    explicit RecordingNotices(Notices& notices) : notices_(&notices) {}
    /// Stops all reports: after this returns, the Notices object is not used any more and may be
    /// destroyed. Threads that hang may still own this RecordingNotices.
    void mute();
    [[nodiscard]] RecordingNumber newRecording();

    /// No file can be created in any folder, or no thread can be started. The cause persists until
    /// a file is created.
    void cannotBegin(const Error& error);
    void begun(const std::filesystem::path& folder);
    /// The folder has not responded, and the next folder is tried.
    void folderSkipped(const std::filesystem::path& folder);
    /// The disk does not respond; the recorded sound waits for it.
    void stalled(const std::filesystem::path& folder);
    void responds(const std::filesystem::path& folder);

    /// A failure has ended the recording; `keptFrames` can be saved. `error` is an errno value.
    void endedEarly(RecordingNumber number, const std::filesystem::path& folder, int error,
                    std::int64_t keptFrames);
    /// The file was saved as `target`. `error` is the errno value of the failure that ended the
    /// recording early, or 0.
    void saved(RecordingNumber number, const std::filesystem::path& target, int error,
               std::int64_t keptFrames);
    void notSaved(const std::filesystem::path& target, const Error& error);
    /// The save takes long; the cause persists until `saved` or `notSaved`.
    void saveIsLate(const std::filesystem::path& target);
    /// Called when a recording has been closed, saved or not. Settles the notices about its early
    /// end, about `folder` not responding, and about a late or failed save to `target`, the path of
    /// the last requested save. `folder` or `target` is empty if the recording has none.
    void closed(RecordingNumber number, const std::filesystem::path& folder,
                const std::filesystem::path& target);

  private:
    // Precondition: mutex_ is locked.
    void report(const std::string& cause, const std::string& text);
    bool settle(const std::string& cause, const std::string& text = {});

    std::mutex mutex_;
    Notices* notices_;           ///< a null pointer after mute()
    std::set<std::string> held_; ///< causes that were reported and persist
    RecordingNumber newest_ = 0;
};

/// The length in whole minutes and seconds, for example "0:42" or "74:00".
[[nodiscard]] std::string lengthText(std::int64_t frames);

} // namespace sonarith::sound
