// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/conversion_worker.h"

#include <cstdint>
#include <string>

#include "platform/text/numbers.h"
#include "platform/text/unicode.h"
#include "settings/least_file_length.h"
#include "settings/path_helpers.h"

namespace sonarith {

namespace {

/// "mp3" or "wav", without the dot.
constexpr std::size_t extensionLength = 3;

Status tooShort() {
    return {ErrorNumber::invalidProcedureCall, "The file is too short."};
}

} // namespace

Result<std::string> wavPathFor(const std::string& mp3Path, const ProcessState& process) {
    const Result<std::string> base = FileBaseName(mp3Path);
    if (!base.ok()) {
        return base.error();
    }
    return process.settings.decodePath + "\\" + base.value() + ".wav";
}

ConversionWorker::ConversionWorker(const Platform& platform, ProcessState& process,
                                   Windows& windows)
    : platform_(platform), process_(process), form6_(windows.Form6), form_(windows.Form1) {
    form6_.onLoad = [this] {
        Form_Load();
    };
    form6_.onUnload = [this] {
        Form_Unload();
    };
    form6_.Timer1.onTimer = [this] {
        Timer1_Timer();
    };
    form6_.Timer2.onTimer = [this] {
        Timer2_Timer();
    };
    form6_.Command1.onClick = [this] {
        Command1_Click();
    };
}

bool ConversionWorker::stillLoaded(int load) const {
    return form6_.loaded() && form6_.timesLoaded() == load;
}

void ConversionWorker::Form_Load() {
    if (process_.stopRequested) {
        form6_.unload();
        return;
    }
    process_.workerBusy = true;
    started_ = true;
    StartMP3(process_.currentFile);
}

void ConversionWorker::Form_Unload() {
    form6_.ActiveMP31->Stop().passOver();
    process_.workerBusy = false;
}

void ConversionWorker::starthere() {
    started_ = true;
    StartMP3(process_.currentWavFile);
}

void ConversionWorker::StartMP3(std::string_view) {
    started_ = true;
    start().passOver();
}

Status ConversionWorker::start() {
    const auto length = platform_.files.fileLength(process_.currentFile);
    if (!length.ok()) {
        return length.error();
    }
    // For a file that is too short, Timer2 stays disabled, so no tick unloads Form6. The main
    // window may show "Decoding" until other code unloads Form6, for example Cancel
    // (Form1.Command2).
    if (length.value() < leastFileLength) {
        return tooShort();
    }
    form6_.Timer2.setEnabled(true);
    const Result<std::string> target = wavPathFor(process_.currentFile, process_);
    if (!target.ok()) {
        return target.error();
    }
    if (Status source = form6_.ActiveMP31->setSourceFile(process_.currentFile); !source.ok()) {
        return source;
    }
    return form6_.ActiveMP31->DecodeToWav(target.value());
}

void ConversionWorker::Timer1_Timer() {
    form6_.Timer1.setEnabled(false);
    // Starts to decode the current file again, possibly while the control is still decoding this
    // file. The control decides how it handles a second start.
    StartMP3(process_.currentWavFile);
}

void ConversionWorker::Timer2_Timer() {
    const int load = form6_.timesLoaded();
    if (tick() == Job::over) {
        finish(load);
    }
}

ConversionWorker::Job ConversionWorker::tick() {
    if (!form6_.ActiveMP31->Busy()) {
        showEnd().passOver();
        return Job::over;
    }
    if (process_.stopRequested) {
        return Job::over;
    }
    if (!showProgress().ok()) {
        return Job::over;
    }
    platform_.loop.yield();
    return Job::continues;
}

Status ConversionWorker::showEnd() {
    form6_.Timer2.setEnabled(false);
    if (Status stopped = form6_.ActiveMP31->Stop(); !stopped.ok()) {
        return stopped;
    }
    // This text has a blank before the percent sign; the percentages that showProgress() shows have
    // none.
    form_.Label33.setCaption("100 %");
    if (Status shown = form_.ProgressBar1.setValue(100); !shown.ok()) {
        return shown;
    }
    platform_.loop.yield();
    platform_.loop.yield();
    return {};
}

Status ConversionWorker::showProgress() {
    const auto percentage = readPercentage();
    if (!percentage.ok()) {
        return percentage.error();
    }
    form_.Label33.setCaption(std::to_string(percentage.value()) + "%");
    // The position is read again, so the bar may show a later position than the text.
    const auto afresh = readPercentage();
    return afresh.ok() ? form_.ProgressBar1.setValue(afresh.value()) : Status(afresh.error());
}

Result<std::int16_t> ConversionWorker::readPercentage() const {
    const std::int32_t length = form6_.ActiveMP31->Length();
    const std::int32_t position = form6_.ActiveMP31->Position();
    // A length of 0 makes the rounding fail, which ends the job.
    return roundedToInteger16(static_cast<double>(position) / static_cast<double>(length) * 100);
}

/// The final steps of every job that ends in a tick, however it ends.
void ConversionWorker::finish(int load) {
    if (!stillLoaded(load)) {
        return;
    }
    form6_.Timer2.setEnabled(false);
    form6_.ActiveMP31->Stop().passOver();
    form6_.unload();
}

void ConversionWorker::Command1_Click() {
    process_.stopRequested = true;
    form6_.unload();
}

void ConversionWorker::StartDecoding() {
    const int load = form6_.timesLoaded();
    if (process_.stopRequested) {
        form6_.ActiveMP31->Stop().passOver();
        form6_.unload();
        return;
    }
    if (!startBeside().ok()) {
        return;
    }
    form6_.Timer2.setEnabled(true);
    if (!form6_.ActiveMP31->Busy()) {
        form6_.unload();
    }
    // waitWhile() evaluates this condition after each event, for example after each tick of Timer2.
    platform_.loop.waitWhile(
        [this, load] { return stillLoaded(load) && form6_.ActiveMP31->Busy(); });
    platform_.loop.yield();
    if (stillLoaded(load)) {
        form6_.Timer2.setEnabled(false);
        form6_.unload();
    }
}

/// Fails for a file that is too short or missing; failures of the control are ignored.
Status ConversionWorker::startBeside() {
    const std::string& path = process_.currentWavFile;
    if (platform_.files.fileLength(path).valueOr(0) < leastFileLength) {
        return tooShort();
    }
    if (const auto base = FileBaseName(path); base.ok()) {
        // The backslash before ".mp3" is intended.
        form_.setCaption("Decoding " + base.value() + "\\.mp3");
    }
    form6_.ActiveMP31->setSourceFile(path).passOver();
    const std::size_t kept = characterCount(path) - extensionLength;
    form6_.ActiveMP31->DecodeToWav(leftCharacters(path, kept) + "wav").passOver();
    return {};
}

void ConversionWorker::DecodeCheckedFiles() {
    ListBox& list = form_.List4;
    for (int i = 0; i < list.listCount(); ++i) {
        if (process_.stopRequested) {
            process_.stopRequested = false;
            break;
        }
        if (list.selected(i)) {
            list.setListIndex(i).passOver();
            StartMP3("True");
        }
    }
    form_.lblStatus.setCaption("");
    platform_.pointer.set(Pointer::normal);
    form6_.unload();
}

} // namespace sonarith
