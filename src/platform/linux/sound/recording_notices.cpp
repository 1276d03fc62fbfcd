// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_notices.h"

#include "platform/linux/files/file_error.h"
#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

namespace {

namespace fs = std::filesystem;

const std::string cannotBeginCause = "no folder for recordings";

std::string quoted(const fs::path& path) {
    return "\"" + path.string() + "\"";
}

std::string noResponseCause(const fs::path& folder) {
    return "no response from " + folder.string();
}

std::string endCause(RecordingNumber number) {
    return "end of recording " + std::to_string(number);
}

std::string saveCause(const fs::path& target) {
    return "save of " + target.string();
}

std::string lateSaveCause(const fs::path& target) {
    return "late save of " + target.string();
}

/// For example "1234-3.wav" in "/music", with these quotes.
std::string namedFile(const fs::path& target) {
    return quoted(target.filename()) + " in " + quoted(target.parent_path());
}

} // namespace

std::string lengthText(std::int64_t frames) {
    const std::int64_t seconds = frames / frameRate;
    const std::string rest = std::to_string(seconds % 60);
    return std::to_string(seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

void RecordingNotices::mute() {
    const std::lock_guard lock(mutex_);
    notices_ = nullptr;
}

RecordingNumber RecordingNotices::newRecording() {
    const std::lock_guard lock(mutex_);
    return ++newest_;
}

void RecordingNotices::report(const std::string& cause, const std::string& text) {
    if (notices_ != nullptr && held_.insert(cause).second) {
        notices_->report({text, cause});
    }
}

/// Settles a cause; returns whether it was reported and not yet settled.
bool RecordingNotices::settle(const std::string& cause, const std::string& text) {
    const bool held = held_.erase(cause) > 0;
    if (notices_ != nullptr && held) {
        notices_->settled(cause, text);
    }
    return held;
}

void RecordingNotices::cannotBegin(const Error& error) {
    const std::lock_guard lock(mutex_);
    report(cannotBeginCause, "Nothing is recorded: " + error.text);
}

void RecordingNotices::begun(const fs::path& folder) {
    const std::lock_guard lock(mutex_);
    settle(cannotBeginCause);
    settle(noResponseCause(folder), quoted(folder) + " responds again");
}

void RecordingNotices::folderSkipped(const fs::path& folder) {
    const std::lock_guard lock(mutex_);
    report(noResponseCause(folder),
           quoted(folder) +
               " does not respond; the recording is kept in another folder until it is saved");
}

void RecordingNotices::stalled(const fs::path& folder) {
    const std::lock_guard lock(mutex_);
    report(noResponseCause(folder),
           quoted(folder) + " does not respond; the recording waits for it and loses no sample");
}

void RecordingNotices::responds(const fs::path& folder) {
    const std::lock_guard lock(mutex_);
    settle(noResponseCause(folder), quoted(folder) + " responds again");
}

void RecordingNotices::endedEarly(RecordingNumber number, const fs::path& folder, int error,
                                  std::int64_t keptFrames) {
    const std::lock_guard lock(mutex_);
    const std::string kept = keptFrames == 0
                                 ? "nothing is kept"
                                 : "its first " + lengthText(keptFrames) + " can still be saved";
    report(endCause(number), "The recording in " + quoted(folder) +
                                 " has ended: " + files::reasonOf(error) + "; " + kept);
}

void RecordingNotices::saved(RecordingNumber number, const fs::path& target, int error,
                             std::int64_t keptFrames) {
    const std::lock_guard lock(mutex_);
    settle(saveCause(target));
    if (error == 0) {
        settle(lateSaveCause(target), namedFile(target) + " has now been saved");
        return;
    }
    settle(lateSaveCause(target));
    const std::string text = namedFile(target) + " was saved partly: " + files::reasonOf(error) +
                             "; it contains the first " + lengthText(keptFrames);
    if (!settle(endCause(number), text) && notices_ != nullptr) {
        notices_->report({text});
    }
}

void RecordingNotices::notSaved(const fs::path& target, const Error& error) {
    const std::lock_guard lock(mutex_);
    settle(lateSaveCause(target));
    report(saveCause(target), namedFile(target) + " was not saved: " + error.text);
}

void RecordingNotices::saveIsLate(const fs::path& target) {
    const std::lock_guard lock(mutex_);
    report(lateSaveCause(target),
           namedFile(target) + " is not saved yet: the disk does not respond. It will be saved if "
                               "the disk responds before the program ends");
}

void RecordingNotices::closed(RecordingNumber number, const fs::path& folder,
                              const fs::path& target) {
    const std::lock_guard lock(mutex_);
    settle(endCause(number));
    settle(noResponseCause(folder));
    settle(saveCause(target));
    settle(lateSaveCause(target));
}

} // namespace sonarith::sound
