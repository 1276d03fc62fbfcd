// SPDX-License-Identifier: GPL-3.0-or-later
// The work of a recording's threads, and the state that they share with the logic's: one creates
// the file, writes and saves; another watches that no folder blocks it forever. No caller waits
// here.
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

/// The body of the thread whose turn it is: creates a file in the first usable folder from number
/// `candidate` on, writes the frames of the queue, and saves as ordered, until no more orders
/// follow.
void writeRecording(RecordingJob& job, RecordingOrders::Turn turn, std::size_t candidate);

/// In place of the first writer, which could not be started: reports that to the user and to the
/// threads that wait for the file.
void failRecording(RecordingJob& job, const Error& error);

/// Starts another thread for the next folder if the writer hangs in one longer than
/// RecordingTiming::folder; without one, this thread becomes the writer. The last folder is waited
/// for without a limit, because the sound would be lost otherwise.
void replaceHangingWriters(const std::shared_ptr<RecordingJob>& job);

} // namespace sonarith::sound
