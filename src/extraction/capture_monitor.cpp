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

void CaptureMonitor::ShowCaptureLength() {
    auto& [loop, media, process, form, capture] = context_;
    media.sendString("set capture time format bytes");
    ReplyBuffer reply(lengthReplySize);
    const auto bytes = toInteger32(ask(media, "status capture length", reply));
    if (bytes.ok()) {
        form.lblStatus.setCaption(std::to_string(bytes.value()) + " Bytes");
    }
}

void CaptureMonitor::tmrRecord_Timer() {
    auto& [loop, media, process, form, capture] = context_;
    ShowCaptureLength();
    ReplyBuffer reply(positionReplySize);
    const std::int32_t positionMs = discPositionMs(reply);
    if (capture.trackEndMs != 0) {
        if (process.stopRequested) {
            endByStop();
            return;
        }
        // Asked for and not used: the device's track number plays no part.
        media.sendString("status cd current track", &reply);
        showProgress(positionMs);
        loop.yield();
    }
    // A stop in that yield has zeroed trackEndMs, and the track ends here. There is no margin: a
    // file may carry up to one tick of the track that follows.
    if (form.Check9.value() == 1 || positionMs >= capture.trackEndMs) {
        endTrack();
    }
}

std::int32_t CaptureMonitor::discPositionMs(ReplyBuffer& reply) {
    // Without a position the reply is empty and reads 0: only a stop then ends the track.
    return roundedToInteger32(numberOf(ask(context_.media, "status cd position", reply)))
        .valueOr(0);
}

void CaptureMonitor::showProgress(std::int32_t positionMs) {
    const auto start = static_cast<double>(context_.capture.trackStartMs);
    const auto end = static_cast<double>(context_.capture.trackEndMs);
    std::int64_t shown = 0; // stays so for a track without length, which has no percentage
    if (end != start) {
        shown = static_cast<std::int64_t>(std::floor((positionMs - start) / (end - start) * 100));
    }
    context_.form.Label33.setCaption(std::to_string(shown) + "%");
    // Before the track's start the value is negative, and the bar stays as it is.
    context_.form.ProgressBar1.setValue(shown).passOver();
}

void CaptureMonitor::endTrack() {
    auto& [loop, media, process, form, capture] = context_;
    stopTimers();
    saveAndClose(media, process.currentFile);
    loop.yield();
    loop.yield();
    const ListBox& queue = form.lstRecord;
    if (queue.listIndex() + 1 >= queue.listCount() || queue.listCount() <= 1) {
        finishQueue();
    } else if (process.stopRequested || process.cancelRequested) {
        endByStop();
    } else {
        startNextLine();
    }
}

void CaptureMonitor::startNextLine() {
    auto& [loop, media, process, form, capture] = context_;
    form.lstRecord.setListIndex(form.lstRecord.listIndex() + 1).passOver();
    trackNumberIn(form.lstRecord.text()).storeIn(process.currentTrack);
    form.Label3.setCaption("Extracting Track " + std::to_string(process.currentTrack));
    // Still the file just saved.
    form.Label2.setCaption(process.currentFile);
    form.setCaption(form.Label3.caption());
    form.Command2.setVisible(true);
    startTrack_(process.currentTrack);
}

void CaptureMonitor::finishQueue() {
    auto& [loop, media, process, form, capture] = context_;
    // The files of a run that ended by itself enter the tree at the next scan of the folder.
    if (capture.trackEndMs != 0) {
        form.Enablem();
    } else if (process.stopRequested) {
        // The stop came during this tick. The MP3 of that name is offered too, should there be one.
        form.Enablem();
        files_.Cmaddfile2(process.currentFile);
        const auto base = FileBaseName(process.currentFile);
        if (base.ok()) {
            process.currentFile = process.settings.decodePath + "\\" + base.value() + ".mp3";
        }
        files_.Cmaddfile2(process.currentFile);
    }
    form.ClearActivity();
}

void CaptureMonitor::endByStop() {
    auto& [loop, media, process, form, capture] = context_;
    stopTimers();
    form.lstRecord.setSelected(form.lstRecord.listIndex(), true).passOver();
    saveAndClose(media, process.currentFile);
    form.Enablem();
    files_.Cmaddfile2(process.currentFile);
    loop.yield();
    form.ClearActivity();
}

void CaptureMonitor::stopTimers() {
    context_.form.Check9.setValue(0).passOver();
    context_.form.tmrRecord.setEnabled(false);
    // Only the start of an action turns it on again: in a queue it watches the first track alone.
    context_.form.tmrWarning.setEnabled(false);
}

void CaptureMonitor::moveToLastLine() {
    ListBox& queue = context_.form.lstRecord;
    queue.setListIndex(queue.listCount() - 1).passOver();
}

void CaptureMonitor::cmdCancel_Click() {
    auto& [loop, media, process, form, capture] = context_;
    capture.trackEndMs = 0;
    moveToLastLine();
    form.tmrRecord.setEnabled(false);
    form.tmrWarning.setEnabled(false);
    saveAndClose(media, process.currentFile);
}

void CaptureMonitor::Command8_Click() {
    auto& [loop, media, process, form, capture] = context_;
    process.stopRequested = true;
    form.Timer1.setEnabled(true);
    form.Enablem();
    // With no capture running it stays at 1 until the next start.
    form.Check9.setValue(1).passOver();
    capture.trackEndMs = 0;
    if (!form.tmrRecord.enabled()) {
        return;
    }
    form.tmrRecord.setEnabled(false);
    moveToLastLine();
    form.tmrWarning.setEnabled(false);
    saveAndClose(media, process.currentFile);
    form.List1.addItem(process.currentFile);
    loop.yield();
    files_.Cmaddfile2(process.currentFile);
    loop.yield();
}

void CaptureMonitor::Command2_Click() {
    context_.process.stopRequested = true;
    // Never taken back.
    context_.process.cancelRequested = true;
    windows_.Form6.unload();
    context_.form.Command8.click();
    context_.form.Enablem();
    context_.form.Command2.setVisible(false);
}

void CaptureMonitor::Command1_Click() {
    context_.process.stopRequested = true;
    windows_.Form6.unload();
    context_.form.Command8.click();
    context_.form.Enablem();
}

} // namespace sonarith
