// SPDX-License-Identifier: GPL-3.0-or-later
// The work of a recording's threads, and the state that these threads share with the logic thread.
// One thread, the writer, creates, writes and saves the file. If a folder blocks the writer,
// another thread becomes the writer. The waits of the logic thread are in recording_orders.h.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/linux/sound/recording.h"
#include "platform/linux/sound/recording_orders.h"
#include "platform/linux/sound/recording_queue.h"

namespace sonarith::sound {

/// Owns everything that the threads access, because they may outlive their creator.
struct RecordingJob {
    RecordingJob(Channels channelsToRecord, std::vector<std::filesystem::path> candidates,
                 RecordingContext shared);

    const Channels channels;
    const std::vector<std::filesystem::path> folders;
    const RecordingContext context;
    const RecordingNumber number;
    RecordingOrders orders;
    RecordingQueue queue;
};

/// Run by the writer, the thread that has `turn` (see RecordingOrders). Creates a file in the first
/// usable folder, beginning with the folder of index `candidate`; writes the frames of the queue;
/// then executes orders to save until no more follow.
void writeRecording(RecordingJob& job, RecordingOrders::Turn turn, std::size_t candidate);

/// Called on the logic thread if the first writer cannot be started. Notifies the user, and passes
/// the failure to `job.orders`, so that no thread waits for a writer.
void failRecording(RecordingJob& job, const Error& error);

/// If the writer hangs in a folder for longer than RecordingTiming::folder, starts a new writer for
/// the next folder; if no thread can be started, the calling thread becomes the writer. The wait
/// for the last folder is not limited, because the sound would be lost otherwise.
void replaceHangingWriters(const std::shared_ptr<RecordingJob>& job);

} // namespace sonarith::sound
