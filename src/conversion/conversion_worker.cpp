// SPDX-License-Identifier: GPL-3.0-or-later
#include "conversion/conversion_worker.h"

#include <chrono>
#include <cstdint>
#include <string>

#include "conversion/percentage.h"
#include "conversion/wav_path.h"
#include "platform/text/unicode.h"
#include "settings/path_helpers.h"

namespace sonarith {

using namespace std::chrono_literals;

namespace {

constexpr EventLoop::Duration timerInterval = 500ms;
/// A shorter file holds no sound worth decoding. A round figure, not a measured one.
constexpr std::int64_t leastLengthInBytes = 100;
/// "mp3" or "wav", without the point.
constexpr std::size_t extensionLength = 3;

/// Counts for as long as it lives, also when the end of the program unwinds through it.
class Running {
  public:
    explicit Running(int& count) : count_(count) { ++count_; }
    ~Running() { --count_; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    int& count_;
};

Status tooShort() {
    return {ErrorNumber::invalidProcedureCall, "The file is too short."};
}

} // namespace

ConversionWorker::ConversionWorker(WorkerContext context)
    : Timer1(context.loop, "Timer1", timerInterval),
      Timer2(context.loop, "Timer2", timerInterval),
      context_(context) {
    Timer1.onTimer = [this] {
        Timer1_Timer();
    };
    Timer2.onTimer = [this] {
        Timer2_Timer();
    };
    Command1.onClick = [this] {
        Command1_Click();
    };
    Timer1.setEnabled(true);
}

void ConversionWorker::Form_Load() {
    if (context_.process.stopRequested) {
        unload();
        return;
    }
    context_.process.workerBusy = true;
    started_ = true;
    StartMP3(context_.process.currentFile);
}

void ConversionWorker::Form_Unload() {
    context_.ActiveMP31.Stop().passOver();
    context_.process.workerBusy = false;
    loaded_ = false;
    Timer1.setEnabled(false);
    Timer2.setEnabled(false);
}

void ConversionWorker::starthere() {
    started_ = true;
    StartMP3(context_.process.currentWavFile);
}

void ConversionWorker::StartMP3(std::string_view) {
    started_ = true;
    start().passOver();
}

Status ConversionWorker::start() {
    const ProcessState& process = context_.process;
    const auto length = context_.files.fileLength(process.currentFile);
    if (!length.ok()) {
        return length.error();
    }
    // Nothing then unloads the window: the main window says "Decoding" until Cancel is pressed.
    if (length.value() < leastLengthInBytes) {
        return tooShort();
    }
    Timer2.setEnabled(true);
    const Result<std::string> target = wavPathFor(process.currentFile, process);
    if (!target.ok()) {
        return target.error();
    }
    if (Status source = context_.ActiveMP31.setSourceFile(process.currentFile); !source.ok()) {
        return source;
    }
    return context_.ActiveMP31.DecodeToWav(target.value());
}

void ConversionWorker::Timer1_Timer() {
    const Running here(running_);
    Timer1.setEnabled(false);
    // The same file a second time, while the first start may be at work: what that means is the
    // control's to decide.
    StartMP3(context_.process.currentWavFile);
}

void ConversionWorker::Timer2_Timer() {
    const Running here(running_);
    if (tick() == Job::over) {
        finish();
    }
}

ConversionWorker::Job ConversionWorker::tick() {
    if (!context_.ActiveMP31.Busy()) {
        showEnd().passOver();
        return Job::over;
    }
    if (context_.process.stopRequested) {
        return Job::over;
    }
    if (!showProgress().ok()) {
        return Job::over;
    }
    context_.loop.yield();
    return Job::goesOn;
}

Status ConversionWorker::showEnd() {
    Timer2.setEnabled(false);
    if (Status stopped = context_.ActiveMP31.Stop(); !stopped.ok()) {
        return stopped;
    }
    // With a blank, unlike the percentages before it.
    context_.form.Label33.setCaption("100 %");
    if (Status shown = context_.form.ProgressBar1.setValue(100); !shown.ok()) {
        return shown;
    }
    context_.loop.yield();
    context_.loop.yield();
    return {};
}

Status ConversionWorker::showProgress() {
    const auto percentage = readPercentage();
    if (!percentage.ok()) {
        return percentage.error();
    }
    context_.form.Label33.setCaption(std::to_string(percentage.value()) + "%");
    // Read afresh: the bar may be ahead of the text.
    const auto afresh = readPercentage();
    return afresh.ok() ? context_.form.ProgressBar1.setValue(afresh.value())
                       : Status(afresh.error());
}

Result<std::int16_t> ConversionWorker::readPercentage() const {
    const std::int32_t length = context_.ActiveMP31.Length();
    const std::int32_t position = context_.ActiveMP31.Position();
    return percentageOf(position, length);
}

/// The closing block of every end.
void ConversionWorker::finish() {
    // Unloaded from outside during a yield: control and window are another instance's by now.
    if (!loaded_) {
        return;
    }
    Timer2.setEnabled(false);
    context_.ActiveMP31.Stop().passOver();
    unload();
}

void ConversionWorker::unload() {
    if (loaded_) {
        context_.Form6.unload();
    }
}

void ConversionWorker::Command1_Click() {
    context_.process.stopRequested = true;
    unload();
}

void ConversionWorker::StartDecoding() {
    const Running here(running_);
    if (context_.process.stopRequested) {
        context_.ActiveMP31.Stop().passOver();
        unload();
        return;
    }
    if (!startBeside().ok()) {
        return;
    }
    Timer2.setEnabled(true);
    if (!context_.ActiveMP31.Busy()) {
        unload();
    }
    // The timer's ticks are the events at which this is asked again.
    context_.loop.waitWhile([this] { return loaded_ && context_.ActiveMP31.Busy(); });
    context_.loop.yield();
    Timer2.setEnabled(false);
    unload();
}

/// Fails for a file that is too short, or not there; the control's failures are passed over.
Status ConversionWorker::startBeside() {
    const std::string& path = context_.process.currentWavFile;
    if (context_.files.fileLength(path).valueOr(0) < leastLengthInBytes) {
        return tooShort();
    }
    if (const auto base = FileBaseName(path); base.ok()) {
        // The backslash before the ending is meant.
        context_.form.setCaption("Decoding " + base.value() + "\\.mp3");
    }
    context_.ActiveMP31.setSourceFile(path).passOver();
    const std::size_t kept = characterCount(path) - extensionLength;
    context_.ActiveMP31.DecodeToWav(leftCharacters(path, kept) + "wav").passOver();
    return {};
}

void ConversionWorker::DecodeCheckedFiles() {
    ListBox& list = context_.form.List4;
    for (int i = 0; i < list.listCount(); ++i) {
        if (context_.process.stopRequested) {
            context_.process.stopRequested = false;
            break;
        }
        if (list.selected(i)) {
            list.setListIndex(i).passOver();
            StartMP3("True");
        }
    }
    context_.form.lblStatus.setCaption("");
    context_.pointer.set(Pointer::normal);
    unload();
}

} // namespace sonarith
