// SPDX-License-Identifier: GPL-3.0-or-later
// What becomes of recordings, as sentences for the user: what is kept, where, and why not all. One
// for all recordings of a card; each cause is reported once while it holds. It decides nothing.
#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>

#include "platform/notices.h"
#include "platform/result.h"

namespace sonarith::sound {

/// Tells the notices of one recording from those of another.
using RecordingNumber = int;

/// Any thread may call any member.
class RecordingNotices {
  public:
    explicit RecordingNotices(Notices& notices) : notices_(&notices) {}
    /// Nothing is reported any more; the Notices are not used after this returns. Threads that hang
    /// may keep this object for longer.
    void mute();
    [[nodiscard]] RecordingNumber newRecording();

    /// No folder takes a recording. It holds until one does.
    void cannotBegin(const Error& error);
    void begun(const std::filesystem::path& folder);
    /// The folder has not answered, and the recording is made in the next one.
    void passedOver(const std::filesystem::path& folder);
    /// What is recorded waits for the disk, until it answers.
    void stalled(const std::filesystem::path& folder);
    void answers(const std::filesystem::path& folder);

    /// A failure has ended the recording; `keptFrames` can be saved. `error` is an errno value.
    void endedEarly(RecordingNumber number, const std::filesystem::path& folder, int error,
                    std::int64_t keptFrames);
    /// The file has its name. `error` is why it ends early, or 0.
    void saved(RecordingNumber number, const std::filesystem::path& target, int error,
               std::int64_t keptFrames);
    void notSaved(const std::filesystem::path& target, const Error& error);
    /// The save goes on for long, until `saved` or `notSaved`.
    void saveIsLate(const std::filesystem::path& target);
    /// Nobody asks for the recording any more, saved or not. `target`, if not empty, is what it was
    /// last to be saved as.
    void closed(RecordingNumber number, const std::filesystem::path& folder,
                const std::filesystem::path& target);

  private:
    // Under mutex_.
    void report(const std::string& cause, const std::string& text);
    bool settle(const std::string& cause, const std::string& text = {});

    std::mutex mutex_;
    Notices* notices_;           ///< a null pointer once it is mute
    std::set<std::string> held_; ///< causes that were reported and not settled
    RecordingNumber newest_ = 0;
};

/// "0:42", "74:00": whole minutes and seconds.
[[nodiscard]] std::string lengthText(std::int64_t frames);

} // namespace sonarith::sound
