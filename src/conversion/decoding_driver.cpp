// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/decoding_driver.h"

#include <cstdint>

#include "conversion/wav_path.h"
#include "platform/text/unicode.h"
#include "settings/path_helpers.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

void DecodingDriver::CmdDecoder_Click() {
    const std::string text = textOf(context_.form.TreeView1.selectedItem());
    if (text == mp3FilesText) {
        decodeAll();
    } else if (text == selectedMp3FilesText) {
        decodeSelected();
    } else {
        decodeOne(text);
    }
}

void DecodingDriver::decodeAll() {
    const ListBox& list = context_.form.List2;
    if (list.listCount() == 0) {
        context_.boxes.show("No files in list.", BoxIcon::information);
        return;
    }
    // The bound is taken once. The counter is the process's: an action that runs nested in one of
    // the yields moves it.
    const int bound = list.listCount();
    std::int32_t& fileIndex = context_.process.fileIndex;
    for (fileIndex = 0; fileIndex < bound && !context_.process.stopRequested; ++fileIndex) {
        decodeLine(list, Case::lowered);
    }
    finish();
}

void DecodingDriver::decodeSelected() {
    const ListBox& list = context_.form.List4;
    if (list.listCount() == 0) {
        context_.boxes.show("No files selected", BoxIcon::information);
        return;
    }
    const int bound = list.listCount();
    std::int32_t& fileIndex = context_.process.fileIndex;
    for (fileIndex = 0; fileIndex < bound && !context_.process.stopRequested; ++fileIndex) {
        decodeLine(list, Case::asItStands);
    }
    // With the loop stopped before its first file this is the file of an earlier run.
    if (const auto length = context_.files.fileLength(context_.process.currentWavFile);
        length.ok()) {
        context_.form.lblStatus.setCaption(std::to_string(length.value()) + " bytes");
    }
    finish();
}

void DecodingDriver::decodeLine(const ListBox& list, Case letters) {
    auto& [loop, files, boxes, process, form, windows, adder] = context_;
    const std::string line = list.list(process.fileIndex);
    process.currentFile = letters == Case::lowered ? lowerCase(line) : line;
    tellCaption();
    form.Label3.setCaption("Decoding #" + std::to_string(process.fileIndex + 1) + " of " +
                           std::to_string(list.listCount()) + " files");
    const Result<std::string> wavPath = wavPathFor(process.currentFile, process);
    if (wavPath.ok()) {
        form.Label2.setCaption(wavPath.value());
    }
    if (letters == Case::lowered) {
        loop.yield();
    }
    fileStep();
    wavPath.storeIn(process.currentWavFile);
    // Also after a stop: what was written so far is kept and shown.
    adder.Cmaddfile2(process.currentWavFile);
}

void DecodingDriver::decodeOne(const std::string& text) {
    auto& [loop, files, boxes, process, form, windows, adder] = context_;
    if (!text.ends_with(".mp3")) {
        process.stopRequested = true;
        return;
    }
    findFile(text);
    wavPathFor(text, process).storeIn(process.currentWavFile);
    // Two blanks.
    form.Label3.setCaption("Decoding  " + text);
    form.Label2.setCaption(process.currentWavFile);
    tellCaption();
    fileStep();
    adder.Cmaddfile2(process.currentWavFile);
    finish();
}

/// Sets currentFile to the path that a node's text stands for, or misses it in a way that is meant
/// so.
void DecodingDriver::findFile(const std::string& text) {
    ProcessState& process = context_.process;
    // Not lowered: a name with capitals is found in neither list.
    const std::string name = SplitPath(text, process);
    if (!findIn(context_.form.List2, name)) {
        static_cast<void>(findIn(context_.form.List4, name));
    }
    if (text != process.currentFile) {
        // From List2, wherever the search has left off: for a file of List4 behind a bare name, and
        // for one that was not found, that is another one's line or none.
        process.currentFile = lowerCase(context_.form.List2.list(process.fileIndex));
    }
}

/// Leaves fileIndex at the line found, or behind the last one, and currentFile at the line's path
/// or at the last name looked at.
bool DecodingDriver::findIn(const ListBox& list, const std::string& name) {
    ProcessState& process = context_.process;
    for (process.fileIndex = 0; process.fileIndex < list.listCount(); ++process.fileIndex) {
        const std::string line = list.list(process.fileIndex);
        process.currentFile = lowerCase(SplitPath(line, process));
        if (name == process.currentFile) {
            process.currentFile = lowerCase(line);
            return true;
        }
    }
    return false;
}

void DecodingDriver::tellCaption() {
    if (const auto base = FileBaseName(context_.process.currentFile); base.ok()) {
        context_.form.setCaption("Decoding " + base.value() + ".mp3");
    }
}

void DecodingDriver::fileStep() {
    auto& [loop, files, boxes, process, form, windows, adder] = context_;
    process.workerBusy = true;
    // Unloads a worker that was left from earlier, which puts workerBusy back.
    form.Disablem();
    StartDecoding(process.currentFile);
    loop.waitWhile([this] { return context_.process.workerBusy; });
    // The next load makes a new worker.
    form.Command2.setVisible(false);
}

void DecodingDriver::StartDecoding(const std::string& path) {
    if (context_.files.fileExists(path)) {
        context_.form.Command2.setVisible(true);
        context_.process.workerBusy = true;
        context_.windows.Form6.load();
    }
}

void DecodingDriver::finish() {
    context_.form.Timer1.setEnabled(true);
    // The way is closed for the next worker until the next start.
    context_.process.stopRequested = true;
}

} // namespace sonarith
