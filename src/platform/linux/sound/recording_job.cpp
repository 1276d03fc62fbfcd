// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/recording_job.h"

#include <optional>
#include <span>
#include <utility>

#include "platform/linux/sound/recording_file.h"

namespace sonarith::sound {

namespace {

namespace fs = std::filesystem;

/// Writes frames until the recording ends or the disk fails.
void writeFrames(RecordingJob& job, const fs::path& folder, RecordingFile& file) {
    // Space for two batches, so that take() can empty the queue even if the card adds more frames
    // while this thread wakes up.
    std::vector<StereoFrame> frames(2 * RecordingQueue::batchFrames);
    while (const std::size_t count = job.queue.take(frames)) {
        if (!file.append(std::span(frames).first(count))) {
            job.queue.giveUp(file.frames());
            if (!job.orders.abandoned()) {
                job.context.notices->endedEarly(job.number, folder, file.failure(), file.frames());
            }
            return;
        }
    }
}

void saveOnce(RecordingJob& job, RecordingFile& file, const fs::path& target) {
    RecordingNotices& notices = *job.context.notices;
    const Status outcome = file.save(target);
    if (file.failure() != 0) {
        job.queue.giveUp(file.frames());
    }
    job.orders.saved(outcome, [&] {
        if (outcome.ok()) {
            notices.saved(job.number, target, file.failure(), file.frames());
        } else {
            notices.notSaved(target, outcome.error());
        }
    });
}

/// Writes the frames, then carries out orders to save until no more follow, then closes the file.
void writeAndSave(RecordingJob& job, const fs::path& folder, RecordingFile file) {
    writeFrames(job, folder, file);
    fs::path target;
    while (const std::optional<fs::path> wanted = job.orders.nextSave()) {
        target = *wanted;
        saveOnce(job, file, target);
    }
    job.context.notices->closed(job.number, folder, target);
}

void refuseSaves(RecordingJob& job, const Error& error) {
    job.queue.giveUp(0);
    fs::path target;
    while (const std::optional<fs::path> wanted = job.orders.nextSave()) {
        target = *wanted;
        job.orders.saved(error, [&] { job.context.notices->notSaved(target, error); });
    }
    job.context.notices->closed(job.number, {}, target);
}

} // namespace

RecordingJob::RecordingJob(Channels channelsToRecord, std::vector<fs::path> candidates,
                           RecordingContext shared)
    : channels(channelsToRecord),
      folders(std::move(candidates)),
      context(std::move(shared)),
      number(context.notices->newRecording()),
      orders(folders.size(), context.saves),
      queue([this](RecordingQueue::Flow flow) {
          const fs::path& folder = folders[orders.candidate()];
          if (flow == RecordingQueue::Flow::stalled) {
              context.notices->stalled(folder);
          } else {
              context.notices->responds(folder);
          }
      }) {}

void writeRecording(RecordingJob& job, RecordingOrders::Turn turn, std::size_t candidate) {
    Error error{ErrorNumber::pathNotFound, "there is no folder for recordings"};
    for (; candidate < job.folders.size(); ++candidate) {
        if (!job.orders.tries(turn, candidate)) {
            return;
        }
        const fs::path& folder = job.folders[candidate];
        Result<RecordingFile> made = RecordingFile::create(job.channels, folder);
        if (made.ok()) {
            if (job.orders.begins(turn, [&] { job.context.notices->begun(folder); })) {
                writeAndSave(job, folder, std::move(made.value()));
                job.orders.finished();
            }
            return;
        }
        error = made.error();
    }
    if (job.orders.fails(turn, error, [&] { job.context.notices->cannotBegin(error); })) {
        refuseSaves(job, error);
        job.orders.finished();
    }
}

void failRecording(RecordingJob& job, const Error& error) {
    static_cast<void>(job.orders.fails(RecordingOrders::Turn{0}, error,
                                       [&] { job.context.notices->cannotBegin(error); }));
    job.context.notices->closed(job.number, {}, {});
    job.orders.finished();
}

void replaceHangingWriters(const std::shared_ptr<RecordingJob>& job) {
    while (const std::optional<RecordingOrders::Replacement> replacement =
               job->orders.replaceWithin(job->context.timing.folder)) {
        job->context.notices->folderSkipped(job->folders[replacement->hanging]);
        const auto writeOn = [job, turn = replacement->turn, hanging = replacement->hanging] {
            writeRecording(*job, turn, hanging + 1);
        };
        AbandonableThread next;
        if (!next.start(writeOn, job->context.starter).ok()) {
            writeOn();
        }
    }
}

} // namespace sonarith::sound
