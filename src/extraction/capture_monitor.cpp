// SPDX-License-Identifier: GPL-3.0-or-later
#include "extraction/capture_monitor.h"

#include <cmath>

#include "extraction/capture_commands.h"
#include "extraction/track_line.h"
#include "platform/text/numbers.h"
#include "settings/path_helpers.h"

namespace sonarith {

namespace {
constexpr std::size_t positionReplySize = 64;
constexpr std::size_t lengthReplySize = 255;
} // namespace

CaptureMonitor::CaptureMonitor(const Platform& platform, ProcessState& process, Windows& windows,
                               CaptureState& capture, FileAdder& files,
                               std::function<void(std::int32_t)> startTrack)
    : platform_(platform),
      process_(process),
      windows_(windows),
      form_(windows.Form1),
      capture_(capture),
      files_(files),
      startTrack_(std::move(startTrack)) {
    form_.tmrRecord.onTimer = [this] {
        tmrRecord_Timer();
    };
    form_.Command8.onClick = [this] {
        Command8_Click();
    };
    form_.Command2.onClick = [this] {
        Command2_Click();
    };
}

void CaptureMonitor::ShowCaptureLength() {
    platform_.media.sendString("set capture time format bytes");
    ReplyBuffer reply(lengthReplySize);
    const auto bytes = toInteger32(ask(platform_.media, "status capture length", reply));
    if (bytes.ok()) {
        form_.lblStatus.setCaption(std::to_string(bytes.value()) + " Bytes");
    }
}

void CaptureMonitor::tmrRecord_Timer() {
    ShowCaptureLength();
    ReplyBuffer reply(positionReplySize);
    const std::int32_t positionMs = discPositionMs(reply);
    if (capture_.trackEndMs != 0) {
        if (process_.stopRequested) {
            endByStop();
            return;
        }
        // The reply, the device's current track, is not used.
        platform_.media.sendString("status cd current track", &reply);
        showProgress(positionMs);
        platform_.loop.yield();
    }
    // A stop during the yield sets trackEndMs to 0, so the condition below is then true. The end of
    // the track is checked once per tick. So the file may also contain the beginning of the
    // following track, up to one interval of the timer.
    if (form_.Check9.value() == 1 || positionMs >= capture_.trackEndMs) {
        endTrack();
    }
}

std::int32_t CaptureMonitor::discPositionMs(ReplyBuffer& reply) {
    // The reply of a failed query is empty and counts as position 0, so that in this tick only a
    // stop can end the track.
    return roundedToInteger32(numberOf(ask(platform_.media, "status cd position", reply)))
        .valueOr(0);
}

void CaptureMonitor::showProgress(std::int32_t positionMs) {
    const auto start = static_cast<double>(capture_.trackStartMs);
    const auto end = static_cast<double>(capture_.trackEndMs);
    std::int64_t shown = 0; // stays 0 for a track without length, which has no percentage
    if (end != start) {
        shown = static_cast<std::int64_t>(std::floor((positionMs - start) / (end - start) * 100));
    }
    form_.Label33.setCaption(std::to_string(shown) + "%");
    // The bar refuses a value below 0 (before the track's start) or above 100 (after the track's
    // end), and then does not change.
    form_.ProgressBar1.setValue(shown).passOver();
}

void CaptureMonitor::endTrack() {
    stopTimers();
    saveAndClose(platform_.media, process_.currentFile);
    platform_.loop.yield();
    platform_.loop.yield();
    const ListBox& queue = form_.lstRecord;
    if (queue.listIndex() + 1 >= queue.listCount() || queue.listCount() <= 1) {
        finishQueue();
    } else if (process_.stopRequested || process_.cancelRequested) {
        endByStop();
    } else {
        startNextLine();
    }
}

void CaptureMonitor::startNextLine() {
    form_.lstRecord.setListIndex(form_.lstRecord.listIndex() + 1).passOver();
    trackNumberIn(form_.lstRecord.text()).storeIn(process_.currentTrack);
    form_.Label3.setCaption("Extracting Track " + std::to_string(process_.currentTrack));
    // currentFile is still the file that was just saved.
    form_.Label2.setCaption(process_.currentFile);
    form_.setCaption(form_.Label3.caption());
    form_.Command2.setVisible(true);
    startTrack_(process_.currentTrack);
}

void CaptureMonitor::finishQueue() {
    // If the queue ended without a stop, the next scan of the destination folder adds the captured
    // files to the tree.
    if (capture_.trackEndMs != 0) {
        form_.Enablem();
    } else if (process_.stopRequested) {
        // The stop happened during this tick. An MP3 file of the same name is also added if it
        // exists.
        form_.Enablem();
        files_.Cmaddfile2(process_.currentFile);
        const auto base = FileBaseName(process_.currentFile);
        if (base.ok()) {
            process_.currentFile = process_.settings.decodePath + "\\" + base.value() + ".mp3";
        }
        files_.Cmaddfile2(process_.currentFile);
    }
    form_.ClearActivity();
}

void CaptureMonitor::endByStop() {
    stopTimers();
    form_.lstRecord.setSelected(form_.lstRecord.listIndex(), true).passOver();
    saveAndClose(platform_.media, process_.currentFile);
    form_.Enablem();
    files_.Cmaddfile2(process_.currentFile);
    platform_.loop.yield();
    form_.ClearActivity();
}

void CaptureMonitor::stopTimers() {
    form_.Check9.setValue(0).passOver();
    form_.tmrRecord.setEnabled(false);
    // Only the start of an action enables tmrWarning, so this timer does not run during the later
    // tracks of a queue.
    form_.tmrWarning.setEnabled(false);
}

void CaptureMonitor::moveToLastLine() {
    ListBox& queue = form_.lstRecord;
    queue.setListIndex(queue.listCount() - 1).passOver();
}

void CaptureMonitor::cmdCancel_Click() {
    capture_.trackEndMs = 0;
    moveToLastLine();
    form_.tmrRecord.setEnabled(false);
    form_.tmrWarning.setEnabled(false);
    saveAndClose(platform_.media, process_.currentFile);
}

void CaptureMonitor::Command8_Click() {
    process_.stopRequested = true;
    form_.Timer1.setEnabled(true);
    form_.Enablem();
    // Check9 stays at 1 until stopTimers() in a tick, or the next cmdStart_Click(), resets it.
    form_.Check9.setValue(1).passOver();
    capture_.trackEndMs = 0;
    if (!form_.tmrRecord.enabled()) {
        return;
    }
    form_.tmrRecord.setEnabled(false);
    moveToLastLine();
    form_.tmrWarning.setEnabled(false);
    saveAndClose(platform_.media, process_.currentFile);
    form_.List1.addItem(process_.currentFile);
    platform_.loop.yield();
    files_.Cmaddfile2(process_.currentFile);
    platform_.loop.yield();
}

void CaptureMonitor::Command2_Click() {
    process_.stopRequested = true;
    // Deliberate: nothing resets cancelRequested.
    process_.cancelRequested = true;
    windows_.Form6.unload();
    form_.Command8.click();
    form_.Enablem();
    form_.Command2.setVisible(false);
}

void CaptureMonitor::Command1_Click() {
    process_.stopRequested = true;
    windows_.Form6.unload();
    form_.Command8.click();
    form_.Enablem();
}

} // namespace sonarith
