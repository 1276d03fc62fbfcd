// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the forms, a FileAdder and the extraction jobs, and connects them as the program does.
// The disc is simulated, and time is virtual. The rest of the application is not created.
//
//     ExtractionBench bench({60000, 30000});
//     bench.insertDisc();                     // fills the lists of tracks and lengths
//     bench.select("Available Tracks");
//     bench.form.cmdStart.click();            // returns when the last capture has ended
//     EXPECT_THAT(bench.media.log, ...);
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "extraction/capture_monitor.h"
#include "extraction/disc_inspection.h"
#include "extraction/extraction.h"
#include "extraction/track_capture.h"
#include "extraction/track_preview.h"
#include "forms/windows.h"
#include "support/fake_machine.h"
#include "support/simulated_disc.h"
#include "worktree/add_file.h"

namespace sonarith::test {

class ExtractionBench : public FakeMachine {
  public:
    explicit ExtractionBench(std::vector<std::int32_t> lengthsMs)
        : disc(loop, std::move(lengthsMs)) {
        form.load();
        media.device = disc.device();
        // A saved capture becomes a file that is long enough to be added to the tree.
        disc.onSave = [this](const SavedCapture& save) {
            files.addFile(save.path, std::string(200, 'w'));
        };
        state.settings.decodePath = "c:\\wavfiles";
        state.settings.audioFormat = 1;
        state.settings.showFullPath = 1;
        random.next = 0.25F;
        form.Timer1.onTimer = [this] {
            form.Timer1.setEnabled(false);
            form.ClearActivity();
        };
        // Adds the groups that the jobs read or extend.
        for (const char* group :
             {"Selected Tracks", "Available Tracks", "WAV Files", "MP3 Files"}) {
            static_cast<void>(form.TreeView1.add(nullptr, std::string("g ") + group, group, 2, 5));
        }
    }

    /// Inspects the disc, then clears the log of the device commands.
    void insertDisc() {
        inspection.InspectCD();
        media.log.clear();
    }
    /// Selects the node with this text; adds it if there is none.
    void select(const std::string& text) {
        for (int i = 1; i <= form.TreeView1.count(); ++i) {
            if (form.TreeView1.node(i)->text() == text) {
                form.TreeView1.setSelectedItem(form.TreeView1.node(i)).passOver();
                return;
            }
        }
        const auto added = form.TreeView1.add(nullptr, "p " + text, text, 3, 6);
        form.TreeView1.setSelectedItem(added.value()).passOver();
    }
    /// Copies the lines of these tracks from lstTracks to lstRecord, in the order of `tracks`.
    void choose(const std::vector<int>& tracks) {
        for (const int track : tracks) {
            form.lstRecord.addItem(form.lstTracks.list(track - 1));
        }
    }
    /// Form1::Disablem() disables buttons and menus of the main window. Returns whether three of
    /// them are enabled.
    [[nodiscard]] bool commandsOpen() const {
        return form.mnuFile.enabled() && form.Copt.enabled() && form.C777.enabled();
    }
    [[nodiscard]] long timesSent(const std::string& command) const {
        return std::count(media.log.begin(), media.log.end(), command);
    }
    /// Whether no capture is running and no device is open.
    [[nodiscard]] bool idle() const {
        return !form.tmrRecord.enabled() && !disc.discOpen() && !disc.recorderOpen();
    }

    ProcessState state;
    Windows windows{platform, state};
    Form1& form = windows.Form1;
    SimulatedDisc disc;

    FileAdder fileAdder{platform, state, form};
    Extraction jobs{platform, state, windows, fileAdder};
    CaptureState& captureState = jobs.state;
    DiscInspection& inspection = jobs.inspection;
    CaptureMonitor& monitor = jobs.monitor;
    TrackCapture& capture = jobs.capture;
};

/// An ExtractionBench whose disc has tracks of one second each. All tracks are queued, and the node
/// "Selected Tracks" is selected.
class QueueBench : public ExtractionBench {
  public:
    explicit QueueBench(int tracks)
        : ExtractionBench(std::vector<std::int32_t>(static_cast<std::size_t>(tracks), 1000)) {
        insertDisc();
        for (int track = 1; track <= tracks; ++track) {
            choose({track});
        }
        select("Selected Tracks");
    }
    [[nodiscard]] bool treeHolds(const std::string& text) const {
        for (int i = 1; i <= form.TreeView1.count(); ++i) {
            if (form.TreeView1.node(i)->text() == text) {
                return true;
            }
        }
        return false;
    }
};

// The commands that start the capture of a track, in this order. The command that follows them and
// plays the disc is not defined here, because it depends on the track's start.
inline constexpr const char* openRecorder = "open new type waveaudio alias capture";
inline constexpr const char* setStereo =
    "set capture samplespersec 44100 channels 2 bitspersample 16 "
    "alignment 4 bytespersec 176400";
inline constexpr const char* openDisc = "open cdaudio alias cd";
inline constexpr const char* setMilliseconds = "set cd time format milliseconds";
inline constexpr const char* record = "record capture overwrite";

/// Path of a track saved by an ExtractionBench. The number before the dash is the disc's identity
/// 48213906 times the random fraction 0.25, plus 1, truncated to an integer.
[[nodiscard]] inline std::string savedAs(int track) {
    return "c:\\wavfiles\\12053477-" + std::to_string(track) + ".wav";
}

/// The commands that end and save a capture.
[[nodiscard]] inline std::vector<std::string> endCommands(const std::string& file) {
    return {"stop capture", "stop cd", "save capture " + file, "close capture", "close cd"};
}

[[nodiscard]] inline std::vector<std::string> joined(std::vector<std::string> first,
                                                     const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

[[nodiscard]] inline std::vector<std::string> linesOf(const ListBox& list) {
    std::vector<std::string> lines;
    for (int i = 0; i < list.listCount(); ++i) {
        lines.push_back(list.list(i));
    }
    return lines;
}

} // namespace sonarith::test
