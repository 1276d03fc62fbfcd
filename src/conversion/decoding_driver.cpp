// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/decoding_driver.h"

#include <cstdint>

#include "conversion/conversion_worker.h"
#include "platform/text/unicode.h"
#include "settings/path_helpers.h"
#include "worktree/tree_nodes.h"

namespace sonarith {

DecodingDriver::DecodingDriver(const Platform& platform, ProcessState& process, Windows& windows,
                               FileAdder& adder)
    : platform_(platform),
      process_(process),
      windows_(windows),
      form_(windows.Form1),
      adder_(adder) {
    form_.CmdDecoder.onClick = [this] {
        CmdDecoder_Click();
    };
}

void DecodingDriver::CmdDecoder_Click() {
    const std::string text = textOf(form_.TreeView1.selectedItem());
    if (text == mp3FilesText) {
        decodeAll();
    } else if (text == selectedMp3FilesText) {
        decodeSelected();
    } else {
        decodeOne(text);
    }
}

void DecodingDriver::decodeAll() {
    const ListBox& list = form_.List2;
    if (list.listCount() == 0) {
        platform_.boxes.show("No files in list.", BoxIcon::information);
        return;
    }
    // The bound is read before the loop, so files that are added to the list later are not decoded.
    // The counter fileIndex is process-wide: while decodeLine() yields, another decoding or a
    // command of the player may change it.
    const int bound = list.listCount();
    std::int32_t& fileIndex = process_.fileIndex;
    for (fileIndex = 0; fileIndex < bound && !process_.stopRequested; ++fileIndex) {
        decodeLine(list, Case::lowered);
    }
    finish();
}

void DecodingDriver::decodeSelected() {
    const ListBox& list = form_.List4;
    if (list.listCount() == 0) {
        platform_.boxes.show("No files selected", BoxIcon::information);
        return;
    }
    const int bound = list.listCount();
    std::int32_t& fileIndex = process_.fileIndex;
    for (fileIndex = 0; fileIndex < bound && !process_.stopRequested; ++fileIndex) {
        decodeLine(list, Case::unchanged);
    }
    // If the loop was stopped before its first file, currentWavFile is the file of an earlier
    // decoding.
    if (const auto length = platform_.files.fileLength(process_.currentWavFile); length.ok()) {
        form_.lblStatus.setCaption(std::to_string(length.value()) + " bytes");
    }
    finish();
}

void DecodingDriver::decodeLine(const ListBox& list, Case letters) {
    const std::string line = list.list(process_.fileIndex);
    process_.currentFile = letters == Case::lowered ? lowerCase(line) : line;
    showCaption();
    form_.Label3.setCaption("Decoding #" + std::to_string(process_.fileIndex + 1) + " of " +
                            std::to_string(list.listCount()) + " files");
    const Result<std::string> wavPath = wavPathFor(process_.currentFile, process_);
    if (wavPath.ok()) {
        form_.Label2.setCaption(wavPath.value());
    }
    if (letters == Case::lowered) {
        platform_.loop.yield();
    }
    fileStep();
    wavPath.storeIn(process_.currentWavFile);
    // The WAV file is added to the tree after a stop, too: an incomplete WAV file is kept.
    adder_.Cmaddfile2(process_.currentWavFile);
}

void DecodingDriver::decodeOne(const std::string& text) {
    if (!text.ends_with(".mp3")) {
        process_.stopRequested = true;
        return;
    }
    findFile(text);
    wavPathFor(text, process_).storeIn(process_.currentWavFile);
    // The two blanks are intended.
    form_.Label3.setCaption("Decoding  " + text);
    form_.Label2.setCaption(process_.currentWavFile);
    showCaption();
    fileStep();
    adder_.Cmaddfile2(process_.currentWavFile);
    finish();
}

/// Sets currentFile to the path for a node's text. Deliberate: in some cases this is the path of
/// another file, or empty.
void DecodingDriver::findFile(const std::string& text) {
    // `name` keeps its capitals, but findIn() compares it with names in lower case: a name with
    // capitals is found in neither list.
    const std::string name = SplitPath(text, process_);
    if (!findIn(form_.List2, name)) {
        static_cast<void>(findIn(form_.List4, name));
    }
    if (text != process_.currentFile) {
        // Uses the line of List2 at the index where the last search ended. If that search found the
        // file in List2, this is the line of the file. Otherwise it may be the line of another
        // file, or empty.
        process_.currentFile = lowerCase(form_.List2.list(process_.fileIndex));
    }
}

/// Searches `list` for a line with the file name `name`. If such a line is found, fileIndex is its
/// index and currentFile its path; otherwise fileIndex is the number of lines and currentFile is
/// the last name compared (unchanged if `list` is empty).
bool DecodingDriver::findIn(const ListBox& list, const std::string& name) {
    for (process_.fileIndex = 0; process_.fileIndex < list.listCount(); ++process_.fileIndex) {
        const std::string line = list.list(process_.fileIndex);
        process_.currentFile = lowerCase(SplitPath(line, process_));
        if (name == process_.currentFile) {
            process_.currentFile = lowerCase(line);
            return true;
        }
    }
    return false;
}

void DecodingDriver::showCaption() {
    if (const auto base = FileBaseName(process_.currentFile); base.ok()) {
        form_.setCaption("Decoding " + base.value() + ".mp3");
    }
}

void DecodingDriver::fileStep() {
    process_.workerBusy = true;
    // If Form6 is still loaded for an earlier file, Disablem() unloads it, which clears workerBusy.
    // Otherwise workerBusy stays true.
    form_.Disablem();
    StartDecoding(process_.currentFile);
    platform_.loop.waitWhile([this] { return process_.workerBusy; });
    // Form6 needs no reset here, because each load resets it to its designed state.
    form_.Command2.setVisible(false);
}

void DecodingDriver::StartDecoding(const std::string& path) {
    if (platform_.files.fileExists(path)) {
        form_.Command2.setVisible(true);
        process_.workerBusy = true;
        windows_.Form6.load();
    }
}

void DecodingDriver::finish() {
    form_.Timer1.setEnabled(true);
    // Prevents a worker from starting before the next action.
    process_.stopRequested = true;
}

} // namespace sonarith
