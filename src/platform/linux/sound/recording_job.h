// SPDX-License-Identifier: GPL-3.0-or-later
// The work of a recording's threads, and what they share with the logic's: one makes the file,
// writes and saves; another watches that no folder keeps it for ever. Nothing here is waited for.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/linux/sound/recording.h"
#include "platform/linux/sound/recording_orders.h"
#include "platform/linux/sound/recording_queue.h"

namespace sonarith::sound {

/// Owns all that the threads touch, as they may outlive whoever started them.
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

/// The body of the thread whose turn it is: makes a file in the first folder from number
/// `candidate` on that takes one, writes what the queue gets, and saves as is ordered, until
/// nothing more is.
void writeRecording(RecordingJob& job, RecordingOrders::Turn turn, std::size_t candidate);

/// Goes on with the next folder, on a thread of its own, where the writer hangs in one for longer
/// than RecordingTiming::folder. The last one is waited for: what was heard is lost if it is not.
void relieveHangingWriters(const std::shared_ptr<RecordingJob>& job);

} // namespace sonarith::sound
