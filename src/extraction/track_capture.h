// SPDX-License-Identifier: GPL-3.0-or-later
// Starts the capture of tracks: takes the queue, names the file, works out where the track lies,
// and sets recorder and disc going. Watching and ending a capture is the monitor's work.
#pragma once

#include <cstdint>
#include <string>

#include "extraction/capture_commands.h"
#include "extraction/capture_monitor.h"
#include "extraction/capture_state.h"
#include "extraction/running.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"

namespace sonarith {

class TrackCapture {
  public:
    /// Becomes the handler of cmdStart. All outlive this.
    TrackCapture(const Platform& platform, ProcessState& process, Windows& windows,
                 CaptureState& capture, CaptureMonitor& monitor);
    TrackCapture(const TrackCapture&) = delete;
    TrackCapture& operator=(const TrackCapture&) = delete;

    /// Captures what the tree's selected node stands for, a track or one of the two groups of
    /// tracks. Returns when the whole queue has ended, yielding all the while.
    void cmdStart_Click();
    /// Whether a queue is worked through: the drive is opened anew for each of its tracks.
    [[nodiscard]] bool running() const { return running_ > 0; }

    /// Starts one track and returns with its capture running, or ended by a failure that a message
    /// has told of. Yields once.
    void StartTrackRecording2(std::int32_t TrackNum);

    /// The sister: takes its track from ItemData of the current line of lstRecord and its format
    /// from the preferences' list, and leaves the monitor's timer alone. Nothing calls it.
    void StartTrackRecording1(std::int32_t TrackNum);

  private:
    /// Whether there is anything to start.
    enum class Queue { taken, empty };
    Queue takeQueue();
    void takeFirstLine();
    void tellTrack(const std::string& text);
    void nameFile(std::int32_t track);
    void locateTrack(std::int32_t track);
    void startDevices(const CaptureFormat& format);
    [[nodiscard]] bool openRecorder();
    [[nodiscard]] bool setFormat(const CaptureFormat& format);
    void playAndRecord();
    void fail(const std::string& message);

    const Platform& platform_;
    ProcessState& process_;
    Windows& windows_;
    Form1& form_;
    CaptureState& capture_;
    CaptureMonitor& monitor_;
    int running_ = 0;
};

/// The number that begins a capture's file name: the integer part of the disc's identity times
/// `fraction` plus 1. 0 where the identity is no number or the result does not fit 32 bits.
[[nodiscard]] std::int32_t fileNumber(const std::string& identity, float fraction);

} // namespace sonarith
