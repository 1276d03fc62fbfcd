// SPDX-License-Identifier: GPL-3.0-or-later
// Starts the capture of tracks: reads the queue (lstRecord), names the file, calculates the
// position of the track, and starts recorder and disc. CaptureMonitor monitors and ends a capture.
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
    /// Sets the handler of cmdStart. All parameters must outlive this object.
    TrackCapture(const Platform& platform, ProcessState& process, Windows& windows,
                 CaptureState& capture, CaptureMonitor& monitor);
    TrackCapture(const TrackCapture&) = delete;
    TrackCapture& operator=(const TrackCapture&) = delete;

    /// Captures the track that is selected in the tree or, if the group "Available Tracks" or
    /// "Selected Tracks" is selected, all tracks of that group. If another node or none is
    /// selected, captures the track ProcessState::currentTrack. A single track is not added to the
    /// queue (lstRecord), which keeps its lines and its current line. If the queue has several
    /// lines, the lines after its current line (without a current line: all lines) are captured
    /// after the single track. Yields, and returns when all these captures have ended.
    void cmdStart_Click();
    /// Whether an extraction is running, of a queue or of a single track. Also true between two
    /// tracks of a queue, while the recorder and the disc are closed.
    [[nodiscard]] bool running() const { return running_ > 0; }

    /// Starts the capture of one track. Shows a message if a device fails. Sends no command if the
    /// track does not exist, or if its end is below 1 ms or above 2^31 - 1 ms. Yields once, and
    /// while a message is shown.
    void StartTrackRecording2(std::int32_t TrackNum);

    /// A variant of StartTrackRecording2. The track is the ItemData of the current line of
    /// lstRecord, or `TrackNum` if there is no current line. The format is the one that is chosen
    /// in the preferences' list of formats. Does not start the monitor's timer. Nothing in the
    /// program calls this function.
    void StartTrackRecording1(std::int32_t TrackNum);

  private:
    /// `empty`: the group "Selected Tracks" is selected and contains no track. `taken`: in all
    /// other cases.
    enum class Queue { taken, empty };
    Queue takeQueue();
    void takeFirstLine();
    void showTrack(const std::string& text);
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

/// The number at the start of a capture's file name: `identity` (of the disc) x `fraction` (random,
/// at least 0 and less than 1) + 1, rounded down. 0 if the identity is not a number or the result
/// does not fit 32 bits.
[[nodiscard]] std::int32_t fileNumber(const std::string& identity, float fraction);

} // namespace sonarith
