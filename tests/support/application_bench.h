// SPDX-License-Identifier: GPL-3.0-or-later
// The whole application over a machine of fakes, with a simulated disc, in virtual time.
//
//     ApplicationBench bench({60000, 30000});
//     bench.application.start();
//     bench.select("Available Tracks");
//     bench.form.CmdSelectAction.click();
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "app/application.h"
#include "support/fake_active_mp3.h"
#include "support/fake_directories.h"
#include "support/fake_file_dialog.h"
#include "support/fake_file_system.h"
#include "support/fake_message_boxes.h"
#include "support/fake_mouse_pointer.h"
#include "support/fake_random.h"
#include "support/fake_settings_store.h"
#include "support/fake_shell.h"
#include "support/scripted_media_control.h"
#include "support/simulated_disc.h"
#include "support/virtual_event_loop.h"

namespace sonarith::test {

class ApplicationBench {
  public:
    /// Where captures land in a fresh store, as the logic names it.
    inline static const std::string destination = "c:\\sonarith\\wavfiles";
    /// Of the disc that stands in the drive.
    static std::string savedAs(int track) {
        return destination + "\\24106954-" + std::to_string(track) + ".wav";
    }

    explicit ApplicationBench(std::vector<std::int32_t> lengthsMs)
        : disc(loop, std::move(lengthsMs)) {
        media.device = disc.device();
        disc.onSave = [this](const SavedCapture& save) {
            files.addFile(save.path, std::string(200, 'w'));
        };
        disk.addFolder(destination);
    }

    void select(const std::string& text) {
        for (int i = 1; i <= form.TreeView1.count(); ++i) {
            if (form.TreeView1.node(i)->text() == text) {
                form.TreeView1.setSelectedItem(form.TreeView1.node(i)).passOver();
                return;
            }
        }
    }
    /// Runs `step`; whether it ended the program.
    template <typename Step>
    bool endsProgram(Step step) {
        try {
            step();
        } catch (const ProgramEnded&) {
            return true;
        }
        return false;
    }
    [[nodiscard]] bool commandsOpen() const {
        return form.mnuFile.enabled() && form.Copt.enabled();
    }
    /// Whether nothing is left running or open of any capture.
    [[nodiscard]] bool idle() const {
        return !form.tmrRecord.enabled() && !disc.discOpen() && !disc.recorderOpen();
    }

    VirtualEventLoop loop;
    FakeSettingsStore store;
    FakeFileSystem files;
    FakeMessageBoxes boxes;
    FakeMousePointer pointer;
    FakeRandom random;
    FakeShell shell;
    FakeDirectories disk;
    ScriptedMediaControl media;
    FakeActiveMP3 mp3{loop, files};
    FakeFileDialog dialog;
    SimulatedDisc disc;
    Application application{
        Platform{loop, media, store, files, boxes, pointer, random, shell, disk, mp3, dialog}};
    Form1& form = application.form1();
    Windows& windows = application.windows();
    ProcessState& process = application.process();
};

} // namespace sonarith::test
