// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording.h"

#include <optional>
#include <utility>

#include "platform/linux/sound/recording_job.h"

namespace sonarith::sound {

namespace fs = std::filesystem;

Result<std::unique_ptr<Recording>>
Recording::begin(Channels channels, std::vector<fs::path> folders, RecordingContext context) {
    const auto job =
        std::make_shared<RecordingJob>(channels, std::move(folders), std::move(context));
    std::unique_ptr<Recording> recording(new Recording(job));
    const Status started = recording->thread_.start(
        [job] { writeRecording(*job, RecordingOrders::Turn{0}, 0); }, job->context.starter);
    if (!started.ok()) {
        failRecording(*job, started.error());
    }
    const std::optional<Status> begun = job->orders.begunWithin(job->context.timing.command);
    if (begun && !begun->ok()) {
        return begun->error();
    }
    if (!begun) {
        recording->slow_ = true;
        AbandonableThread watch;
        // If this thread cannot be started, the writer's wait for a hanging folder has no limit.
        watch.start([job] { replaceHangingWriters(job); }, job->context.starter).passOver();
    }
    return recording;
}

Recording::Recording(std::shared_ptr<RecordingJob> job) : job_(std::move(job)) {}

Recording::~Recording() {
    const bool isSaving = job_->orders.close();
    if (isSaving) {
        return;
    }
    job_->queue.giveUp(0);
    if (!slow_) {
        static_cast<void>(job_->orders.finishedWithin(job_->context.timing.command));
    }
}

std::shared_ptr<RecordingSink> Recording::sink() const {
    return {job_, &job_->queue};
}

std::int64_t Recording::bytes() const {
    return job_->queue.frames() * bytesPerFrame(job_->channels);
}

Status Recording::save(const fs::path& target) {
    job_->queue.end();
    if (std::optional<Status> saved =
            job_->orders.saveWithin(job_->context.timing.command, target)) {
        return *std::move(saved);
    }
    slow_ = true;
    const auto watchSave = [job = job_, target](std::chrono::milliseconds lateAfter) {
        job->orders.watchSave(lateAfter, [&] { job->context.notices->saveIsLate(target); });
    };
    AbandonableThread watch;
    const Status watched = watch.start(
        [watchSave, lateAfter = job_->context.timing.lateSave] { watchSave(lateAfter); },
        job_->context.starter);
    if (!watched.ok()) {
        // Without the thread, the late save must be reported now.
        watchSave(std::chrono::milliseconds{0});
    }
    return {ErrorNumber::deviceInputOutput,
            "\"" + target.string() + "\" is not saved yet: the disk does not respond"};
}

} // namespace sonarith::sound
