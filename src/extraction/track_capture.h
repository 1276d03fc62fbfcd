// SPDX-License-Identifier: GPL-3.0-or-later
// Starts the capture of tracks: takes the queue, names the file, works out where the track lies,
// and sets recorder and disc going. Watching and ending a capture is the monitor's work.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "extraction/capture_commands.h"
#include "extraction/capture_monitor.h"
#include "extraction/extraction_context.h"
#include "platform/message_box.h"
#include "platform/random.h"

namespace sonarith {

class TrackCapture {
  public:
    /// `selectedFormatText` gives the text of the selected entry of the preferences' list
    /// cbxFormat; only StartTrackRecording1 asks for it.
    TrackCapture(ExtractionContext context, MessageBoxes& boxes, Random& random,
                 CaptureMonitor& monitor, std::function<std::string()> selectedFormatText)
        : context_(context),
          boxes_(boxes),
          random_(random),
          monitor_(monitor),
          selectedFormatText_(std::move(selectedFormatText)) {}

    /// Captures what the tree's selected node stands for, a track or one of the two groups of
    /// tracks. Returns when the whole queue has ended, yielding all the while.
    void cmdStart_Click();

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

    ExtractionContext context_;
    MessageBoxes& boxes_;
    Random& random_;
    CaptureMonitor& monitor_;
    std::function<std::string()> selectedFormatText_;
};

/// The number that begins a capture's file name: the integer part of the disc's identity times
/// `fraction` plus 1. 0 where the identity is no number or the result does not fit 32 bits.
[[nodiscard]] std::int32_t fileNumber(const std::string& identity, float fraction);

} // namespace sonarith
