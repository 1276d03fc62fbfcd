// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/preferences/disk_guard.h"

#include <cstdint>
#include <string>

#include "desktop/drive_roots.h"
#include "platform/text/numbers.h"
#include "platform/text/unicode.h"

namespace sonarith {

namespace {

/// The size in whole MB. Calculated with integers, because a double cannot represent every number
/// of bytes above 2^53 (9 PB) exactly.
std::string wholeMegabytes(std::int64_t bytes) {
    constexpr std::int64_t megabyte = 1'000'000;
    const std::int64_t whole = bytes / megabyte;
    const std::int64_t rest = bytes % megabyte;
    // Halves are rounded to even, as in platform/text/numbers.h.
    const bool up = rest > megabyte / 2 || (rest == megabyte / 2 && whole % 2 != 0);
    return std::to_string(up ? whole + 1 : whole);
}

bool startsWithLetterOf(const std::string& path, const std::string& root) {
    return equalIgnoringCase(path.substr(0, 1), root.substr(0, 1));
}

} // namespace

DiskGuard::DiskGuard(const Platform& platform, ProcessState& process, Windows& windows,
                     const System& system, CaptureMonitor& monitor)
    : platform_(platform),
      process_(process),
      windows_(windows),
      form_(windows.Form1),
      system_(system),
      monitor_(monitor) {
    form_.tmrWarning.onTimer = [this] {
        tmrWarning_Timer();
    };
}

void DiskGuard::RefreshDriveSpace() {
    FrmPrefs& prefs = touched(windows_.FrmPrefs);
    // Text6 is set once at the end, so that a view repaints nothing while the figures do not
    // change.
    std::string lines;
    for (const std::string& root : driveRoots(platform_.system)) {
        process_.DriveName = root;
        if (startsWithLetterOf(root, "A")) {
            continue; // never accessed: a floppy drive would start up at each tick
        }
        system_.DriveInfo(root, process_.DriveTotalBytes, process_.DriveFreeBytes);
        if (process_.DriveTotalBytes == 0 || system_.DriveType(root) != "Fixed drive") {
            continue;
        }
        const std::string megabytes = wholeMegabytes(process_.DriveFreeBytes);
        lines.append(root).append(" - ").append(megabytes).append(" MB available\r\n");
        if (startsWithLetterOf(process_.settings.decodePath, root)) {
            prefs.Label3.setCaption(root);
            prefs.Label4.setCaption(megabytes);
        }
    }
    prefs.Text6.setText(lines);
}

void DiskGuard::tmrWarning_Timer() {
    RefreshDriveSpace();
    const AppSettings& settings = process_.settings;
    // Deliberate: for a destination that is not on a fixed drive, Label4 keeps its previous text.
    // The initial text is read as 0, so such a destination counts as full at first.
    const double freeMegabytes = numberOf(touched(windows_.FrmPrefs).Label4.caption());
    if (settings.hdStopDecoding == 1 && freeMegabytes < settings.hdStopNo) {
        process_.stopRequested = true;
        form_.Label5.setVisible(true);
        monitor_.Command1_Click();
        form_.Timer1.setEnabled(true);
        platform_.loop.yield();
        return;
    }
    if (settings.hdWarning == 1 && freeMegabytes < settings.hdWarningNo) {
        form_.Label5.setVisible(true);
    }
}

} // namespace sonarith
