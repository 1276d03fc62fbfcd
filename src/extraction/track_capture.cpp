// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/track_capture.h"

#include <cmath>

#include "extraction/checked_sum.h"
#include "extraction/track_line.h"
#include "platform/text/numbers.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

TrackCapture::TrackCapture(const Platform& platform, ProcessState& process, Windows& windows,
                           CaptureState& capture, CaptureMonitor& monitor)
    : platform_(platform),
      process_(process),
      windows_(windows),
      form_(windows.Form1),
      capture_(capture),
      monitor_(monitor) {
    form_.cmdStart.onClick = [this] {
        cmdStart_Click();
    };
}

void TrackCapture::cmdStart_Click() {
    const Running here(running_);
    process_.stopRequested = false;
    form_.Check9.setValue(0).passOver();
    if (takeQueue() == Queue::empty) {
        platform_.boxes.show("You must select tracks to record.", BoxIcon::information);
        return;
    }
    // The leading blank is intended; StartTrackRecording2 writes the text again without it.
    showTrack(" Extracting Track " + std::to_string(process_.currentTrack));
    platform_.loop.yield();
    form_.Command2.setVisible(true);
    StartTrackRecording2(process_.currentTrack);
    // All further tracks are captured inside this wait: the ticks of the monitor start them.
    platform_.loop.waitWhile([this] { return form_.tmrRecord.enabled(); });
}

TrackCapture::Queue TrackCapture::takeQueue() {
    const std::string text = textOf(form_.TreeView1.selectedItem());
    if (isTrackText(text)) {
        // This track is not added to the queue (lstRecord). After the track, the monitor continues
        // with the line after the queue's current line: see cmdStart_Click() in the header.
        trackNumberIn(text).storeIn(process_.currentTrack);
    } else if (text == availableTracksText) {
        form_.lstRecord.clear();
        for (int i = 0; i < form_.lstTracks.listCount(); ++i) {
            form_.lstRecord.addItem(form_.lstTracks.list(i));
        }
        takeFirstLine();
        form_.lstTracks.clear();
    } else if (text == selectedTracksText) {
        if (form_.lstRecord.listCount() == 0) {
            return Queue::empty;
        }
        takeFirstLine();
    }
    return Queue::taken;
}

void TrackCapture::takeFirstLine() {
    form_.lstRecord.setListIndex(0).passOver();
    trackNumberIn(form_.lstRecord.list(0)).storeIn(process_.currentTrack);
    capture_.trackEndMs = 0;
}

void TrackCapture::showTrack(const std::string& text) {
    form_.setCaption(text);
    form_.Label3.setCaption(text);
}

void TrackCapture::StartTrackRecording2(std::int32_t TrackNum) {
    process_.stopRequested = false;
    showTrack("Extracting Track " + std::to_string(TrackNum));
    nameFile(TrackNum);
    form_.Label2.setCaption("To: " + process_.currentFile);
    platform_.loop.yield();
    locateTrack(TrackNum);
    if (capture_.trackEndMs < 1) {
        form_.tmrRecord.setEnabled(false);
        return;
    }
    // Deliberate: the timer is enabled before the devices are open.
    form_.tmrRecord.setEnabled(true);
    startDevices(captureFormat(process_.settings.audioFormat));
}

void TrackCapture::StartTrackRecording1(std::int32_t TrackNum) {
    // The argument is used only if the queue has no current line.
    if (const int line = form_.lstRecord.listIndex(); line >= 0) {
        TrackNum = form_.lstRecord.itemData(line);
    }
    process_.stopRequested = false;
    showTrack("Extracting Track " + std::to_string(TrackNum));
    nameFile(TrackNum);
    form_.Label2.setCaption("To: " + process_.currentFile);
    locateTrack(TrackNum);
    startDevices(captureFormatNamed(touched(windows_.FrmPrefs).cbxFormat.text()));
}

void TrackCapture::nameFile(std::int32_t track) {
    platform_.random.reseedFromClock();
    const float fraction = platform_.random.fraction();
    const std::int32_t number = fileNumber(form_.lblCDID.caption(), fraction);
    // Deliberate: does not check whether the file exists. Only the random number distinguishes the
    // names of two captures of the same track.
    process_.currentFile = process_.settings.decodePath + "\\" + std::to_string(number) + "-" +
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
    capture_.trackStartMs = 0;
    capture_.trackEndMs = 0;
    capture_.trackStartMs =
        startOfTrackMs(capture_.trackLengthMs, track, numberOf(form_.lblNumTracks.caption()));
    const Result<std::int32_t> length = capture_.trackLengthMs(track);
    if (length.ok()) {
        checkedSum(capture_.trackStartMs, length.value()).storeIn(capture_.trackEndMs);
    }
}

void TrackCapture::startDevices(const CaptureFormat& format) {
    bool recorderReady = openRecorder();
    // A step that fails sets trackEndMs to 0, so trackEndMs is tested before each further step.
    if (capture_.trackEndMs != 0) {
        recorderReady = setFormat(format);
    }
    if (capture_.trackEndMs != 0) {
        playAndRecord();
    }
    // The window's commands (buttons and menus) are disabled even if the disc failed. Only a
    // recorder failure leaves them unchanged.
    if (recorderReady) {
        form_.Disablem();
    }
}

bool TrackCapture::openRecorder() {
    if (platform_.media.sendString("open new type waveaudio alias capture") != mciSuccess) {
        fail("Error opening waveaudio");
        return false;
    }
    return true;
}

bool TrackCapture::setFormat(const CaptureFormat& format) {
    if (platform_.media.sendString(setFormatCommand(format)) != mciSuccess) {
        platform_.boxes.show("Error setting capture recording paramaters", BoxIcon::critical);
        platform_.media.sendString("close capture");
        monitor_.cmdCancel_Click();
        return false;
    }
    return true;
}

void TrackCapture::playAndRecord() {
    if (platform_.media.sendString("open cdaudio alias cd") != mciSuccess) {
        fail("Error opening cd!");
        return;
    }
    platform_.media.sendString("set cd time format milliseconds");
    // Recording starts before playing, so each file begins with what the card records in the short
    // time between the two commands.
    platform_.media.sendString("record capture overwrite");
    const std::int32_t start = capture_.trackStartMs;
    // The command has no end position, because the monitor ends the track.
    const std::string play =
        start != 0 ? "play cd from " + std::to_string(start) : std::string("play cd");
    if (platform_.media.sendString(play) != mciSuccess) {
        fail("Error playing cd!");
    }
}

void TrackCapture::fail(const std::string& message) {
    platform_.boxes.show(message, BoxIcon::critical);
    monitor_.cmdCancel_Click();
}

} // namespace sonarith
