// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/card_recorder.h"

#include <utility>

namespace sonarith::mci {

RecordingInput::RecordingInput(Notices& notices, std::shared_ptr<sound::PendingSaves> saves,
                               const sound::RecordingTiming& timing)
    : context{std::make_shared<sound::RecordingNotices>(notices), std::move(saves), timing} {}

RecordingInput::~RecordingInput() {
    context.notices->mute();
}

CardRecorder::CardRecorder(sound::SoundCard& card, Clock now, RecordingFolders folders,
                           std::shared_ptr<RecordingInput> input)
    : card_(card), now_(std::move(now)), folders_(std::move(folders)), input_(std::move(input)) {}

CardRecorder::~CardRecorder() {
    stop();
}

Status CardRecorder::start(int channels) {
    if (recording()) {
        return {};
    }
    if (input_->user) {
        return {ErrorNumber::deviceUnavailable, "another recording is running"};
    }
    if (finished_) {
        return {ErrorNumber::invalidProcedureCall, "no sound can be added after a save"};
    }
    if (!recording_) {
        auto begun =
            sound::Recording::begin(channels == 1 ? sound::Channels::mono : sound::Channels::stereo,
                                    folders_(), input_->context);
        if (!begun.ok()) {
            return begun.error();
        }
        recording_ = std::move(begun.value());
    }
    // Only frames that become due after now are recorded: startRecording() first produces the
    // earlier frames, without passing them to the recording.
    card_.startRecording(recording_->sink(), now_());
    input_->user = this;
    return {};
}

void CardRecorder::stop() {
    if (recording()) {
        card_.stopRecording(now_());
        input_->user = nullptr;
    }
}

std::int64_t CardRecorder::bytes() {
    if (recording()) {
        card_.advance(now_());
    }
    return recording_ ? recording_->bytes() : 0;
}

Status CardRecorder::save(const std::filesystem::path& path) {
    if (!recording_) {
        return {ErrorNumber::invalidProcedureCall, "nothing has been recorded"};
    }
    stop();
    finished_ = true;
    return recording_->save(path);
}

} // namespace sonarith::mci
