// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the whole application on a machine of fakes, with a simulated disc, in virtual time.
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
#include "support/fake_machine.h"
#include "support/simulated_disc.h"

namespace sonarith::test {

class ApplicationBench : public FakeMachine {
  public:
    /// The default destination folder, as a path of the logic.
    inline static const std::string destination = "c:\\sonarith\\wavfiles";
    /// Path of a saved track. The number 24106954 is the disc's identity 48213906 times the random
    /// fraction 0.5 (which FakeRandom returns), plus 1.
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
    /// Runs `step`; returns whether `step` ended the program.
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
    /// Whether no capture is running and no device is open.
    [[nodiscard]] bool idle() const {
        return !form.tmrRecord.enabled() && !disc.discOpen() && !disc.recorderOpen();
    }

    FakeDirectories& disk = directories;
    SimulatedDisc disc;
    Application application{platform};
    Windows& windows = application.windows();
    Form1& form = windows.Form1;
    ProcessState& process = application.process();
};

} // namespace sonarith::test
