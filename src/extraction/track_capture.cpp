// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_capture.h"

#include <cmath>

#include "extraction/checked_sum.h"
#include "extraction/track_line.h"
#include "platform/text/numbers.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

void TrackCapture::cmdStart_Click() {
    auto& [loop, media, process, form, capture] = context_;
    process.stopRequested = false;
    form.Check9.setValue(0).passOver();
    if (takeQueue() == Queue::empty) {
        boxes_.show("You must select tracks to record.", BoxIcon::information);
        return;
    }
    // The leading blank is meant; StartTrackRecording2 writes the text again without it.
    tellTrack(" Extracting Track " + std::to_string(process.currentTrack));
    loop.yield();
    form.Command2.setVisible(true);
    StartTrackRecording2(process.currentTrack);
    // All further tracks run inside this wait, in the monitor's ticks.
    loop.waitWhile([this] { return context_.form.tmrRecord.enabled(); });
}

TrackCapture::Queue TrackCapture::takeQueue() {
    auto& [loop, media, process, form, capture] = context_;
    const std::string text = textOf(form.TreeView1.selectedItem());
    if (isTrackText(text)) {
        // The queue is left as it is: the monitor goes on with lines that stand behind its current
        // one.
        trackNumberIn(text).storeIn(process.currentTrack);
    } else if (text == availableTracksText) {
        form.lstRecord.clear();
        for (int i = 0; i < form.lstTracks.listCount(); ++i) {
            form.lstRecord.addItem(form.lstTracks.list(i));
        }
        takeFirstLine();
        form.lstTracks.clear();
    } else if (text == selectedTracksText) {
        if (form.lstRecord.listCount() == 0) {
            return Queue::empty;
        }
        takeFirstLine();
    }
    return Queue::taken;
}

void TrackCapture::takeFirstLine() {
    context_.form.lstRecord.setListIndex(0).passOver();
    trackNumberIn(context_.form.lstRecord.list(0)).storeIn(context_.process.currentTrack);
    context_.capture.trackEndMs = 0;
}

void TrackCapture::tellTrack(const std::string& text) {
    context_.form.setCaption(text);
    context_.form.Label3.setCaption(text);
}

void TrackCapture::StartTrackRecording2(std::int32_t TrackNum) {
    auto& [loop, media, process, form, capture] = context_;
    process.stopRequested = false;
    tellTrack("Extracting Track " + std::to_string(TrackNum));
    nameFile(TrackNum);
    form.Label2.setCaption("To: " + process.currentFile);
    loop.yield();
    locateTrack(TrackNum);
    if (capture.trackEndMs < 1) {
        form.tmrRecord.setEnabled(false);
        return;
    }
    // The ticks begin before the devices are open.
    form.tmrRecord.setEnabled(true);
    startDevices(captureFormat(process.settings.audioFormat));
}

void TrackCapture::StartTrackRecording1(std::int32_t TrackNum) {
    auto& [loop, media, process, form, capture] = context_;
    // The argument counts only where the queue has no current line.
    if (const int line = form.lstRecord.listIndex(); line >= 0) {
        TrackNum = form.lstRecord.itemData(line);
    }
    process.stopRequested = false;
    tellTrack("Extracting Track " + std::to_string(TrackNum));
    nameFile(TrackNum);
    form.Label2.setCaption("To: " + process.currentFile);
    locateTrack(TrackNum);
    startDevices(captureFormatNamed(selectedFormatText_ ? selectedFormatText_() : std::string()));
}

void TrackCapture::nameFile(std::int32_t track) {
    auto& [loop, media, process, form, capture] = context_;
    random_.reseedFromClock();
    const float fraction = random_.fraction();
    const std::int32_t number = fileNumber(form.lblCDID.caption(), fraction);
    // Nothing tests whether the file is there already; the number is all that keeps names apart.
    process.currentFile = process.settings.decodePath + "\\" + std::to_string(number) + "-" +
                          std::to_string(track) + ".wav";
}

std::int32_t fileNumber(const std::string& identity, float fraction) {
    const Result<double> disc = toDouble(identity);
    if (!disc.ok()) {
        return 0;
    }
    const double number = std::floor(disc.value() * static_cast<double>(fraction) + 1);
    const bool fits = number >= INT32_MIN && number <= INT32_MAX;
    return fits ? static_cast<std::int32_t>(number) : 0;
}

void TrackCapture::locateTrack(std::int32_t track) {
    auto& [loop, media, process, form, capture] = context_;
    capture.trackStartMs = 0;
    capture.trackEndMs = 0;
    capture.trackStartMs =
        startOfTrackMs(capture.trackLengthMs, track, numberOf(form.lblNumTracks.caption()));
    const Result<std::int32_t> length = capture.trackLengthMs(track);
    if (length.ok()) {
        checkedSum(capture.trackStartMs, length.value()).storeIn(capture.trackEndMs);
    }
}

void TrackCapture::startDevices(const CaptureFormat& format) {
    const CaptureState& capture = context_.capture;
    bool recorderReady = openRecorder();
    // A failure zeroes trackEndMs, so it is asked afresh before each further step.
    if (capture.trackEndMs != 0) {
        recorderReady = setFormat(format);
    }
    if (capture.trackEndMs != 0) {
        playAndRecord();
    }
    // Also after a disc that failed: only a recorder that failed leaves the commands open.
    if (recorderReady) {
        context_.form.Disablem();
    }
}

bool TrackCapture::openRecorder() {
    if (context_.media.sendString("open new type waveaudio alias capture") != mciSuccess) {
        fail("Error opening waveaudio");
        return false;
    }
    return true;
}

bool TrackCapture::setFormat(const CaptureFormat& format) {
    if (context_.media.sendString(setFormatCommand(format)) != mciSuccess) {
        boxes_.show("Error setting capture recording paramaters", BoxIcon::critical);
        context_.media.sendString("close capture");
        monitor_.cmdCancel_Click();
        return false;
    }
    return true;
}

void TrackCapture::playAndRecord() {
    MediaControl& media = context_.media;
    if (media.sendString("open cdaudio alias cd") != mciSuccess) {
        fail("Error opening cd!");
        return;
    }
    media.sendString("set cd time format milliseconds");
    // Recording begins before playing, so each file starts with the short gap between the two.
    media.sendString("record capture overwrite");
    const std::int32_t start = context_.capture.trackStartMs;
    // No "to": the monitor ends the track.
    const std::string play =
        start != 0 ? "play cd from " + std::to_string(start) : std::string("play cd");
    if (media.sendString(play) != mciSuccess) {
        fail("Error playing cd!");
    }
}

void TrackCapture::fail(const std::string& message) {
    boxes_.show(message, BoxIcon::critical);
    monitor_.cmdCancel_Click();
}

} // namespace sonarith
