// SPDX-License-Identifier: GPL-3.0-or-later
// The work of a recording's threads, and the state that they share with the logic's thread. One
// thread creates the file, writes and saves; another one replaces it if a folder blocks it. The
// logic's waits are in recording_orders.h.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/linux/sound/recording.h"
#include "platform/linux/sound/recording_orders.h"
#include "platform/linux/sound/recording_queue.h"

namespace sonarith::sound {

/// Owns everything that the threads access, as they may outlive their creator.
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

/// The body of the writer, the thread that has `turn`: creates a file in the first usable folder,
/// beginning with number `candidate`, writes the frames of the queue, and saves as ordered until no
/// more orders follow.
void writeRecording(RecordingJob& job, RecordingOrders::Turn turn, std::size_t candidate);

/// Called if the first writer cannot be started: reports that to the user and to the threads that
/// wait for the file.
void failRecording(RecordingJob& job, const Error& error);

/// If the writer hangs in a folder for longer than RecordingTiming::folder, starts a new writer for
/// the next folder; if no thread can be started, the calling thread becomes the writer. The wait
/// for the last folder is not limited, because the sound would be lost otherwise.
void replaceHangingWriters(const std::shared_ptr<RecordingJob>& job);

} // namespace sonarith::sound
